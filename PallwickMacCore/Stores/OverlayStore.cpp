#include <PallwickMacCore/Stores/OverlayStore.h>

#include <algorithm>
#include <utility>

namespace pallwick {

OverlayStore::OverlayStore(std::vector<BlurOverlay> overlays, Clock clock)
    : overlays_(std::move(overlays)), clock_(std::move(clock)) {}

BlurOverlay OverlayStore::addOverlay(const Rect& frame, std::uint32_t displayID, const BlurStyle& style) {
    overlays_.push_back(BlurOverlay({.displayID = displayID, .frame = frame, .style = style}, clock_));
    return overlays_.back();
}

void OverlayStore::replace(std::vector<BlurOverlay> overlays) {
    overlays_ = std::move(overlays);
}

void OverlayStore::updateStyle(const UUID& id, const BlurStyle& style) {
    update(id, [&](BlurOverlay& overlay) { overlay.style = style; });
}

void OverlayStore::updateShape(const UUID& id, OverlayShape shape) {
    update(id, [&](BlurOverlay& overlay) { overlay.shape = shape; });
}

void OverlayStore::updateFrame(const UUID& id, const Rect& frame) {
    update(id, [&](BlurOverlay& overlay) { overlay.frame = frame.standardized(); });
}

void OverlayStore::attachToWindow(const UUID& id, const TrackedWindow& window) {
    update(id, [&](BlurOverlay& overlay) {
        overlay.anchor = OverlayAnchor::window;
        overlay.windowAttachment = WindowAttachment(window, overlay.frame);
    });
}

void OverlayStore::detachFromWindow(const UUID& id) {
    update(id, [](BlurOverlay& overlay) {
        overlay.anchor = OverlayAnchor::screen;
        overlay.windowAttachment.reset();
    });
}

void OverlayStore::updateAttachedOverlayFrame(const UUID& id, const Rect& currentWindowFrame) {
    update(id, [&](BlurOverlay& overlay) {
        if (overlay.windowAttachment) {
            overlay.frame = overlay.windowAttachment->overlayFrame(currentWindowFrame, overlay.frame.extent());
        }
    });
}

void OverlayStore::removeOverlay(const UUID& id) {
    // A copy, because `id` may be that of a record in the list, which moves while others are removed.
    std::erase_if(overlays_, [removedID = id](const BlurOverlay& overlay) { return overlay.id() == removedID; });
}

void OverlayStore::clear() {
    std::vector<BlurOverlay>().swap(overlays_);
}

void OverlayStore::update(const UUID& id, const std::function<void(BlurOverlay&)>& mutate) {
    const auto overlay = std::ranges::find(overlays_, id, &BlurOverlay::id);
    if (overlay == overlays_.end()) {
        return;
    }
    mutate(*overlay);
    overlay->updatedAt = clock_();
}

}  // namespace pallwick
