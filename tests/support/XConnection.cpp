#include "XConnection.h"

#include <poll.h>
#include <xcb/damage.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <cerrno>

namespace pallwick::support {
namespace {

/// Bit 7 of an event's type says that another client sent it.
constexpr std::uint8_t eventTypeMask = 0x7f;

}  // namespace

XConnection::XConnection(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)), forPictures_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0 || xcb_connection_has_error(forPictures_) != 0) {
        xcb_disconnect(connection_);
        xcb_disconnect(forPictures_);
        throw std::runtime_error("cannot connect to display " + display);
    }
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    root_ = screen->root;
    rootRect_ = {.x = 0, .y = 0, .width = screen->width_in_pixels, .height = screen->height_in_pixels};

    const Reply<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        connection_, xcb_xfixes_query_version(connection_, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION),
        nullptr));
    for (const std::string_view selection : {"_NET_WM_CM_S0", "_XSETTINGS_S0", "_NET_SYSTEM_TRAY_S0"}) {
        xcb_xfixes_select_selection_input(connection_, root_, atom(selection),
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    listen(root_);
    roundTrip();
}

XConnection::~XConnection() {
    xcb_disconnect(connection_);
    xcb_disconnect(forPictures_);
}

xcb_atom_t XConnection::atom(std::string_view name) {
    if (const auto known = atoms_.find(name); known != atoms_.end()) {
        return known->second;
    }
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    const xcb_atom_t atom = reply ? reply->atom : noAtom;
    atoms_.emplace(name, atom);
    return atom;
}

std::string XConnection::atomName(xcb_atom_t atom) {
    const Reply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, atom), nullptr));
    if (!reply) {
        return {};
    }
    return {xcb_get_atom_name_name(reply.get()), static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

void XConnection::roundTrip() {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

void XConnection::listen(xcb_window_t window) {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY |
                                 XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_FOCUS_CHANGE;
    xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &events);
    // Children that came before the line above are announced by nobody.
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
    if (!tree) {
        return;
    }
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index) {
        listen(children[index]);
    }
}

void XConnection::listenToPixels() {
    if (damage_ != 0) {
        return;
    }
    const Reply<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
        connection_, xcb_damage_query_version(connection_, XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION),
        nullptr));
    damageEvent_ =
        static_cast<std::uint8_t>(xcb_get_extension_data(connection_, &xcb_damage_id)->first_event + XCB_DAMAGE_NOTIFY);
    damage_ = xcb_generate_id(connection_);
    xcb_damage_create(connection_, damage_, root_, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    roundTrip();
}

void XConnection::handle(const xcb_generic_event_t& event) {
    const auto type = static_cast<std::uint8_t>(event.response_type & eventTypeMask);
    if (type == XCB_CREATE_NOTIFY) {
        listen(reinterpret_cast<const xcb_create_notify_event_t&>(event).window);
    } else if (damage_ != 0 && type == damageEvent_) {
        // Emptied, so that the next change reports again.
        xcb_damage_subtract(connection_, damage_, XCB_NONE, XCB_NONE);
    }
}

void XConnection::failIfHopeless(const std::string& what) {
    if (xcb_connection_has_error(connection_) != 0) {
        throw Timeout("the X server ended while awaiting " + what);
    }
    for (Process* process : guarded_) {
        if (!process->isRunning()) {
            throw Timeout(process->name() + " ended (" + describe(process->awaitExit()) + ") while awaiting " + what +
                          "; its standard error: " + process->standardError());
        }
    }
}

void XConnection::await(const std::string& what, const std::function<bool()>& condition,
                        const std::function<std::string()>& seen, std::chrono::milliseconds patience) {
    const Deadline deadline(patience);
    for (;;) {
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
            handle(*event);
        }
        if (condition()) {
            return;
        }
        failIfHopeless(what);
        // The condition's own round trips may have read events from the socket, where poll no longer sees them.
        if (const Reply<xcb_generic_event_t> event{xcb_poll_for_queued_event(connection_)}) {
            handle(*event);
            continue;
        }
        xcb_flush(connection_);
        std::vector<pollfd> waiting{{.fd = xcb_get_file_descriptor(connection_), .events = POLLIN, .revents = 0}};
        for (const int source : sources_) {
            waiting.push_back({.fd = source, .events = POLLIN, .revents = 0});
        }
        for (const Process* process : guarded_) {
            waiting.push_back({.fd = process->exitDescriptor(), .events = POLLIN, .revents = 0});
        }
        const int count = ::poll(waiting.data(), waiting.size(), deadline.remainingMilliseconds());
        if (count == 0 || (count < 0 && errno != EINTR)) {
            throw Timeout("awaited in vain: " + what + (seen ? "; seen: " + seen() : std::string()));
        }
    }
}

}  // namespace pallwick::support
