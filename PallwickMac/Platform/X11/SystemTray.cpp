#include <PallwickMac/Platform/X11/SystemTray.h>
#include <PallwickMac/Platform/X11/SystemTrayIcon.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <xcb/xcb_aux.h>
#include <xcb/xfixes.h>

#include <string>

namespace pallwick::x11 {

SystemTray::SystemTray(const Connection& connection)
    : connection_(connection),
      selection_(internAtom(connection.xcb(), "_NET_SYSTEM_TRAY_S" + std::to_string(connection.screenNumber()))) {
    // Selected before the owner is asked for, so that a change between the two is not lost.
    xcb_xfixes_select_selection_input(connection.xcb(), connection.root(), selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    manager_ = queryOwner();
}

xcb_window_t SystemTray::queryOwner() const {
    const auto owner = own(xcb_get_selection_owner_reply(
        connection_.xcb(), xcb_get_selection_owner(connection_.xcb(), selection_), nullptr));
    return owner ? owner->owner : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_visualid_t SystemTray::wantedVisual() const {
    const std::vector<std::uint32_t> wanted =
        CardinalsRequest(connection_, manager_, connection_.atom(Atom::systemTrayVisual), XCB_ATOM_VISUALID, 1).get();
    // Only a visual of this screen can be meant, and a malformed property must not cost the icon.
    const bool exists =
        !wanted.empty() &&
        xcb_aux_find_visual_by_id(xcb_aux_get_screen(connection_.xcb(), connection_.screenNumber()), wanted.front());
    return exists ? wanted.front() : connection_.screen().root_visual;
}

void SystemTray::add(SystemTrayIcon& icon) {
    icons_.push_back(&icon);
}

void SystemTray::remove(SystemTrayIcon& icon) {
    std::erase(icons_, &icon);
}

void SystemTray::handle(const xcb_generic_event_t& event) {
    handleManagerChange(event);
    for (SystemTrayIcon* icon : icons_) {
        icon->handle(event);
    }
}

void SystemTray::handleManagerChange(const xcb_generic_event_t& event) {
    const int type = event.response_type & 0x7F;
    if (type == connection_.xfixesFirstEvent() + XCB_XFIXES_SELECTION_NOTIFY) {
        const auto& notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        // Whoever takes the selection announces itself once it is ready.
        if (notify.selection == selection_) {
            setManager(XCB_WINDOW_NONE);
        }
    } else if (type == XCB_CLIENT_MESSAGE) {
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        if (message.type == connection_.atom(Atom::manager) && message.format == 32 &&
            message.data.data32[1] == selection_) {
            setManager(queryOwner());
        }
    }
}

void SystemTray::setManager(xcb_window_t manager) {
    manager_ = manager;
    for (SystemTrayIcon* icon : icons_) {
        icon->dockAnew();
    }
}

}  // namespace pallwick::x11
