#include <PallwickMacCore/Services/OverlayWindowController.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <unordered_set>
#include <utility>

namespace pallwick {

OverlayWindowController::OverlayWindowController(PanelFactory panelFactory, FrameChangedCallback onFrameChanged,
                                                 DeleteRequestedCallback onDeleteRequested)
    : panelFactory_(std::move(panelFactory)),
      onFrameChanged_(std::move(onFrameChanged)),
      onDeleteRequested_(std::move(onDeleteRequested)) {}

std::vector<UUID> OverlayWindowController::visibleOverlayIDs() const {
    assertOwnThread();
    std::vector<UUID> ids;
    ids.reserve(panels_.size());
    for (const auto& [id, panel] : panels_) {
        ids.push_back(id);
    }
    // Digits sort before letters in the upper-case text, so the order of the bytes is the order of the texts.
    std::ranges::sort(ids);
    return ids;
}

std::shared_ptr<OverlayPanelControlling> OverlayWindowController::panel(const UUID& overlayID) const {
    assertOwnThread();
    const auto entry = panels_.find(overlayID);
    return entry == panels_.end() ? nullptr : entry->second;
}

void OverlayWindowController::sync(const std::vector<BlurOverlay>& overlays, bool editMode,
                                   std::optional<std::int32_t> activeApplicationPID) {
    assertOwnThread();
    std::unordered_set<UUID> wanted;
    for (const BlurOverlay& overlay : overlays) {
        wanted.insert(overlay.id());
    }

    std::vector<UUID> held;
    held.reserve(panels_.size());
    for (const auto& [id, panel] : panels_) {
        held.push_back(id);
    }
    for (const UUID& id : held) {
        if (wanted.contains(id)) {
            continue;
        }
        if (const std::shared_ptr<OverlayPanelControlling> stale = panel(id)) {
            stale->close();
        }
        panels_.erase(id);
    }

    for (const BlurOverlay& overlay : overlays) {
        std::shared_ptr<OverlayPanelControlling> current = panel(overlay.id());
        if (!current) {
            current = panelFactory_(overlay, onFrameChanged_, onDeleteRequested_);
            panels_[overlay.id()] = current;
        }
        current->update(overlay, editMode);
        if (shouldShow(overlay, activeApplicationPID)) {
            current->show();
        } else {
            current->hide();
        }
    }
}

bool OverlayWindowController::shouldShow(const BlurOverlay& overlay, std::optional<std::int32_t> activeApplicationPID) {
    if (overlay.anchor == OverlayAnchor::window && overlay.windowAttachment) {
        return activeApplicationPID == overlay.windowAttachment->ownerPID;
    }
    return true;
}

void OverlayWindowController::closeAll() {
    assertOwnThread();
    // A copy, because a panel may call back into the controller while it closes.
    const auto closing = panels_;
    for (const auto& [id, panel] : closing) {
        panel->close();
    }
    panels_ = {};
}

void OverlayWindowController::assertOwnThread() const {
    if (std::this_thread::get_id() != thread_) {
        std::fputs("pallwick: OverlayWindowController used off its own thread\n", stderr);
        std::abort();
    }
}

}  // namespace pallwick
