#include <PallwickMac/Platform/X11/CursorSet.h>
#include <xcb/xcb_aux.h>

#include <initializer_list>

namespace pallwick::x11 {

namespace {

// Themes name their cursors after CSS, after X11's cursor font, or both.
std::initializer_list<const char*> namesOf(CursorShape shape) {
    static constexpr std::initializer_list<const char*> arrow{"default", "left_ptr"};
    static constexpr std::initializer_list<const char*> resize{"ew-resize", "sb_h_double_arrow"};
    static constexpr std::initializer_list<const char*> hand{"pointer", "hand2"};
    switch (shape) {
        case CursorShape::resizeLeftRight:
            return resize;
        case CursorShape::pointingHand:
            return hand;
        case CursorShape::arrow:
            break;
    }
    return arrow;
}

}  // namespace

CursorSet::CursorSet(const Connection& connection) : connection_(connection) {
    xcb_cursor_context_t* context = nullptr;
    xcb_screen_t* screen = xcb_aux_get_screen(connection.xcb(), connection.screenNumber());
    if (screen != nullptr && xcb_cursor_context_new(connection.xcb(), screen, &context) >= 0) {
        context_.reset(context);
    }
}

CursorSet::~CursorSet() {
    for (const xcb_cursor_t cursor : cursors_) {
        if (cursor != XCB_CURSOR_NONE) {
            xcb_free_cursor(connection_.xcb(), cursor);
        }
    }
}

xcb_cursor_t CursorSet::cursor(CursorShape shape) {
    const auto index = static_cast<std::size_t>(shape);
    if (!loaded_[index] && context_) {
        loaded_[index] = true;
        for (const char* name : namesOf(shape)) {
            cursors_[index] = xcb_cursor_load_cursor(context_.get(), name);
            if (cursors_[index] != XCB_CURSOR_NONE) {
                break;
            }
        }
    }
    return cursors_[index];
}

}  // namespace pallwick::x11
