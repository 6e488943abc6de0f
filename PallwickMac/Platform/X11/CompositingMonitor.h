#pragma once

#include <PallwickMac/Platform/X11/Connection.h>

namespace pallwick::x11 {

/// Whether a compositing manager runs on our screen: one owns the selection `_NET_WM_CM_Sn` (EWMH). It may come and go
/// at any time.
class CompositingMonitor {
public:
    /// `connection` is not owned and must outlive the object.
    explicit CompositingMonitor(const Connection& connection);

    [[nodiscard]] bool isCompositing() const { return owner_ != XCB_WINDOW_NONE; }

    /// Takes any event. True when a compositing manager has just come or gone, or taken the place of another one.
    [[nodiscard]] bool handle(const xcb_generic_event_t& event);

private:
    const Connection& connection_;
    xcb_atom_t selection_;
    xcb_window_t owner_ = XCB_WINDOW_NONE;
};

}  // namespace pallwick::x11
