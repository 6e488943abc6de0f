#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PrivateDesktop.h"

namespace pallwick::support {

/// A plain window of another program, with vertical stripes in one strong colour (4 pixels wide, every 16 pixels
/// from its left edge), that reports what reaches it. It stands for whatever an overlay lies on.
class TestClient {
public:
    struct Options {
        std::string title = "Test client";
        /// Both parts of WM_CLASS.
        std::string windowClass = "test-client";
        /// The window itself, without decoration.
        PixelRect rect{.x = 100, .y = 100, .width = 300, .height = 200};
        Colour ground{.red = 255, .green = 255, .blue = 255};
        Colour mark{.red = 255, .green = 0, .blue = 0};
        bool overrideRedirect = false;
        bool undecorated = false;
        bool fullScreen = false;
    };

    /// Returns when the window is on the screen and painted.
    TestClient(PrivateDesktop& desktop, const Options& options);

    [[nodiscard]] xcb_window_t window() const { return window_; }
    [[nodiscard]] PixelRect rect();
    [[nodiscard]] Process& process() { return *process_; }

    /// Everything that reached the window up to now, one line each: "press <button> <x> <y>" and "release ..." in
    /// the window's pixels, "drag <x> <y>", "key <keycode>", "focus in", "focus out", "map", "unmap",
    /// "configure <x> <y> <width> <height>", "paint", "close".
    /// Complete: an event that the server had sent before this call is among them.
    const std::vector<std::string>& events();
    /// How many of `events()` begin with `prefix`.
    int count(const std::string& prefix);
    void forgetEvents();
    /// Returns the first event, old or new, that begins with `prefix`. Throws `Timeout`.
    std::string awaitEvent(const std::string& prefix);

    void setColours(Colour ground, Colour mark);
    /// Moves and resizes by its own wish.
    void place(const PixelRect& rect);
    void raise();
    void map();
    void unmap();
    void setFullScreen(bool on);

private:
    void tell(const std::string& command);

    PrivateDesktop& desktop_;
    std::unique_ptr<Process> process_;
    xcb_window_t window_ = noWindow;
    std::vector<std::string> events_;
    std::uint32_t pings_ = 0;
};

}  // namespace pallwick::support
