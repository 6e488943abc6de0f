#include "Pointer.h"

#include <xcb/xtest.h>

namespace pallwick::support {
namespace {

Reply<xcb_query_pointer_reply_t> query(XConnection& x) {
    return Reply<xcb_query_pointer_reply_t>(
        xcb_query_pointer_reply(x.get(), xcb_query_pointer(x.get(), x.root()), nullptr));
}

}  // namespace

PixelPoint Pointer::position() {
    const auto reply = query(x_);
    return reply ? PixelPoint{.x = reply->root_x, .y = reply->root_y} : PixelPoint{};
}

void Pointer::awaitProcessed(const std::string& what, const std::function<bool()>& condition) {
    const Deadline deadline;
    while (!condition()) {
        if (deadline.hasPassed()) {
            throw Timeout("the pointer, at " + describe(position()) + ", does not come to " + what);
        }
    }
}

void Pointer::moveTo(PixelPoint point) {
    xcb_test_fake_input(x_.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, x_.root(), static_cast<std::int16_t>(point.x),
                        static_cast<std::int16_t>(point.y), 0);
    awaitProcessed("be at " + describe(point), [&] { return position() == point; });
}

void Pointer::press(MouseButton which) {
    send(XCB_BUTTON_PRESS, which);
}

void Pointer::release(MouseButton which) {
    send(XCB_BUTTON_RELEASE, which);
}

void Pointer::send(std::uint8_t type, MouseButton which) {
    const auto number = static_cast<std::uint8_t>(which);
    xcb_test_fake_input(x_.get(), type, number, XCB_CURRENT_TIME, noWindow, 0, 0, 0);
    awaitProcessed(type == XCB_BUTTON_PRESS ? "press" : "release", [&] {
        const auto reply = query(x_);
        const bool isDown = reply && (reply->mask & XCB_BUTTON_MASK_1 << (number - 1)) != 0;
        return isDown == (type == XCB_BUTTON_PRESS);
    });
}

void Pointer::click(PixelPoint point, MouseButton which) {
    moveTo(point);
    press(which);
    release(which);
}

void Pointer::drag(PixelPoint from, PixelPoint to, int steps, MouseButton which) {
    moveTo(from);
    press(which);
    glideTo(to, steps);
    release(which);
}

void Pointer::glideTo(PixelPoint to, int steps) {
    const PixelPoint from = position();
    for (int step = 1; step <= steps; ++step) {
        moveTo({.x = from.x + (to.x - from.x) * step / steps, .y = from.y + (to.y - from.y) * step / steps});
    }
}

}  // namespace pallwick::support
