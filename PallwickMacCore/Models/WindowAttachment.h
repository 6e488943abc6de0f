#pragma once

#include <PallwickMacCore/Models/Geometry.h>

#include <cstdint>
#include <string>

namespace pallwick {

struct TrackedWindow;

/// The link of an overlay to another application's window, as it was at the time of attaching.
struct WindowAttachment {
    std::uint32_t windowID = 0;
    std::int32_t ownerPID = 0;
    std::string ownerName;
    std::string title;
    /// Overlay origin minus window origin, both the minimum corners, in screen coordinates.
    Point offset;

    WindowAttachment() = default;
    WindowAttachment(const TrackedWindow& window, const Rect& overlayFrame);

    /// Where an overlay of `overlaySize` belongs while the window is at `currentWindowFrame`. Neither standardized
    /// nor clamped to a display.
    [[nodiscard]] Rect overlayFrame(const Rect& currentWindowFrame, const Size& overlaySize) const;

    friend bool operator==(const WindowAttachment&, const WindowAttachment&) = default;
};

}  // namespace pallwick
