#include <PallwickMac/Platform/PlatformFactory.h>
#include <PallwickMac/Platform/X11/InstanceRequest.h>
#include <PallwickMac/Platform/X11/ProgramInstance.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>
#include <PallwickMac/Platform/X11/XcbReply.h>

#include <chrono>

namespace pallwick::x11 {

namespace {

// A first instance that is just starting itself answers once it is done with that, on a slow machine too.
constexpr std::chrono::seconds longestAnswer{10};

xcb_window_t makeHiddenWindow(const Connection& connection) {
    const xcb_window_t window = xcb_generate_id(connection.xcb());
    xcb_create_window(connection.xcb(), 0, window, connection.root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    return window;
}

/// ICCCM 2.4: the owner answers whoever wants to have the selection converted, also by "no".
void refuse(const Connection& connection, const xcb_selection_request_event_t& request) {
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    answer.property = XCB_ATOM_NONE;
    xcb_send_event(connection.xcb(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&answer));
}

}  // namespace

ProgramInstance::ProgramInstance(const Connection& connection)
    : connection_(connection), window_(connection.xcb(), makeHiddenWindow(connection)) {}

xcb_window_t ProgramInstance::takeSelection() const {
    xcb_connection_t* xcb = connection_.xcb();
    const xcb_atom_t selection = connection_.atom(Atom::programInstance);
    // Of two that find nobody at the same moment the later one would take it from the earlier one.
    xcb_grab_server(xcb);
    const auto reply = own(xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, selection), nullptr));
    const xcb_window_t owner = reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    if (owner == XCB_WINDOW_NONE) {
        // There is no owner whose time this one's could fall behind.
        xcb_set_selection_owner(xcb, window_.id(), selection, XCB_CURRENT_TIME);
    }
    xcb_ungrab_server(xcb);
    connection_.flush();
    return owner;
}

bool ProgramInstance::claim(const ActivationToken& token) const {
    const auto deadline = std::chrono::steady_clock::now() + longestAnswer;
    for (xcb_window_t owner = takeSelection(); owner != XCB_WINDOW_NONE; owner = takeSelection()) {
        InstanceRequest request(owner, token);
        const InstanceRequest::Outcome outcome = request.await(deadline);
        if (outcome == InstanceRequest::Outcome::ownerGone && std::chrono::steady_clock::now() < deadline) {
            continue;
        }
        request.endStartupNotification();
        if (outcome == InstanceRequest::Outcome::answered) {
            return false;
        }
        throw PlatformUnavailable("Pallwick is already running on this display but does not answer; end it first");
    }
    return true;
}

void ProgramInstance::handle(const xcb_generic_event_t& event,
                             const std::function<void(const ActivationToken& token)>& comeForward) const {
    const int type = event.response_type & 0x7F;
    if (type == XCB_SELECTION_REQUEST) {
        refuse(connection_, reinterpret_cast<const xcb_selection_request_event_t&>(event));
        return;
    }
    if (type != XCB_CLIENT_MESSAGE) {
        return;
    }
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
    if (message.window != window_.id() || message.type != connection_.atom(Atom::comeForward) || message.format != 32) {
        return;
    }
    const xcb_window_t asking = message.data.data32[0];
    TextRequest id(connection_, asking, connection_.atom(Atom::comeForward));
    comeForward({.id = cleanUtf8(id.get().value_or(std::string())), .time = message.data.data32[1]});

    xcb_client_message_event_t answer{};
    answer.response_type = XCB_CLIENT_MESSAGE;
    answer.format = 32;
    answer.window = asking;
    answer.type = message.type;
    xcb_send_event(connection_.xcb(), 0, asking, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&answer));
    connection_.flush();
}

}  // namespace pallwick::x11
