#pragma once

#include <PallwickMac/Platform/X11/Connection.h>

#include <vector>

namespace pallwick::x11 {

class SystemTrayIcon;

/// The notification area of the screen's panel (freedesktop's System Tray Protocol): the program that owns the
/// selection `_NET_SYSTEM_TRAY_Sn` takes icons in. It may come and go at any time, and so may another one.
class SystemTray {
public:
    /// `connection` is not owned and must outlive the object. Someone has to select structure events on the root.
    explicit SystemTray(const Connection& connection);

    SystemTray(const SystemTray&) = delete;
    SystemTray& operator=(const SystemTray&) = delete;

    [[nodiscard]] const Connection& connection() const { return connection_; }

    /// The window that takes icons in; none while there is nobody to do it.
    [[nodiscard]] xcb_window_t manager() const { return manager_; }

    /// The visual that the manager wants icons to have; the root's where it does not say. One round trip.
    [[nodiscard]] xcb_visualid_t wantedVisual() const;

    /// Neither is owned. An icon must be removed before it goes.
    void add(SystemTrayIcon& icon);
    void remove(SystemTrayIcon& icon);

    /// Takes any event.
    void handle(const xcb_generic_event_t& event);

private:
    [[nodiscard]] xcb_window_t queryOwner() const;
    void setManager(xcb_window_t manager);
    void handleManagerChange(const xcb_generic_event_t& event);

    const Connection& connection_;
    xcb_atom_t selection_;
    xcb_window_t manager_ = XCB_WINDOW_NONE;
    std::vector<SystemTrayIcon*> icons_;
};

}  // namespace pallwick::x11
