#include <PallwickMac/Platform/X11/ClientFrames.h>
#include <PallwickMac/Platform/X11/StackGuard.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <chrono>

namespace pallwick::x11 {

namespace {

// Raising one window makes a handful of changes, and a person raises a few windows a second: all that is answered at
// once. A program that restacks without end costs us a hundred looks a second, not ten thousand.
constexpr std::chrono::milliseconds checkInterval{8};
constexpr int checksAtOnce = 64;

// What is a client's may be declared only after it was mapped or raised, and nothing tells us of that. So after a
// change we look again a few times, later and later.
constexpr std::chrono::milliseconds firstSecondLook{8};
constexpr std::chrono::milliseconds lastSecondLook{128};
constexpr std::chrono::milliseconds never{-1};

// The next event; none after `patience`, or once the connection is broken.
Reply<xcb_generic_event_t> awaitEvent(xcb_connection_t* xcb, std::chrono::milliseconds patience) {
    if (auto event = own(xcb_poll_for_event(xcb))) {
        return event;
    }
    if (patience == never) {
        return own(xcb_wait_for_event(xcb));
    }
    pollfd readable{.fd = xcb_get_file_descriptor(xcb), .events = POLLIN, .revents = 0};
    ::poll(&readable, 1, static_cast<int>(patience.count()));
    return own(xcb_poll_for_event(xcb));
}

}  // namespace

StackGuard::StackGuard(const Connection& connection) : connection_(connection) {
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(watcherConnection_.xcb(), watcherConnection_.root(), XCB_CW_EVENT_MASK, &mask);
    // What happens after the object is made is seen.
    watcherConnection_.sync();
    watcher_ = std::thread([this] { watch(); });
}

StackGuard::~StackGuard() {
    // To the thread this looks like a server that has gone, which is what ends it.
    ::shutdown(xcb_get_file_descriptor(watcherConnection_.xcb()), SHUT_RDWR);
    watcher_.join();
}

std::optional<xcb_window_t> StackGuard::windowBelowNextPanel() const {
    const std::vector<xcb_window_t> guarded = panels();
    return guarded.empty() ? topmostClientFrame(connection_, rootChildren(connection_), {})
                           : std::optional(guarded.back());
}

void StackGuard::add(xcb_window_t panel) {
    {
        const std::scoped_lock lock(mutex_);
        panels_.push_back({.window = panel, .shownAt = ++shows_});
    }
    // A frame may have risen between the look at the stack and the panel's way into it.
    static_cast<void>(coverClients(connection_));
}

void StackGuard::remove(xcb_window_t panel) {
    const std::scoped_lock lock(mutex_);
    std::erase_if(panels_, [panel](const Panel& entry) { return entry.window == panel; });
}

void StackGuard::replace(xcb_window_t panel, xcb_window_t successor) {
    const std::scoped_lock lock(mutex_);
    const auto entry = std::ranges::find(panels_, panel, &Panel::window);
    if (entry != panels_.end()) {
        entry->window = successor;
    }
}

void StackGuard::bringToFront(xcb_window_t panel) {
    const std::scoped_lock lock(mutex_);
    const auto entry = std::ranges::find(panels_, panel, &Panel::window);
    if (entry != panels_.end()) {
        entry->shownAt = ++shows_;
        orderChanged_ = true;
    }
}

void StackGuard::commitOrder() {
    {
        const std::scoped_lock lock(mutex_);
        if (!orderChanged_) {
            return;
        }
        orderChanged_ = false;
        // A synchronisation shows every panel in overlay order, so mostly nothing has moved in the end.
        if (std::ranges::is_sorted(panels_, {}, &Panel::shownAt)) {
            return;
        }
        std::ranges::stable_sort(panels_, {}, &Panel::shownAt);
        restackInOrder();
    }
    static_cast<void>(coverClients(connection_));
}

std::vector<xcb_window_t> StackGuard::panels() const {
    const std::scoped_lock lock(mutex_);
    std::vector<xcb_window_t> windows;
    windows.reserve(panels_.size());
    for (const Panel& panel : panels_) {
        windows.push_back(panel.window);
    }
    return windows;
}

void StackGuard::watch() {
    xcb_connection_t* xcb = watcherConnection_.xcb();
    RateLimit checks(checkInterval, checksAtOnce);
    std::chrono::milliseconds nextLook = never;
    while (xcb_connection_has_error(xcb) == 0) {
        auto event = awaitEvent(xcb, nextLook);
        const bool isSecondLook = !event;
        bool outdated = isSecondLook;
        for (; event; event = own(xcb_poll_for_event(xcb))) {
            outdated = isAboutOthers(*event) || outdated;
        }
        if (!outdated) {
            continue;
        }
        nextLook = !isSecondLook ? firstSecondLook : nextLook < lastSecondLook ? nextLook * 4 : never;
        while (outdated) {
            std::this_thread::sleep_for(checks.wait(RateLimit::Clock::now()));
            checks.spend(RateLimit::Clock::now());
            // The frame may have gone before our request arrived, with another one still above the panels.
            outdated = coverClients(watcherConnection_);
        }
    }
}

bool StackGuard::isAboutOthers(const xcb_generic_event_t& event) const {
    xcb_window_t window = XCB_WINDOW_NONE;
    switch (event.response_type & 0x7FU) {
        case XCB_CONFIGURE_NOTIFY:
            window = reinterpret_cast<const xcb_configure_notify_event_t&>(event).window;
            break;
        case XCB_MAP_NOTIFY:
            window = reinterpret_cast<const xcb_map_notify_event_t&>(event).window;
            break;
        case XCB_CIRCULATE_NOTIFY:
            window = reinterpret_cast<const xcb_circulate_notify_event_t&>(event).window;
            break;
        case XCB_REPARENT_NOTIFY:
            window = reinterpret_cast<const xcb_reparent_notify_event_t&>(event).window;
            break;
        default:
            return false;
    }
    const std::scoped_lock lock(mutex_);
    return !panels_.empty() && std::ranges::find(panels_, window, &Panel::window) == panels_.end();
}

bool StackGuard::coverClients(const Connection& connection) {
    const std::vector<xcb_window_t> guarded = panels();
    const std::vector<xcb_window_t> children = rootChildren(connection);
    const bool anyThere = std::ranges::any_of(
        children, [&](xcb_window_t child) { return std::ranges::find(guarded, child) != guarded.end(); });
    if (!anyThere) {
        return false;
    }
    const std::optional<xcb_window_t> frame = topmostClientFrame(connection, children, guarded);
    if (frame) {
        restackAbove(connection, *frame);
    }
    return frame.has_value();
}

void StackGuard::restackAbove(const Connection& connection, xcb_window_t below) {
    const std::scoped_lock lock(mutex_);
    // From the front panel down, each directly above the frame: every one covers again at its first step.
    for (auto panel = panels_.rbegin(); panel != panels_.rend(); ++panel) {
        const std::array<std::uint32_t, 2> values{below, XCB_STACK_MODE_ABOVE};
        xcb_configure_window(connection.xcb(), panel->window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                             values.data());
    }
    // The server serves two connections in an order of its own: what the other thread asks comes after this.
    connection.sync();
}

void StackGuard::restackInOrder() {
    for (std::size_t i = 1; i < panels_.size(); ++i) {
        const std::array<std::uint32_t, 2> values{panels_[i - 1].window, XCB_STACK_MODE_ABOVE};
        xcb_configure_window(connection_.xcb(), panels_[i].window,
                             XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values.data());
    }
    connection_.sync();
}

}  // namespace pallwick::x11
