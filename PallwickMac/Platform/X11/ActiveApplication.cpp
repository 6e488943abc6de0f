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

ActiveApplication::ActiveApplication(const Connection& connection, const ApplicationIndex& applications)
    : connection_(connection), applications_(applications) {}

void ActiveApplication::query() {
    CardinalsRequest active(connection_, connection_.root(), connection_.atom(Atom::activeWindow), XCB_ATOM_WINDOW, 1);
    const std::vector<std::uint32_t> windows = active.get();
    if (!windows.empty() && windows.front() != XCB_WINDOW_NONE) {
        ClientProcessesRequest processes(connection_, windows);
        CardinalsRequest claimed(connection_, windows.front(), connection_.atom(Atom::windowPID), XCB_ATOM_CARDINAL, 1);
        ApplicationNamesRequest namesRequest(connection_, windows.front());
        const auto geometryCookie = xcb_get_geometry(connection_.xcb(), windows.front());
        processes.get();
        const std::optional<std::int32_t> claimedID = processIDFrom(claimed.get());
        ApplicationNames names = namesRequest.get();
        const bool exists = own(xcb_get_geometry_reply(connection_.xcb(), geometryCookie, nullptr)) != nullptr;
        const std::optional<std::int32_t> known = processes.processOf(windows.front());
        const std::optional<std::int32_t> processID = known ? known : claimedID;
        if (processID || exists) {
            // The server still knows whose a window was that has just vanished, but no name of it.
            if (names.empty() && processID && last_ && last_->processID == processID) {
                names = last_->names;
            }
            last_ = Application{.processID = processID, .names = std::move(names)};
            return;
        }
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
