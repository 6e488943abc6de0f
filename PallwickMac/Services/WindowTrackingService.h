#pragma once

#include <PallwickMac/Platform/WindowRecord.h>
#include <PallwickMacCore/Models/Geometry.h>
#include <PallwickMacCore/Models/TrackedWindow.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace pallwick {

class DesktopPlatform;

/// The windows of other applications that an overlay can be attached to. Holds no state: every call asks the platform
/// afresh.
class WindowTrackingService {
public:
    /// `platform` is not owned and must outlive the service.
    explicit WindowTrackingService(const DesktopPlatform& platform) : platform_(&platform) {}

    /// The ordinary on-screen windows of other processes, 80 x 40 points or larger, by owner name and title: Unicode
    /// scalars of the composed form are compared, so letter case counts and no locale does. Windows alike in both are
    /// in front-to-back order. Empty where the desktop does not answer.
    [[nodiscard]] std::vector<TrackedWindow> visibleWindows() const;

    /// The window of that number as `visibleWindows` would list it now, none where it would not. The price does not
    /// depend on how many windows there are.
    [[nodiscard]] std::optional<TrackedWindow> window(std::uint32_t id) const;

private:
    [[nodiscard]] std::optional<TrackedWindow> trackedWindow(const WindowRecord& record,
                                                             std::int32_t excludedProcessID) const;
    /// From the window server's bounds to screen coordinates.
    [[nodiscard]] Rect screenFrame(const Rect& bounds) const;

    const DesktopPlatform* platform_;
};

}  // namespace pallwick
