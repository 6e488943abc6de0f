#pragma once

#include <PallwickMacCore/Models/BlurOverlay.h>
#include <PallwickMacCore/Models/TrackedWindow.h>

#include <functional>
#include <vector>

namespace pallwick {

/// The single owner of the current list of overlays, in insertion order.
///
/// Operations that address an overlay by id silently do nothing for an unknown id. Every other update stamps
/// `updatedAt`, even one that leaves the record as it was. Where several records share an id, updates touch the first
/// and `removeOverlay` removes all. Frames are neither validated nor clamped to a display. Main thread only.
class OverlayStore {
public:
    explicit OverlayStore(std::vector<BlurOverlay> overlays = {}, Clock clock = Date::now);

    [[nodiscard]] const std::vector<BlurOverlay>& overlays() const { return overlays_; }

    static constexpr Rect defaultFrame{.x = 160, .y = 160, .width = 320, .height = 180};

    /// Appends a rectangle anchored to its screen and returns a copy of it.
    BlurOverlay addOverlay(const Rect& frame, std::uint32_t displayID, const BlurStyle& style = BlurStyle());

    /// The same with the default frame.
    BlurOverlay addOverlay(std::uint32_t displayID) { return addOverlay(defaultFrame, displayID); }

    /// Takes the given list as it is: nothing is stamped, standardized or checked for repeated ids.
    void replace(std::vector<BlurOverlay> overlays);

    void updateStyle(const UUID& id, const BlurStyle& style);
    void updateShape(const UUID& id, OverlayShape shape);

    /// Stores the standardized frame. An attachment keeps its offset.
    void updateFrame(const UUID& id, const Rect& frame);

    /// Anchors the overlay to `window` at its current place relative to it, replacing any earlier attachment.
    void attachToWindow(const UUID& id, const TrackedWindow& window);

    /// Anchors the overlay to its screen, whatever it was anchored to before.
    void detachFromWindow(const UUID& id);

    /// Moves an attached overlay to its recorded offset from the window's current frame; its size stays.
    void updateAttachedOverlayFrame(const UUID& id, const Rect& currentWindowFrame);

    void removeOverlay(const UUID& id);
    void clear();

private:
    void update(const UUID& id, const std::function<void(BlurOverlay&)>& mutate);

    std::vector<BlurOverlay> overlays_;
    Clock clock_;
};

}  // namespace pallwick
