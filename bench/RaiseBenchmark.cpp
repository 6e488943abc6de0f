// How long a window that has just been raised lies above an overlay before that covers it again: the time between the
// two changes of the stacking order as a third program sees them, in round trips to the X server.

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/PrivateDesktop.h"
#include "support/Program.h"
#include "support/TestClient.h"

namespace pallwick {

namespace {

using Clock = std::chrono::steady_clock;
using support::PrivateDesktop;
using support::Reply;

constexpr int raises = 200;
// Nobody raises windows faster than this by hand; whoever does it without end is made to wait.
constexpr std::chrono::milliseconds betweenRaises{50};

double microseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::micro>(duration).count();
}

double quantile(std::vector<double> values, double fraction) {
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(fraction * static_cast<double>(values.size() - 1))];
}

/// Sees every change of the stacking order, on a connection of its own.
class Observer {
public:
    explicit Observer(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection_, xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root,
                                     XCB_CW_EVENT_MASK, &events);
        roundTrip();
    }
    ~Observer() { xcb_disconnect(connection_); }
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;

    void roundTrip() {
        const Reply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }

    void forgetEvents() {
        roundTrip();
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
        }
    }

    /// Returns when `window` is restacked.
    Clock::time_point awaitRestacking(xcb_window_t window) {
        while (const Reply<xcb_generic_event_t> event{xcb_wait_for_event(connection_)}) {
            const auto& configured = reinterpret_cast<const xcb_configure_notify_event_t&>(*event);
            if ((event->response_type & 0x7F) == XCB_CONFIGURE_NOTIFY && configured.window == window) {
                return Clock::now();
            }
        }
        throw std::runtime_error("the X server has gone");
    }

private:
    xcb_connection_t* connection_;
};

void run() {
    PrivateDesktop desktop({.windowManager = support::WindowManager::openbox, .server = {}, .environment = {}});
    support::Program program(desktop);
    program.awaitMainWindow();
    program.click("Add");
    const support::Program::Overlay overlay = program.awaitOverlayCount(1).front();
    const support::PixelRect beneath{overlay.rect.x, overlay.rect.y, overlay.rect.width, overlay.rect.height};
    support::TestClient first(desktop, {.title = "First", .rect = beneath});
    support::TestClient second(desktop, {.title = "Second", .rect = beneath});
    const std::array<xcb_window_t, 2> clients{first.window(), second.window()};
    const std::array<xcb_window_t, 2> frames{desktop.windows().rootChild(first.window()),
                                             desktop.windows().rootChild(second.window())};
    desktop.x().await("the overlay above both", [&] {
        return desktop.windows().isAbove(overlay.window, frames[0]) &&
               desktop.windows().isAbove(overlay.window, frames[1]);
    });

    Observer observer(desktop.server().display());
    std::vector<double> roundTrips;
    std::vector<double> exposures;
    for (int i = 0; i < raises; ++i) {
        std::this_thread::sleep_for(betweenRaises);
        observer.forgetEvents();
        const auto asked = Clock::now();
        observer.roundTrip();
        roundTrips.push_back(microseconds(Clock::now() - asked));

        const auto which = static_cast<std::size_t>(i % 2);
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(desktop.x().get(), clients[which], XCB_CONFIG_WINDOW_STACK_MODE, &above);
        xcb_flush(desktop.x().get());
        const Clock::time_point raised = observer.awaitRestacking(frames[which]);
        const Clock::time_point covered = observer.awaitRestacking(overlay.window);
        exposures.push_back(microseconds(covered - raised));
    }

    const double limit = quantile(roundTrips, 0.5);
    std::printf("| | median | 99 of 100 | longest | median in round trips |\n|---|---|---|---|---|\n");
    std::printf("| one round trip to the X server | %.0f us | %.0f us | %.0f us | 1 |\n", limit,
                quantile(roundTrips, 0.99), quantile(roundTrips, 1));
    std::printf("| a raised window above an overlay | %.0f us | %.0f us | %.0f us | %.1f |\n", quantile(exposures, 0.5),
                quantile(exposures, 0.99), quantile(exposures, 1), quantile(exposures, 0.5) / limit);
}

}  // namespace

}  // namespace pallwick

int main() {
    try {
        pallwick::run();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
