#pragma once

#include <PallwickMac/Platform/X11/PixelMapping.h>
#include <support/XConnection.h>
#include <xcb/shape.h>

#include <vector>

namespace pallwick::x11 {

/// The rectangles of a window's shape as the server holds them.
inline std::vector<PixelRect> shapeOf(support::XConnection& x, xcb_window_t window, xcb_shape_kind_t kind) {
    const support::Reply<xcb_shape_get_rectangles_reply_t> reply(
        xcb_shape_get_rectangles_reply(x.get(), xcb_shape_get_rectangles(x.get(), window, kind), nullptr));
    std::vector<PixelRect> rectangles;
    const xcb_rectangle_t* first = xcb_shape_get_rectangles_rectangles(reply.get());
    for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++i) {
        rectangles.push_back({.x = first[i].x, .y = first[i].y, .width = first[i].width, .height = first[i].height});
    }
    return rectangles;
}

inline std::vector<PixelRect> boundingShape(support::XConnection& x, xcb_window_t window) {
    return shapeOf(x, window, XCB_SHAPE_SK_BOUNDING);
}

inline std::vector<PixelRect> inputShape(support::XConnection& x, xcb_window_t window) {
    return shapeOf(x, window, XCB_SHAPE_SK_INPUT);
}

}  // namespace pallwick::x11
