#pragma once

#include <PallwickMacCore/Services/OverlayPanelControlling.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <thread>
#include <unordered_map>
#include <vector>

namespace pallwick {

/// Keeps exactly one panel per overlay in step with the overlay list.
///
/// Confined to the thread that made it: a call on any other stops the program. It shares ownership of its panels;
/// dropping the controller drops its references without closing them, so call `closeAll` first where the panels must
/// go.
class OverlayWindowController {
public:
    explicit OverlayWindowController(
        PanelFactory panelFactory, FrameChangedCallback onFrameChanged = [](const UUID&, const Rect&) {},
        DeleteRequestedCallback onDeleteRequested = [](const UUID&) {});

    /// The overlay of every panel that exists, hidden ones included, sorted by the text of the UUID.
    [[nodiscard]] std::vector<UUID> visibleOverlayIDs() const;

    /// The panel held for that overlay, or null.
    [[nodiscard]] std::shared_ptr<OverlayPanelControlling> panel(const UUID& overlayID) const;

    /// Closes the panels of overlays that are not in the list, then makes, updates and shows or hides one panel for
    /// each overlay, in list order.
    void sync(const std::vector<BlurOverlay>& overlays, bool editMode,
              std::optional<std::int32_t> activeApplicationPID);

    /// Closes every panel and forgets them.
    void closeAll();

private:
    [[nodiscard]] static bool shouldShow(const BlurOverlay& overlay, std::optional<std::int32_t> activeApplicationPID);

    /// Stops the program on any thread but the controller's own.
    void assertOwnThread() const;

    PanelFactory panelFactory_;
    FrameChangedCallback onFrameChanged_;
    DeleteRequestedCallback onDeleteRequested_;
    std::unordered_map<UUID, std::shared_ptr<OverlayPanelControlling>> panels_;
    std::thread::id thread_ = std::this_thread::get_id();
};

}  // namespace pallwick
