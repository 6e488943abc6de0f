#pragma once

#include <support/PrivateDesktop.h>

namespace pallwick::tour {

/// A terminal (xterm) full of text in a strong colour on a light ground: what an overlay is to hide.
class SecretWindow {
public:
    /// Returns when the text is on the screen. `scale` enlarges the window and its letters.
    SecretWindow(support::PrivateDesktop& desktop, support::PixelPoint place, double scale);

    [[nodiscard]] xcb_window_t window() const { return window_; }
    [[nodiscard]] support::PixelRect rect();
    /// How many pixels of the area have the text's colour.
    [[nodiscard]] static int textIn(const support::Screenshot& screen, const support::PixelArea& area);
    /// How many pixels of the area have a tinge of it, however faint: text seen through something.
    [[nodiscard]] static int tracesIn(const support::Screenshot& screen, const support::PixelArea& area);

private:
    support::PrivateDesktop& desktop_;
    std::unique_ptr<support::Process> process_;
    xcb_window_t window_ = support::noWindow;
};

}  // namespace pallwick::tour
