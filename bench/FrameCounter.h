#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace pallwick {

/// Counts how often windows get a new picture, whatever their shapes (the Damage extension).
class FrameCounter {
public:
    FrameCounter(const std::string& display, const std::vector<xcb_window_t>& windows);

    /// New pictures of all windows together during the next `duration`, which it takes.
    [[nodiscard]] int countFor(std::chrono::milliseconds duration);

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    void roundTrip();
    /// How many windows had got a new picture. Each tells again of the next one.
    int take();

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    std::uint8_t damageEvent_ = 0;
};

}  // namespace pallwick
