#include "PaintCounter.h"

#include <xcb/damage.h>

#include <stdexcept>

namespace pallwick::desktop {

using support::Reply;

PaintCounter::PaintCounter(const std::string& display, xcb_window_t window)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    xcb_connection_t* xcb = connection_.get();
    const xcb_query_extension_reply_t* damage = xcb_get_extension_data(xcb, &xcb_damage_id);
    if (damage == nullptr || damage->present == 0) {
        throw std::runtime_error("no Damage extension at " + display);
    }
    damageEvent_ = static_cast<std::uint8_t>(damage->first_event + XCB_DAMAGE_NOTIFY);
    const Reply<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
        xcb, xcb_damage_query_version(xcb, XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION), nullptr));
    xcb_damage_create(xcb, xcb_generate_id(xcb), window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    take();
}

int PaintCounter::take() {
    xcb_connection_t* xcb = connection_.get();
    const Reply<xcb_get_input_focus_reply_t> done(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    int count = 0;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(xcb)}) {
        count += (event->response_type & 0x7F) == damageEvent_ ? 1 : 0;
    }
    return count;
}

}  // namespace pallwick::desktop
