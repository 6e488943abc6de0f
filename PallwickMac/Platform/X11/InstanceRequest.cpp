#include <PallwickMac/Platform/X11/InstanceRequest.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <poll.h>

#include <algorithm>
#include <string_view>

namespace pallwick::x11 {

namespace {

/// As the protocol wants values: what could end one early has a backslash before it.
std::string quoted(std::string_view value) {
    std::string quoted = "\"";
    for (const char c : value) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
        }
        quoted += c;
    }
    return quoted + '"';
}

}  // namespace

InstanceRequest::InstanceRequest(xcb_window_t owner, const ActivationToken& token)
    : owner_(owner), token_(token), window_(connection_.xcb(), xcb_generate_id(connection_.xcb())) {
    xcb_create_window(connection_.xcb(), 0, window_.id(), connection_.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, window_.id(), connection_.atom(Atom::comeForward),
                        connection_.atom(Atom::utf8String), 8, static_cast<std::uint32_t>(token_.id.size()),
                        token_.id.data());
    send();
}

void InstanceRequest::send() const {
    // To learn of its end. Where it has ended already, an error comes back.
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_.xcb(), owner_, XCB_CW_EVENT_MASK, &mask);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = owner_;
    message.type = connection_.atom(Atom::comeForward);
    message.data.data32[0] = window_.id();
    message.data.data32[1] = token_.time;
    xcb_send_event(connection_.xcb(), 0, owner_, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&message));
    connection_.flush();
}

InstanceRequest::Outcome InstanceRequest::await(std::chrono::steady_clock::time_point deadline) const {
    while (!connection_.isBroken()) {
        while (const auto event = own(xcb_poll_for_event(connection_.xcb()))) {
            switch (event->response_type & 0x7F) {
                case 0:
                case XCB_DESTROY_NOTIFY:
                    return Outcome::ownerGone;
                case XCB_CLIENT_MESSAGE:
                    if (reinterpret_cast<const xcb_client_message_event_t&>(*event).type ==
                        connection_.atom(Atom::comeForward)) {
                        return Outcome::answered;
                    }
                    break;
                default:
                    break;
            }
        }
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
        if (left <= 0) {
            break;
        }
        pollfd readable{.fd = xcb_get_file_descriptor(connection_.xcb()), .events = POLLIN, .revents = 0};
        ::poll(&readable, 1, static_cast<int>(left));
    }
    return Outcome::unanswered;
}

void InstanceRequest::endStartupNotification() const {
    if (token_.id.empty()) {
        return;
    }
    std::string text = "remove: ID=" + quoted(token_.id);
    // Its end is a zero byte, which the last part must hold.
    text.push_back('\0');
    xcb_client_message_event_t part{};
    part.response_type = XCB_CLIENT_MESSAGE;
    part.format = 8;
    part.window = window_.id();
    part.type = connection_.atom(Atom::startupInfoBegin);
    constexpr std::size_t room = sizeof(part.data.data8);
    for (std::size_t begin = 0; begin < text.size(); begin += room) {
        part.data = {};
        text.copy(reinterpret_cast<char*>(part.data.data8), room, begin);
        xcb_send_event(connection_.xcb(), 0, connection_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&part));
        part.type = connection_.atom(Atom::startupInfo);
    }
    // The messages name the window, so they have to arrive before it goes.
    static_cast<void>(
        own(xcb_get_input_focus_reply(connection_.xcb(), xcb_get_input_focus(connection_.xcb()), nullptr)));
}

}  // namespace pallwick::x11
