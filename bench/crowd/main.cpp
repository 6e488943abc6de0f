// One program with many windows: says the number of each on standard output, and then lets them be.

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

namespace {

constexpr std::uint16_t width = 300;
constexpr std::uint16_t height = 200;
// They lie apart a little, so that each is to be seen, and none reaches over the edge of a small screen.
constexpr int columns = 20;
constexpr int distance = 24;

xcb_atom_t atom(xcb_connection_t* connection, const std::string& name) {
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr);
    const xcb_atom_t value = reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
    std::free(reply);
    return value;
}

void setText(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
             const std::string& text) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
}

}  // namespace

int main(int argc, char** argv) {
    using namespace std::string_literals;
    const int count = argc > 1 ? std::stoi(argv[1]) : 1;
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection) != 0) {
        return 1;
    }
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_atom_t name = atom(connection, "_NET_WM_NAME");
    const xcb_atom_t utf8 = atom(connection, "UTF8_STRING");
    for (int i = 0; i < count; ++i) {
        const xcb_window_t window = xcb_generate_id(connection);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root,
                          static_cast<std::int16_t>(i % columns * distance),
                          static_cast<std::int16_t>(i / columns * distance), width, height, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL, &screen->white_pixel);
        setText(connection, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, "Window " + std::to_string(i));
        setText(connection, window, name, utf8, "Window " + std::to_string(i));
        setText(connection, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, "crowd\0Crowd\0"s);
        xcb_map_window(connection, window);
        std::cout << window << '\n';
    }
    std::cout.flush();
    xcb_flush(connection);
    while (xcb_generic_event_t* event = xcb_wait_for_event(connection)) {
        std::free(event);
    }
    xcb_disconnect(connection);
    return 0;
}
