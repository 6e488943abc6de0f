#pragma once

#include <PallwickMac/Platform/X11/ApplicationIndex.h>
#include <PallwickMac/Platform/X11/ApplicationNames.h>
#include <PallwickMac/Platform/X11/Connection.h>

#include <cstdint>
#include <optional>
#include <string>

namespace pallwick::x11 {

/// Which application is in front: the owner of `_NET_ACTIVE_WINDOW` (EWMH).
///
/// At every focus change there is a moment without an active window, and a desktop may stay without one. Then the
/// application that was frontmost before still is, as long as its process lives: a moment of "none" would uncover what
/// an overlay hides. A window that is there but tells of no process is another application all the same: then the
/// process in front is unknown.
class ActiveApplication {
public:
    /// Neither argument is owned; both must outlive the object.
    ActiveApplication(const Connection& connection, const ApplicationIndex& applications);

    /// Asks the server afresh, and no file.
    [[nodiscard]] std::optional<std::int32_t> processID();

    /// Asks the server afresh, and looks among the desktop files.
    [[nodiscard]] std::optional<std::string> bundleID();

    /// To be called for every change of a property of the root window.
    void handle(const xcb_property_notify_event_t& event);

    /// To be called after a run of events: remembers who is in front even while nobody asks.
    void refresh();

private:
    struct Application {
        std::optional<std::int32_t> processID;
        ApplicationNames names;
    };

    struct Answers;
    class Questions;

    void query();

    const Connection& connection_;
    const ApplicationIndex& applications_;
    std::optional<Application> last_;
    /// The window that was active at the last look.
    xcb_window_t lastWindow_ = XCB_WINDOW_NONE;
    bool mayHaveChanged_ = false;
};

}  // namespace pallwick::x11
