#pragma once

#include <PallwickMac/Platform/RateLimit.h>
#include <PallwickMac/Platform/X11/Connection.h>

#include <cstdint>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace pallwick::x11 {

/// Keeps the shown panels above every window of other applications, as one group in overlay order.
///
/// Override-redirect windows are stacked by nobody: whenever a window manager raises a client, it covers them. So at
/// every change of the root's children the stacking order is looked at, and if a client frame lies above a panel, the
/// panels are restacked directly above the topmost such frame. They never rise above other override-redirect windows:
/// menus and lock screens stay in front, and two such programs do not raise over each other for ever.
///
/// Until a raised window is covered again it shows, so a thread with a connection of its own watches, and the program
/// may be busy meanwhile. Changes are answered at once; only a program that restacks without end has to wait for the
/// answers. All members are for the main thread.
class StackGuard {
public:
    /// `connection` is not owned and must outlive the object. Throws `PlatformUnavailable`.
    explicit StackGuard(const Connection& connection);
    ~StackGuard();

    StackGuard(const StackGuard&) = delete;
    StackGuard& operator=(const StackGuard&) = delete;

    /// The window directly above which a panel about to be shown belongs, so that it covers every client and every
    /// panel shown before; none where it may stay on top as it is.
    [[nodiscard]] std::optional<xcb_window_t> windowBelowNextPanel() const;

    /// From now on `panel` is guarded; the caller has just stacked it above `windowBelowNextPanel()`.
    void add(xcb_window_t panel);

    /// From now on nobody restacks `panel`.
    void remove(xcb_window_t panel);

    /// `successor`, stacked directly above `panel` by the caller, takes its place in the group.
    void replace(xcb_window_t panel, xcb_window_t successor);

    /// `panel` becomes the front of the group at the next `commitOrder`.
    void bringToFront(xcb_window_t panel);

    /// Restacks the group if `bringToFront` has really changed its order.
    void commitOrder();

    /// The guarded panels, bottom to top.
    [[nodiscard]] std::vector<xcb_window_t> panels() const;

private:
    struct Panel {
        xcb_window_t window = XCB_WINDOW_NONE;
        std::uint64_t shownAt = 0;
    };

    void watch();
    [[nodiscard]] bool isAboutOthers(const xcb_generic_event_t& event) const;
    /// Asks and acts through `connection`, which is the calling thread's. Whether anything had to be restacked.
    [[nodiscard]] bool coverClients(const Connection& connection);
    void restackAbove(const Connection& connection, xcb_window_t below);
    void restackInOrder();

    const Connection& connection_;
    const Connection watcherConnection_;
    mutable std::mutex mutex_;
    /// In stacking order, the bottom one first.
    std::vector<Panel> panels_;
    std::uint64_t shows_ = 0;
    bool orderChanged_ = false;
    std::thread watcher_;
};

}  // namespace pallwick::x11
