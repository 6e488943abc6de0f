// A client that never rests: it shows a window, says that it is the active one, and destroys it, over and over, as fast
// as the server follows. Whoever asks about its windows mostly comes too late.

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

namespace {

xcb_atom_t atom(xcb_connection_t* connection, const std::string& name) {
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr);
    const xcb_atom_t value = reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
    std::free(reply);
    return value;
}

}  // namespace

int main() {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection) != 0) {
        return 1;
    }
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_atom_t active = atom(connection, "_NET_ACTIVE_WINDOW");
    const xcb_atom_t state = atom(connection, "WM_STATE");
    constexpr std::array<char, 18> windowClass{"restless\0Restless"};
    constexpr std::array<std::uint32_t, 2> normal{1, 0};

    std::cout << "running" << std::endl;
    while (xcb_connection_has_error(connection) == 0) {
        const xcb_window_t window = xcb_generate_id(connection);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 400, 400, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                            windowClass.size(), windowClass.data());
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, state, state, 32, normal.size(), normal.data());
        xcb_map_window(connection, window);
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, screen->root, active, XCB_ATOM_WINDOW, 32, 1, &window);
        // As long as a round trip takes, the window is there.
        std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
        xcb_destroy_window(connection, window);
        std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }
    xcb_disconnect(connection);
    return 0;
}
