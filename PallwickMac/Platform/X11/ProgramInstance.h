#pragma once

#include <PallwickMac/Platform/ActivationToken.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/Resources.h>

#include <functional>

namespace pallwick::x11 {

/// The program's one instance on a display: it owns a selection named for the program, and whoever comes later sends it
/// a client message, in whose answer it says that it has come to the front. The server takes the selection away from
/// an instance that ends, however it ends.
class ProgramInstance {
public:
    /// `connection` is not owned and must outlive the object.
    explicit ProgramInstance(const Connection& connection);

    /// True where this process is the one instance from now on. Otherwise the one that is was asked to come to the
    /// front, and has answered; the launcher knows that this start is over. Waits for the answer, for some seconds at
    /// the most. Throws `PlatformUnavailable` where none comes.
    [[nodiscard]] bool claim(const ActivationToken& token) const;

    /// Takes any event. Calls `comeForward` if somebody asks for that, then answers.
    void handle(const xcb_generic_event_t& event,
                const std::function<void(const ActivationToken& token)>& comeForward) const;

private:
    /// The owner's window; none where it was nobody, and is this instance now.
    [[nodiscard]] xcb_window_t takeSelection() const;

    const Connection& connection_;
    WindowHandle window_;
};

}  // namespace pallwick::x11
