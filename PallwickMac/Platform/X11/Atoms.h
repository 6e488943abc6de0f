#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstddef>
#include <string_view>

namespace pallwick::x11 {

/// The atoms that the program uses. Protocol names: ICCCM, EWMH (wm-spec), Startup
/// Notification, System Tray and XEmbed of freedesktop, the private conventions of toolkits, and our own.
enum class Atom : std::size_t {
    activeWindow,
    clientList,
    clientListStacking,
    comeForward,
    compositorShadow,
    compoundText,
    currentDesktop,
    desktop,
    edid,
    frameExtents,
    gtkApplicationID,
    gtkFrameExtents,
    kdeDesktopFile,
    manager,
    netWindowState,
    netWindowStateAbove,
    netWindowStateBelow,
    netWindowStateHidden,
    programInstance,
    rootPixmap,
    startupInfo,
    startupInfoBegin,
    strut,
    strutPartial,
    supportingCheck,
    systemTrayOpcode,
    systemTrayVisual,
    utf8String,
    windowName,
    windowOpacity,
    windowPID,
    windowState,
    windowType,
    windowTypeCombo,
    windowTypeDesktop,
    windowTypeDialog,
    windowTypeDnd,
    windowTypeDock,
    windowTypeDropdownMenu,
    windowTypeMenu,
    windowTypeNormal,
    windowTypeNotification,
    windowTypePopupMenu,
    windowTypeSplash,
    windowTypeToolbar,
    windowTypeTooltip,
    windowTypeUtility,
    xembedInfo,
    count,
};

/// Every `Atom` interned on one server, in one round trip.
class Atoms {
public:
    explicit Atoms(xcb_connection_t* connection);

    [[nodiscard]] xcb_atom_t operator[](Atom atom) const { return values_[static_cast<std::size_t>(atom)]; }

private:
    std::array<xcb_atom_t, static_cast<std::size_t>(Atom::count)> values_{};
};

/// The atom of that name, made where the server has none yet. One round trip.
[[nodiscard]] xcb_atom_t internAtom(xcb_connection_t* connection, std::string_view name);

}  // namespace pallwick::x11
