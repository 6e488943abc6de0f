#include "FrameCounter.h"

#include <poll.h>
#include <xcb/damage.h>

#include <stdexcept>

#include "support/Deadline.h"
#include "support/XConnection.h"

namespace pallwick {

using support::Reply;

FrameCounter::FrameCounter(const std::string& display, const std::vector<xcb_window_t>& windows)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    xcb_connection_t* xcb = connection_.get();
    const xcb_query_extension_reply_t* damage = xcb_get_extension_data(xcb, &xcb_damage_id);
    if (damage == nullptr || damage->present == 0) {
        throw std::runtime_error("no Damage extension at " + display);
    }
    damageEvent_ = static_cast<std::uint8_t>(damage->first_event + XCB_DAMAGE_NOTIFY);
    const Reply<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
        xcb, xcb_damage_query_version(xcb, XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION), nullptr));
    for (const xcb_window_t window : windows) {
        xcb_damage_create(xcb, xcb_generate_id(xcb), window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    }
    roundTrip();
}

int FrameCounter::countFor(std::chrono::milliseconds duration) {
    take();
    int count = 0;
    const support::Deadline end(duration);
    while (!end.hasPassed()) {
        pollfd waiting{.fd = xcb_get_file_descriptor(connection_.get()), .events = POLLIN, .revents = 0};
        ::poll(&waiting, 1, end.remainingMilliseconds());
        count += take();
    }
    return count;
}

void FrameCounter::roundTrip() {
    xcb_connection_t* xcb = connection_.get();
    const Reply<xcb_get_input_focus_reply_t> done(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
}

int FrameCounter::take() {
    xcb_connection_t* xcb = connection_.get();
    int count = 0;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(xcb)}) {
        if ((event->response_type & 0x7F) == damageEvent_) {
            const auto& notice = reinterpret_cast<const xcb_damage_notify_event_t&>(*event);
            xcb_damage_subtract(xcb, notice.damage, XCB_NONE, XCB_NONE);
            ++count;
        }
    }
    if (xcb_connection_has_error(xcb) != 0) {
        throw std::runtime_error("the X server has gone");
    }
    xcb_flush(xcb);
    return count;
}

}  // namespace pallwick
