#pragma once

#include <memory>
#include <string>

#include "support/PrivateDesktop.h"

namespace pallwick {

struct Load {
    double percentOfACore = 0;
    double picturesASecond = 0;
};

/// A private desktop (openbox) of 1920x1080 with a terminal through which text runs, line after line.
class GlassScene {
public:
    /// Where the terminal's text is, with room to spare, a window may lie.
    static constexpr support::PixelRect panelRect{.x = 130, .y = 130, .width = 720, .height = 400};

    /// Returns when the text is running.
    explicit GlassScene(int linesASecond);

    [[nodiscard]] support::PrivateDesktop& desktop() { return desktop_; }

    /// Starts picom with this configuration, and returns when it owns the screen.
    void startCompositor(const std::string& configuration);
    /// Opens a half transparent window at `panelRect`, such as a compositing manager blurs what lies beneath.
    void openTranslucentWindow();

    /// What the X server, the compositing manager where one was started, and `more` do in some time: their share of a
    /// core, and how often the picture changes, of the whole screen if there is a compositing manager, else of `panel`.
    [[nodiscard]] Load load(const std::vector<pid_t>& more = {}, xcb_window_t panel = support::noWindow);

private:
    [[nodiscard]] xcb_window_t windowOfCompositor();

    support::PrivateDesktop desktop_;
    std::unique_ptr<support::Process> terminal_;
    std::unique_ptr<support::Process> compositor_;
};

}  // namespace pallwick
