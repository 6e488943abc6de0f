#include <PallwickMac/Platform/ProgramIdentity.h>
#include <PallwickMac/Platform/X11/ActiveApplication.h>
#include <PallwickMac/Platform/X11/ClientProcesses.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace pallwick::x11 {

namespace {

bool isAlive(std::int32_t processID) {
    // Signal 0 only asks; a process of another user exists although it may not be signalled.
    return ::kill(processID, 0) == 0 || errno == EPERM;
}

}  // namespace

struct ActiveApplication::Answers {
    bool exists = false;
    std::optional<std::int32_t> processID;
    ApplicationNames names;
};

/// What there is to ask about the active window. Sent when it is made and answered at `get`, to be called once.
class ActiveApplication::Questions {
public:
    Questions(const Connection& connection, xcb_window_t window)
        : connection_(connection),
          window_(window),
          processes_(connection, {&window, 1}),
          claimed_(connection, window, connection.atom(Atom::windowPID), XCB_ATOM_CARDINAL, 1),
          names_(connection, window),
          geometry_(xcb_get_geometry(connection.xcb(), window)) {}

    [[nodiscard]] Answers get() {
        processes_.get();
        const std::optional<std::int32_t> claimed = processIDFrom(claimed_.get());
        const std::optional<std::int32_t> known = processes_.processOf(window_);
        ApplicationNames names = names_.get();
        const bool exists = own(xcb_get_geometry_reply(connection_.xcb(), geometry_, nullptr)) != nullptr;
        return {.exists = exists, .processID = known ? known : claimed, .names = std::move(names)};
    }

private:
    const Connection& connection_;
    xcb_window_t window_;
    ClientProcessesRequest processes_;
    CardinalsRequest claimed_;
    ApplicationNamesRequest names_;
    xcb_get_geometry_cookie_t geometry_;
};

ActiveApplication::ActiveApplication(const Connection& connection, const ApplicationIndex& applications)
    : connection_(connection), applications_(applications) {}

void ActiveApplication::query() {
    CardinalsRequest active(connection_, connection_.root(), connection_.atom(Atom::activeWindow), XCB_ATOM_WINDOW, 1);
    // It is the same window most of the time: asked about along with it, to wait once.
    std::optional<Questions> early;
    if (lastWindow_ != XCB_WINDOW_NONE) {
        early.emplace(connection_, lastWindow_);
    }
    const std::vector<std::uint32_t> windows = active.get();
    const xcb_window_t window = windows.empty() ? xcb_window_t{XCB_WINDOW_NONE} : windows.front();
    Answers answers = early ? early->get() : Answers();
    if (std::exchange(lastWindow_, window) != window) {
        answers = window == XCB_WINDOW_NONE ? Answers() : Questions(connection_, window).get();
    }
    if (answers.processID || answers.exists) {
        // The server still knows whose a window was that has just vanished, but no name of it.
        if (answers.names.empty() && answers.processID && last_ && last_->processID == answers.processID) {
            answers.names = last_->names;
        }
        last_ = Application{.processID = answers.processID, .names = std::move(answers.names)};
        return;
    }
    if (last_ && !(last_->processID && isAlive(*last_->processID))) {
        last_.reset();
    }
}

std::optional<std::int32_t> ActiveApplication::processID() {
    query();
    return last_ ? last_->processID : std::nullopt;
}

std::optional<std::string> ActiveApplication::bundleID() {
    query();
    if (!last_) {
        return std::nullopt;
    }
    return last_->processID == ::getpid() ? std::string(programBundleID) : applications_.bundleID(last_->names);
}

void ActiveApplication::handle(const xcb_property_notify_event_t& event) {
    mayHaveChanged_ = mayHaveChanged_ || event.atom == connection_.atom(Atom::activeWindow);
}

void ActiveApplication::refresh() {
    if (std::exchange(mayHaveChanged_, false)) {
        query();
    }
}

}  // namespace pallwick::x11
