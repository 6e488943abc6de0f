#pragma once

#include <PallwickMac/Platform/OverlaySurface.h>
#include <PallwickMac/Platform/X11/PixelMapping.h>
#include <PallwickMac/Platform/X11/X11Platform.h>
#include <gtest/gtest.h>
#include <support/PrivateDesktop.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QGuiApplication;

namespace pallwick::x11 {

/// The X11 platform in this process, on a desktop of its own. A process has one application object, so every test runs
/// in a process of its own.
class PlatformTest : public ::testing::Test {
protected:
    struct Options {
        support::WindowManager windowManager = support::WindowManager::none;
        support::PrivateXServer::Options server;
    };

    PlatformTest();
    ~PlatformTest() override;

    /// Returns when the desktop is ready. This process sees none but it from then on.
    void startDesktop(const Options& options);
    void startDesktop() { startDesktop(Options()); }
    /// A root of 2560 x 1600 pixels: the primary screen's 1280 x 800 at 640,800, and another one above it.
    void startTwoScreens();
    /// `scale` in pixels per point.
    void startPlatform(double scale = 1);

    [[nodiscard]] support::PrivateDesktop& desktop() { return *desktop_; }
    [[nodiscard]] support::XConnection& x() { return desktop_->x(); }
    [[nodiscard]] X11Platform& platform() { return *platform_; }
    void stopPlatform() { platform_.reset(); }

    [[nodiscard]] std::unique_ptr<OverlaySurface> makeSurface(OverlaySurfaceContent& content, const Rect& frame);
    [[nodiscard]] static xcb_window_t windowOf(const OverlaySurface& surface);
    /// Where the surface's window is, in root pixels.
    [[nodiscard]] PixelRect rectOf(const OverlaySurface& surface);
    [[nodiscard]] bool isOnRoot(const OverlaySurface& surface);
    /// Whether each window is stacked above the one before it.
    [[nodiscard]] bool areStacked(const std::vector<xcb_window_t>& fromBottomToTop);

    /// Lets the event loop run until the platform has dealt with all that has happened on the server before this call,
    /// and the server with the platform's answers. What the platform puts off by a timer may remain.
    void settle();
    /// Returns as soon as `condition` holds, and lets the event loop run meanwhile. Throws `support::Timeout`.
    void await(const std::string& what, const std::function<bool()>& condition);

    /// A plain window on the test's own connection, mapped.
    [[nodiscard]] xcb_window_t makeWindow(const PixelRect& rect, bool overrideRedirect = false);
    /// ICCCM's WM_STATE, which makes a window a client where no window manager runs.
    void setNormalState(xcb_window_t window);
    void raise(xcb_window_t window);
    void destroy(xcb_window_t window);
    void setCardinals(xcb_window_t window, const std::string& property, xcb_atom_t type,
                      const std::vector<std::uint32_t>& values);
    void setBytes(xcb_window_t window, const std::string& property, const std::string& type, const std::string& bytes);
    void setActiveWindow(xcb_window_t window);
    /// What announces a compositing manager, or nobody for no window.
    void setCompositor(xcb_window_t owner);

private:
    /// One turn of the event loop, as where the program would wait, and a round trip on the platform's connection.
    void turn();

    std::unique_ptr<support::PrivateDesktop> desktop_;
    std::unique_ptr<QGuiApplication> application_;
    std::unique_ptr<X11Platform> platform_;
};

}  // namespace pallwick::x11
