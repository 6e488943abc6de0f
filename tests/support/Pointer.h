#pragma once

#include "XConnection.h"

namespace pallwick::support {

enum class MouseButton : std::uint8_t { left = 1, middle = 2, right = 3, wheelUp = 4, wheelDown = 5 };

/// The mouse, moved as a real one is (XTEST).
///
/// Every step returns once the server has processed it, and with it all before it: a window manager that looks at a
/// press before it passes it on freezes the mouse meanwhile, and what follows waits in the server. So after `release`
/// press and release are on their way to whatever window they were meant for.
class Pointer {
public:
    explicit Pointer(XConnection& x) : x_(x) {}

    [[nodiscard]] PixelPoint position();
    void moveTo(PixelPoint point);
    void press(MouseButton which = MouseButton::left);
    void release(MouseButton which = MouseButton::left);
    /// Moves there, presses and releases.
    void click(PixelPoint point, MouseButton which = MouseButton::left);
    /// Presses at `from`, moves to `to` in `steps` equal parts, and releases there.
    void drag(PixelPoint from, PixelPoint to, int steps = 8, MouseButton which = MouseButton::left);
    /// The moves of a drag alone, from where the pointer is, for a test that looks at what is shown in between.
    void glideTo(PixelPoint to, int steps = 8);

private:
    void send(std::uint8_t type, MouseButton which);
    void awaitProcessed(const std::string& what, const std::function<bool()>& condition);

    XConnection& x_;
};

}  // namespace pallwick::support
