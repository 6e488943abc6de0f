#pragma once

#include <PallwickMac/Platform/ActivationToken.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/Resources.h>

#include <chrono>
#include <string>

namespace pallwick::x11 {

/// A request of a second start of the program to the first one, to come to the front. It has a connection of its own:
/// events that nobody but the request waits for must not be lost to others.
///
/// Sent is a client message `_PALLWICK_COME_FORWARD` to the first one's window, with a window of ours, on which a
/// property of the same name holds the startup id, and the time. The answer is the same message to our window.
class InstanceRequest {
public:
    enum class Outcome { answered, ownerGone, unanswered };

    /// Sends it. Throws `PlatformUnavailable`.
    InstanceRequest(xcb_window_t owner, const ActivationToken& token);

    [[nodiscard]] Outcome await(std::chrono::steady_clock::time_point deadline) const;

    /// Tells launchers that the start is over, so that the pointer no longer says that something is about to come
    /// (Startup Notification protocol).
    void endStartupNotification() const;

private:
    void send() const;

    const Connection connection_;
    xcb_window_t owner_;
    ActivationToken token_;
    WindowHandle window_;
};

}  // namespace pallwick::x11
