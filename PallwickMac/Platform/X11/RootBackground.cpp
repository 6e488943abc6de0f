#include <PallwickMac/Platform/X11/RootBackground.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <xcb/composite.h>
#include <xcb/shape.h>

#include <array>

namespace pallwick::x11 {

PixmapHandle copyRootBackground(const Connection& connection) {
    xcb_connection_t* xcb = connection.xcb();
    const auto root = own(xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, connection.root()), nullptr));
    if (!root) {
        return {};
    }
    const xcb_window_t window = xcb_generate_id(xcb);
    const std::array<std::uint32_t, 2> values{XCB_BACK_PIXMAP_PARENT_RELATIVE, 1};
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, root->width, root->height, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values.data());
    // Beneath every other window it looks just like the root, and no pointer finds it.
    const std::uint32_t below = XCB_STACK_MODE_BELOW;
    xcb_configure_window(xcb, window, XCB_CONFIG_WINDOW_STACK_MODE, &below);
    xcb_shape_rectangles(xcb, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window, 0, 0, 0,
                         nullptr);
    // Redirected, it is painted whole, also where other windows hide it, and its pixels outlive it.
    xcb_composite_redirect_window(xcb, window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    xcb_map_window(xcb, window);
    PixmapHandle pixels(xcb, xcb_generate_id(xcb));
    xcb_composite_name_window_pixmap(xcb, window, pixels.id());
    xcb_destroy_window(xcb, window);
    return pixels;
}

}  // namespace pallwick::x11
