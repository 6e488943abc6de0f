#include <PallwickMac/Platform/X11/WindowActivation.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>

#include <QGuiApplication>
#include <QWindow>

namespace pallwick::x11 {

namespace {

bool hasWindowManager(const Connection& connection) {
    return !CardinalsRequest(connection, connection.root(), connection.atom(Atom::supportingCheck), XCB_ATOM_WINDOW, 1)
                .get()
                .empty();
}

}  // namespace

void activateWindow(const Connection& connection, QWindow& window, std::uint32_t time) {
    const auto* toolkit = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (toolkit == nullptr || !hasWindowManager(connection)) {
        window.raise();
        window.requestActivate();
        return;
    }
    // The toolkit's own request has the time of the last event that it has seen, at which window managers refuse:
    // nobody touched the program. A person did ask for the window, though, which is what this source says.
    constexpr std::uint32_t askedByPerson = 2;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(window.winId());
    message.type = connection.atom(Atom::activeWindow);
    message.data.data32[0] = askedByPerson;
    message.data.data32[1] = time;
    // On the toolkit's connection, behind its request to show the window.
    xcb_send_event(toolkit->connection(), 0, connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(toolkit->connection());
}

}  // namespace pallwick::x11
