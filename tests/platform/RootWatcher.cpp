#include "RootWatcher.h"

#include <support/XConnection.h>

namespace pallwick::x11 {

using support::Reply;

namespace {

void roundTrip(xcb_connection_t* connection) {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

}  // namespace

RootWatcher::RootWatcher(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root,
                                 XCB_CW_EVENT_MASK, &events);
    roundTrip(connection_);
}

RootWatcher::~RootWatcher() {
    xcb_disconnect(connection_);
}

int RootWatcher::configurations() {
    return configurations(XCB_WINDOW_NONE);
}

int RootWatcher::configurations(xcb_window_t window) {
    roundTrip(connection_);
    int count = 0;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
        const auto& configured = reinterpret_cast<const xcb_configure_notify_event_t&>(*event);
        if ((event->response_type & 0x7F) == XCB_CONFIGURE_NOTIFY &&
            (window == XCB_WINDOW_NONE || configured.window == window)) {
            ++count;
        }
    }
    return count;
}

}  // namespace pallwick::x11
