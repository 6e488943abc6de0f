#pragma once

#include <xcb/xcb.h>

#include <string>

namespace pallwick::x11 {

/// Counts how often windows are moved, sized or restacked below the root, on a connection of its own.
class RootWatcher {
public:
    explicit RootWatcher(const std::string& display);
    ~RootWatcher();
    RootWatcher(const RootWatcher&) = delete;
    RootWatcher& operator=(const RootWatcher&) = delete;

    /// Since the last call: every change that the server had made before this one.
    [[nodiscard]] int configurations();
    /// The same for one window.
    [[nodiscard]] int configurations(xcb_window_t window);

private:
    xcb_connection_t* connection_;
};

}  // namespace pallwick::x11
