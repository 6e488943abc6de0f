#include <PallwickMac/Platform/X11/CompositingMonitor.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <xcb/xfixes.h>

#include <string>
#include <utility>

namespace pallwick::x11 {

CompositingMonitor::CompositingMonitor(const Connection& connection)
    : connection_(connection),
      selection_(internAtom(connection.xcb(), "_NET_WM_CM_S" + std::to_string(connection.screenNumber()))) {
    // Selected before the owner is asked for, so that a change between the two is not lost.
    xcb_xfixes_select_selection_input(connection.xcb(), connection.root(), selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    const auto owner = own(xcb_get_selection_owner_reply(
        connection.xcb(), xcb_get_selection_owner(connection.xcb(), selection_), nullptr));
    owner_ = owner ? owner->owner : xcb_window_t{XCB_WINDOW_NONE};
}

bool CompositingMonitor::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7FU) != connection_.xfixesFirstEvent() + XCB_XFIXES_SELECTION_NOTIFY) {
        return false;
    }
    const auto& notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (notify.selection != selection_) {
        return false;
    }
    const xcb_window_t owner =
        notify.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER ? notify.owner : xcb_window_t{XCB_WINDOW_NONE};
    return std::exchange(owner_, owner) != owner;
}

}  // namespace pallwick::x11
