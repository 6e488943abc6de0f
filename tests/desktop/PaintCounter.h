#pragma once

#include <support/XConnection.h>

#include <cstdint>
#include <memory>
#include <string>

namespace pallwick::desktop {

/// Counts how often one window is drawn on (the Damage extension), on a connection of its own.
///
/// The window must have no bounding shape: a shaped window's drawing is reported in many parts.
class PaintCounter {
public:
    PaintCounter(const std::string& display, xcb_window_t window);

    /// Since the counter was made or last asked, everything that the server has drawn before this call included.
    int take();

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    std::uint8_t damageEvent_ = 0;
};

}  // namespace pallwick::desktop
