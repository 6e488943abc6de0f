#pragma once

#include <memory>

#include "PrivateDesktop.h"

namespace pallwick::support {

/// A terminal (xterm) full of text in a strong colour on a light ground: what an overlay is to hide.
class SecretWindow {
public:
    enum class Text { still, running };

    /// Returns when the text is on the screen. `scale` enlarges the window and its letters.
    SecretWindow(PrivateDesktop& desktop, PixelPoint place, double scale, Text text = Text::still);

    [[nodiscard]] xcb_window_t window() const { return window_; }
    [[nodiscard]] PixelRect rect();
    /// How many pixels of the area have the text's colour.
    [[nodiscard]] static int textIn(const Screenshot& screen, const PixelArea& area);
    /// How many pixels of the area have a tinge of it, however faint: text seen through something.
    [[nodiscard]] static int tracesIn(const Screenshot& screen, const PixelArea& area);

private:
    PrivateDesktop& desktop_;
    std::unique_ptr<Process> process_;
    xcb_window_t window_ = noWindow;
};

}  // namespace pallwick::support
