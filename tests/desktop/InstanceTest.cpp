// The program runs once on a display: another start brings the main window of the first one to the front.

#include <gmock/gmock.h>
#include <support/Program.h>
#include <support/TestClient.h>

#include <csignal>

namespace pallwick::desktop {
namespace {

using support::Environment;
using support::ExitStatus;
using support::PrivateDesktop;
using support::Process;
using support::Program;
using support::TestClient;
using support::WindowManager;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

constexpr ExitStatus success{};
constexpr ExitStatus failure{.code = 1, .signal = 0};

std::unique_ptr<Process> startOnceMore(const PrivateDesktop& desktop, const Environment& more = {}) {
    return desktop.start({PALLWICK_PROGRAM}, more);
}

/// It has nothing to say and ends in good order.
void expectHandedOver(const PrivateDesktop& desktop, const Environment& more = {}) {
    const std::unique_ptr<Process> second = startOnceMore(desktop, more);

    EXPECT_EQ(second->awaitExit(), success);
    EXPECT_EQ(second->standardError(), "");
}

/// A first instance whose window is in front of nothing.
class SecondStart : public testing::TestWithParam<WindowManager> {
protected:
    SecondStart() : desktop_({.windowManager = GetParam()}), program_(desktop_), window_(program_.awaitMainWindow()) {}

    void awaitInFront() {
        desktop_.x().await("the main window in front", [&] {
            const auto found = desktop_.windows().client("Pallwick");
            return found && desktop_.windows().isViewable(*found) && desktop_.windows().active() == *found;
        });
    }

    PrivateDesktop desktop_;
    Program program_;
    xcb_window_t window_;
};

TEST_P(SecondStart, RaisesTheMainWindow) {
    TestClient other(desktop_, {.title = "Other"});
    desktop_.windows().activate(other.window());

    expectHandedOver(desktop_);

    awaitInFront();
}

TEST_P(SecondStart, OpensAClosedMainWindow) {
    program_.closeMainWindow();
    TestClient other(desktop_, {.title = "Other"});
    desktop_.windows().activate(other.window());

    expectHandedOver(desktop_);

    program_.awaitMainWindow();
    awaitInFront();
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, SecondStart,
                         testing::Values(WindowManager::openbox, WindowManager::xfwm4, WindowManager::i3),
                         [](const auto& instance) { return describe(instance.param); });

// A tiling window manager neither minimises nor takes part in this way of counting workspaces.
class SecondStartOnWorkspaces : public SecondStart {};

TEST_P(SecondStartOnWorkspaces, ShowsAMinimisedMainWindow) {
    desktop_.windows().minimise(window_);

    expectHandedOver(desktop_);

    awaitInFront();
}

TEST_P(SecondStartOnWorkspaces, ShowsAMainWindowOfAnotherWorkspace) {
    desktop_.windows().setWorkspaceCount(2);
    desktop_.windows().switchToWorkspace(1);
    TestClient other(desktop_, {.title = "Other"});
    desktop_.windows().activate(other.window());

    expectHandedOver(desktop_);

    awaitInFront();
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, SecondStartOnWorkspaces,
                         testing::Values(WindowManager::openbox, WindowManager::xfwm4),
                         [](const auto& instance) { return describe(instance.param); });

TEST(SecondStartOnTiles, ShowsAMainWindowOfAnotherWorkspace) {
    PrivateDesktop desktop({.windowManager = WindowManager::i3});
    Program program(desktop);
    const xcb_window_t window = program.awaitMainWindow();
    support::run({"i3-msg", "workspace", "2"}, desktop.environment());
    TestClient other(desktop, {.title = "Other"});
    desktop.x().await("the main window on the other workspace", [&] {
        return !desktop.windows().isViewable(window) && desktop.windows().active() == other.window();
    });

    expectHandedOver(desktop);

    desktop.x().await("the main window in front",
                      [&] { return desktop.windows().isViewable(window) && desktop.windows().active() == window; });
}

class Instance : public testing::Test {
protected:
    PrivateDesktop desktop_{{}};
};

TEST_F(Instance, KeepsItsOverlaysWhenItIsStartedAgain) {
    Program program(desktop_);
    program.awaitMainWindow();
    program.controls().await("push button", "Add").doAction("Press");
    program.awaitOverlayCount(1);

    expectHandedOver(desktop_);

    EXPECT_EQ(program.overlays().size(), 1U);
}

TEST_F(Instance, IsReachedByStartingItAgainWhereThereIsNoWindowManager) {
    PrivateDesktop bare({.windowManager = WindowManager::none});
    Program program(bare);
    program.awaitMainWindow();
    program.closeMainWindow();

    expectHandedOver(bare);

    program.awaitMainWindow();
}

/// Messages of the Startup Notification protocol, on a connection of its own.
class LauncherMessages {
public:
    explicit LauncherMessages(PrivateDesktop& desktop)
        : desktop_(desktop), connection_(xcb_connect(desktop.server().display().c_str(), nullptr)) {
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(connection_, desktop.x().root(), XCB_CW_EVENT_MASK, &mask);
        static_cast<void>(take());
    }
    ~LauncherMessages() { xcb_disconnect(connection_); }
    LauncherMessages(const LauncherMessages&) = delete;
    LauncherMessages& operator=(const LauncherMessages&) = delete;

    /// All that have come since the last call.
    std::vector<std::string> take() {
        const support::Reply<xcb_get_input_focus_reply_t> done(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        std::vector<std::string> messages;
        while (const support::Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
            if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE) {
                continue;
            }
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
            const std::string type = desktop_.x().atomName(message.type);
            if (type == "_NET_STARTUP_INFO_BEGIN") {
                messages.emplace_back();
            } else if (type != "_NET_STARTUP_INFO" || messages.empty()) {
                continue;
            }
            const auto* bytes = reinterpret_cast<const char*>(message.data.data8);
            messages.back().append(bytes, strnlen(bytes, sizeof message.data.data8));
        }
        return messages;
    }

private:
    PrivateDesktop& desktop_;
    xcb_connection_t* connection_;
};

TEST_F(Instance, EndsTheStartupNotificationOfASecondStart) {
    Program program(desktop_);
    program.awaitMainWindow();
    LauncherMessages messages(desktop_);

    expectHandedOver(desktop_, {{"DESKTOP_STARTUP_ID", "a \"panel\"\\1_TIME123456"}});

    EXPECT_THAT(messages.take(), ElementsAre(R"(remove: ID="a \"panel\"\\1_TIME123456")"));
}

TEST_F(Instance, BroadcastsNothingForAStartWithoutNotification) {
    Program program(desktop_);
    program.awaitMainWindow();
    LauncherMessages messages(desktop_);

    expectHandedOver(desktop_);

    EXPECT_THAT(messages.take(), IsEmpty());
}

TEST_F(Instance, IsNotBlockedByOneThatWasKilled) {
    {
        Program killed(desktop_);
        killed.awaitMainWindow();
        desktop_.x().release(killed.process());
        killed.process().kill();
    }

    Program program(desktop_);

    program.awaitMainWindow();
}

TEST_F(Instance, TakesOverFromOneThatEndsWhileItIsAsked) {
    Program program(desktop_);
    program.awaitMainWindow();
    desktop_.x().release(program.process());
    program.process().signal(SIGSTOP);
    Program second(desktop_);

    program.process().kill();

    second.awaitMainWindow();
}

TEST_F(Instance, IsOneOfManyThatStartAtTheSameMoment) {
    constexpr int count = 4;
    std::vector<std::unique_ptr<Process>> starts;
    for (int index = 0; index < count; ++index) {
        starts.push_back(startOnceMore(desktop_));
    }

    const xcb_window_t window = desktop_.windows().awaitClient("Pallwick");
    const auto winner = static_cast<pid_t>(desktop_.windows().cardinals(window, "_NET_WM_PID").at(0));
    int running = 0;
    for (const auto& start : starts) {
        if (start->pid() == winner) {
            ++running;
        } else {
            EXPECT_EQ(start->awaitExit(), success);
        }
        EXPECT_EQ(start->standardError(), "");
    }
    EXPECT_EQ(running, 1);
}

TEST_F(Instance, ThatHangsLetsASecondStartFailWithOneLine) {
    Program program(desktop_);
    program.awaitMainWindow();
    program.process().signal(SIGSTOP);
    LauncherMessages messages(desktop_);

    const std::unique_ptr<Process> second = startOnceMore(desktop_, {{"DESKTOP_STARTUP_ID", "panel_TIME1"}});

    EXPECT_EQ(second->awaitExit(), failure);
    EXPECT_THAT(second->standardError(), MatchesRegex("pallwick: [^\n]*already running[^\n]*\n"));
    EXPECT_THAT(messages.take(), ElementsAre(R"(remove: ID="panel_TIME1")"));
    program.process().signal(SIGCONT);
}

TEST_F(Instance, OfAnotherDisplayDoesNotCount) {
    PrivateDesktop other({});
    Program first(desktop_);
    first.awaitMainWindow();

    Program second(other);

    second.awaitMainWindow();
}

}  // namespace
}  // namespace pallwick::desktop
