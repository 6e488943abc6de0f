#include <PallwickMac/Platform/X11/WindowActivation.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>

#include <QGuiApplication>
#include <QWindow>

#include <optional>

namespace pallwick::x11 {

namespace {

bool hasWindowManager(const Connection& connection) {
    return !CardinalsRequest(connection, connection.root(), connection.atom(Atom::supportingCheck), XCB_ATOM_WINDOW, 1)
                .get()
                .empty();
}

std::optional<std::uint32_t> cardinal(const Connection& connection, xcb_window_t window, Atom property) {
    const auto values = CardinalsRequest(connection, window, connection.atom(property), XCB_ATOM_CARDINAL, 1).get();
    return values.empty() ? std::nullopt : std::optional(values.front());
}

/// On the toolkit's connection, behind its request to show the window.
void tellWindowManager(const Connection& connection, xcb_connection_t* toolkit, xcb_window_t window, Atom type,
                       std::uint32_t first, std::uint32_t second) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = connection.atom(type);
    message.data.data32[0] = first;
    message.data.data32[1] = second;
    xcb_send_event(toolkit, 0, connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
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
    const auto id = static_cast<xcb_window_t>(window.winId());
    const auto workspace = cardinal(connection, id, Atom::desktop);
    const auto current = cardinal(connection, connection.root(), Atom::currentDesktop);
    constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF;
    if (workspace && current && *workspace != *current && *workspace != everyWorkspace) {
        // Not every window manager does something about a window on another workspace (openbox does not).
        tellWindowManager(connection, toolkit->connection(), id, Atom::desktop, *current, askedByPerson);
    }
    tellWindowManager(connection, toolkit->connection(), id, Atom::activeWindow, askedByPerson, time);
    xcb_flush(toolkit->connection());
}

}  // namespace pallwick::x11
