#pragma once

#include <PallwickMac/Platform/WindowRecord.h>
#include <PallwickMac/Platform/X11/ApplicationIndex.h>
#include <PallwickMac/Platform/X11/ClientWindow.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/PixelMapping.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace pallwick::x11 {

/// How root pixels become the window server's bounds.
struct WindowPlacement {
    PixelMapping mapping;
    /// The top edge of the union of all screens, points, y up.
    double top = 0;
};

/// The clients of the window manager that are on the screen (EWMH), front to back; without a window manager, the root
/// window's children. Override-redirect windows, which belong to no list, are left out.
///
/// However many windows there are, the number of round trips is the same: every question is sent for all of them
/// before the first answer is waited for. A window that vanishes meanwhile is left out.
class WindowList {
public:
    /// Neither argument is owned; both must outlive the object.
    WindowList(const Connection& connection, const ApplicationIndex& applications);

    /// None where the server does not answer.
    [[nodiscard]] std::optional<std::vector<WindowRecord>> onScreen(const WindowPlacement& placement) const;

    /// The record of one window in that list, at the price of one window.
    [[nodiscard]] std::optional<WindowRecord> onScreen(xcb_window_t window, const WindowPlacement& placement) const;

private:
    struct OwnedWindow {
        ClientWindow window;
        std::optional<std::int32_t> ownerProcessID;
    };

    class Questions;

    [[nodiscard]] std::optional<std::vector<WindowRecord>> query(std::optional<xcb_window_t> only,
                                                                 const WindowPlacement& placement) const;
    /// What a window manager's window says of itself.
    [[nodiscard]] CardinalsRequest checkOf(xcb_window_t window) const;
    /// `check` is what the root says of it, `checkItself` what `windowManager_` says.
    [[nodiscard]] bool isManaged(const std::vector<xcb_window_t>& check, std::vector<xcb_window_t> checkItself) const;
    [[nodiscard]] std::vector<OwnedWindow> unmanagedWindows(std::optional<xcb_window_t> only) const;
    void askForWhatIsMissing(std::vector<OwnedWindow>& windows) const;
    void measureRootChildren(std::vector<OwnedWindow>& windows) const;
    [[nodiscard]] std::vector<WindowRecord> records(const std::vector<OwnedWindow>& windows,
                                                    const WindowPlacement& placement) const;

    const Connection& connection_;
    const ApplicationIndex& applications_;
    /// The window that the window manager put up, as far as known: asked about ahead, and verified each time.
    mutable xcb_window_t windowManager_;
};

}  // namespace pallwick::x11
