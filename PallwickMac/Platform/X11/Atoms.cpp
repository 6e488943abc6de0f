#include <PallwickMac/Platform/X11/Atoms.h>
#include <PallwickMac/Platform/X11/XcbReply.h>

namespace pallwick::x11 {

namespace {

// In the order of `Atom`.
constexpr std::array<std::string_view, static_cast<std::size_t>(Atom::count)> names{
    "_NET_ACTIVE_WINDOW",
    "_NET_CLIENT_LIST",
    "_NET_CLIENT_LIST_STACKING",
    "_PALLWICK_COME_FORWARD",
    "_COMPTON_SHADOW",
    "COMPOUND_TEXT",
    "_NET_CURRENT_DESKTOP",
    "_NET_WM_DESKTOP",
    "EDID",
    "_NET_FRAME_EXTENTS",
    "_GTK_APPLICATION_ID",
    "_GTK_FRAME_EXTENTS",
    "_KDE_NET_WM_DESKTOP_FILE",
    "MANAGER",
    "_NET_WM_STATE",
    "_NET_WM_STATE_ABOVE",
    "_NET_WM_STATE_BELOW",
    "_NET_WM_STATE_HIDDEN",
    "_PALLWICK_INSTANCE",
    "_XROOTPMAP_ID",
    "_NET_STARTUP_INFO",
    "_NET_STARTUP_INFO_BEGIN",
    "_NET_WM_STRUT",
    "_NET_WM_STRUT_PARTIAL",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_SYSTEM_TRAY_OPCODE",
    "_NET_SYSTEM_TRAY_VISUAL",
    "UTF8_STRING",
    "_NET_WM_NAME",
    "_NET_WM_WINDOW_OPACITY",
    "_NET_WM_PID",
    "WM_STATE",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_COMBO",
    "_NET_WM_WINDOW_TYPE_DESKTOP",
    "_NET_WM_WINDOW_TYPE_DIALOG",
    "_NET_WM_WINDOW_TYPE_DND",
    "_NET_WM_WINDOW_TYPE_DOCK",
    "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
    "_NET_WM_WINDOW_TYPE_MENU",
    "_NET_WM_WINDOW_TYPE_NORMAL",
    "_NET_WM_WINDOW_TYPE_NOTIFICATION",
    "_NET_WM_WINDOW_TYPE_POPUP_MENU",
    "_NET_WM_WINDOW_TYPE_SPLASH",
    "_NET_WM_WINDOW_TYPE_TOOLBAR",
    "_NET_WM_WINDOW_TYPE_TOOLTIP",
    "_NET_WM_WINDOW_TYPE_UTILITY",
    "_XEMBED_INFO",
};

xcb_intern_atom_cookie_t request(xcb_connection_t* connection, std::string_view name) {
    return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

xcb_atom_t fetch(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie) {
    const auto reply = own(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

}  // namespace

Atoms::Atoms(xcb_connection_t* connection) {
    std::array<xcb_intern_atom_cookie_t, names.size()> cookies{};
    for (std::size_t i = 0; i < names.size(); ++i) {
        cookies[i] = request(connection, names[i]);
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        values_[i] = fetch(connection, cookies[i]);
    }
}

xcb_atom_t internAtom(xcb_connection_t* connection, std::string_view name) {
    return fetch(connection, request(connection, name));
}

}  // namespace pallwick::x11
