#include <PallwickMac/Platform/X11/StackGuard.h>
#include <support/TestClient.h>

#include "RootWatcher.h"
#include "SurfaceTest.h"

namespace pallwick::x11 {
namespace {

using support::TestClient;
using support::WindowManager;

constexpr Rect someFrame{.x = 100, .y = 100, .width = 300, .height = 300};

/// Overlays among other windows.
class StackGuardTest : public SurfaceTest {
protected:
    void start(WindowManager windowManager = WindowManager::none) {
        startDesktop({.windowManager = windowManager});
        startPlatform();
    }

    [[nodiscard]] std::unique_ptr<OverlaySurface> showSurface() {
        auto surface = makeSurface(content_, someFrame);
        surface->show();
        settle();
        return surface;
    }

    /// A client as it looks where no window manager reparents it, or its frame.
    [[nodiscard]] xcb_window_t makeClient() {
        const xcb_window_t window = makeWindow({.x = 50, .y = 400, .width = 400, .height = 400}, true);
        setNormalState(window);
        return window;
    }

    /// An override-redirect window: a menu, a notification, a lock screen.
    [[nodiscard]] xcb_window_t makeMenu() { return makeWindow({.x = 50, .y = 400, .width = 400, .height = 400}, true); }

    /// What happens to windows during so many turns of the event loop, each with a round trip.
    [[nodiscard]] int configurationsDuring(RootWatcher& watcher, int turns) {
        static_cast<void>(watcher.configurations());
        int left = turns;
        await("the turns' end", [&left] { return --left <= 0; });
        return watcher.configurations();
    }

    void awaitStacking(const std::vector<xcb_window_t>& fromBottomToTop) {
        await("the stacking order", [&] { return areStacked(fromBottomToTop); });
    }

    /// Many more than the guard's pause is long.
    static constexpr int manyTurns = 3000;
};

TEST_F(StackGuardTest, PutsAPanelBackAboveAClientThatIsRaised) {
    start();
    const xcb_window_t client = makeClient();
    const auto panel = showSurface();
    ASSERT_TRUE(areStacked({client, windowOf(*panel)}));
    RootWatcher watcher(desktop().server().display());

    raise(client);
    ASSERT_EQ(watcher.configurations(client), 1);

    awaitStacking({client, windowOf(*panel)});
}

TEST_F(StackGuardTest, PutsAPanelBackWhileTheProgramIsBusy) {
    start();
    const xcb_window_t client = makeClient();
    const auto panel = showSurface();

    raise(client);

    // The program's event loop does not run meanwhile.
    x().await("the stacking order", [&] { return areStacked({client, windowOf(*panel)}); });
}

TEST_F(StackGuardTest, PutsAPanelAboveAClientThatComesLater) {
    start();
    const auto panel = showSurface();

    const xcb_window_t client = makeClient();
    raise(client);

    awaitStacking({client, windowOf(*panel)});
}

TEST_F(StackGuardTest, ShowsAPanelAboveAClientThatCameAfterItsWindow) {
    start();
    const auto panel = makeSurface(content_, someFrame);
    const xcb_window_t client = makeClient();
    ASSERT_TRUE(areStacked({windowOf(*panel), client}));

    panel->show();
    static_cast<void>(platform().pointerLocation());

    // At once, before the event loop goes on.
    EXPECT_TRUE(areStacked({client, windowOf(*panel)}));
}

TEST_F(StackGuardTest, KnowsAClientByAWindowWithinItsFrame) {
    start();
    const auto panel = showSurface();
    const xcb_window_t frame = makeMenu();
    const xcb_window_t inner = xcb_generate_id(x().get());
    const xcb_window_t client = xcb_generate_id(x().get());
    xcb_create_window(x().get(), XCB_COPY_FROM_PARENT, inner, frame, 0, 0, 300, 300, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_create_window(x().get(), XCB_COPY_FROM_PARENT, client, inner, 0, 0, 300, 300, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    setNormalState(client);

    raise(frame);

    awaitStacking({frame, windowOf(*panel)});
}

TEST_F(StackGuardTest, KnowsAFrameByTheWindowManagerThatMadeItAroundAnothersWindow) {
    start();
    const auto panel = showSurface();
    const TestClient client(desktop(), {.overrideRedirect = true});
    const xcb_window_t check = makeWindow({.x = -10, .y = -10, .width = 1, .height = 1}, true);
    setCardinals(x().root(), "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {check});
    const xcb_window_t frame = makeMenu();
    settle();
    ASSERT_TRUE(areStacked({windowOf(*panel), frame}));

    xcb_reparent_window(x().get(), client.window(), frame, 0, 0);
    raise(frame);

    awaitStacking({frame, windowOf(*panel)});
}

TEST_F(StackGuardTest, LeavesAMenuOfTheWindowManagerAboveThePanel) {
    start();
    const auto panel = showSurface();
    const xcb_window_t check = makeWindow({.x = -10, .y = -10, .width = 1, .height = 1}, true);
    setCardinals(x().root(), "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {check});
    const xcb_window_t menu = makeMenu();
    xcb_create_window(x().get(), XCB_COPY_FROM_PARENT, xcb_generate_id(x().get()), menu, 0, 0, 300, 300, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    RootWatcher watcher(desktop().server().display());

    raise(menu);

    EXPECT_EQ(configurationsDuring(watcher, manyTurns), 0);
    EXPECT_TRUE(areStacked({windowOf(*panel), menu}));
}

TEST_F(StackGuardTest, CoversWindowsWhereNoWindowManagerRuns) {
    start();
    const auto panel = showSurface();

    const TestClient client(desktop(), {});

    awaitStacking({client.window(), windowOf(*panel)});
}

TEST_F(StackGuardTest, LeavesAMenuAboveThePanelAndRestacksNothing) {
    start();
    const xcb_window_t client = makeClient();
    const auto panel = showSurface();
    settle();
    RootWatcher watcher(desktop().server().display());

    const xcb_window_t menu = makeMenu();
    const int configurations = configurationsDuring(watcher, manyTurns);

    EXPECT_EQ(configurations, 0);
    EXPECT_TRUE(areStacked({client, windowOf(*panel), menu}));
}

TEST_F(StackGuardTest, LeavesMenusAboveThePanelWhenAClientIsRaisedBetweenThem) {
    start();
    const xcb_window_t client = makeClient();
    const auto panel = showSurface();
    const xcb_window_t menu = makeMenu();

    RootWatcher watcher(desktop().server().display());

    const std::array<std::uint32_t, 2> aboveThePanel{windowOf(*panel), XCB_STACK_MODE_ABOVE};
    xcb_configure_window(x().get(), client, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                         aboveThePanel.data());
    x().roundTrip();
    ASSERT_EQ(watcher.configurations(client), 1);

    awaitStacking({client, windowOf(*panel), menu});
}

TEST_F(StackGuardTest, RestacksNothingForAHiddenClient) {
    start();
    const xcb_window_t client = makeClient();
    const auto panel = showSurface();
    xcb_unmap_window(x().get(), client);
    x().roundTrip();
    settle();
    RootWatcher watcher(desktop().server().display());

    raise(client);
    static_cast<void>(watcher.configurations());

    EXPECT_EQ(configurationsDuring(watcher, manyTurns), 0);
}

TEST_F(StackGuardTest, KeepsThePanelsInTheirOrderAboveARaisedClient) {
    start();
    const xcb_window_t client = makeClient();
    const auto first = showSurface();
    const auto second = showSurface();
    const auto third = showSurface();
    ASSERT_TRUE(areStacked({client, windowOf(*first), windowOf(*second), windowOf(*third)}));

    raise(client);

    awaitStacking({client, windowOf(*first), windowOf(*second), windowOf(*third)});
}

TEST_F(StackGuardTest, BringsThePanelToTheFrontThatIsShownAgain) {
    start();
    const xcb_window_t client = makeClient();
    const auto first = showSurface();
    const auto second = showSurface();
    const auto third = showSurface();

    first->show();
    settle();

    EXPECT_TRUE(areStacked({client, windowOf(*second), windowOf(*third), windowOf(*first)}));
}

TEST_F(StackGuardTest, PutsAPanelThatWasHiddenInFrontOfTheOthers) {
    start();
    const xcb_window_t client = makeClient();
    const auto first = showSurface();
    const auto second = showSurface();

    first->hide();
    first->show();
    settle();

    EXPECT_TRUE(areStacked({client, windowOf(*second), windowOf(*first)}));
}

TEST_F(StackGuardTest, KeepsTheOtherPanelsWhenOneIsDestroyed) {
    start();
    const xcb_window_t client = makeClient();
    const auto first = showSurface();
    auto second = showSurface();
    const auto third = showSurface();

    second.reset();
    raise(client);

    awaitStacking({client, windowOf(*first), windowOf(*third)});
}

TEST_F(StackGuardTest, RestacksNothingForAHiddenPanel) {
    start();
    const xcb_window_t client = makeClient();
    const auto panel = showSurface();
    panel->hide();
    settle();
    RootWatcher watcher(desktop().server().display());

    raise(client);
    static_cast<void>(watcher.configurations());

    EXPECT_EQ(configurationsDuring(watcher, manyTurns), 0);
}

TEST_F(StackGuardTest, ComesToRestBesideAnotherProgramOfItsKind) {
    start();
    const xcb_window_t client = makeClient();
    const auto ours = showSurface();
    X11Platform otherPlatform;
    RecordingContent otherContent;
    const auto theirs = otherPlatform.makeOverlaySurface(otherContent);
    theirs->setFrame(someFrame);
    theirs->show();
    settle();
    RootWatcher watcher(desktop().server().display());

    raise(client);
    await("both panels above the client", [&] {
        return areStacked({client, windowOf(*ours)}) && areStacked({client, windowOf(*theirs)});
    });
    static_cast<void>(configurationsDuring(watcher, manyTurns));

    EXPECT_EQ(configurationsDuring(watcher, manyTurns), 0);
    EXPECT_TRUE(areStacked({client, windowOf(*ours)}));
    EXPECT_TRUE(areStacked({client, windowOf(*theirs)}));
}

TEST_F(StackGuardTest, StaysOnTopWhileWindowsComeAndGoBeneath) {
    start();
    auto restless = desktop().start({PALLWICK_RESTLESS_CLIENT});
    restless->readLine();
    const auto panel = makeSurface(content_, someFrame);

    // Shown and hidden over windows that vanish at any moment, the panel always comes to its place.
    int rounds = 200;
    await("the end of the rounds", [&] {
        panel->show();
        static_cast<void>(platform().pointerLocation());
        if (!isOnRoot(*panel)) {
            throw std::runtime_error("the panel did not come");
        }
        panel->hide();
        return --rounds <= 0;
    });
    panel->show();
    restless->kill();
    const xcb_window_t client = makeClient();

    awaitStacking({client, windowOf(*panel)});
}

class StackGuardUnderAWindowManager : public StackGuardTest, public ::testing::WithParamInterface<WindowManager> {};

INSTANTIATE_TEST_SUITE_P(WindowManagers, StackGuardUnderAWindowManager,
                         ::testing::Values(WindowManager::openbox, WindowManager::xfwm4),
                         [](const auto& instance) { return support::describe(instance.param); });

TEST_P(StackGuardUnderAWindowManager, StaysAboveAClientThatIsActivated) {
    start(GetParam());
    const TestClient first(desktop(), {.title = "first"});
    const TestClient second(desktop(), {.title = "second"});
    const auto panel = showSurface();

    desktop().windows().activate(first.window());

    await("the activated client below the panel", [&] {
        return areStacked({second.window(), first.window()}) && areStacked({first.window(), windowOf(*panel)});
    });
}

TEST_P(StackGuardUnderAWindowManager, StaysAboveAFullScreenWindowThatComesLater) {
    start(GetParam());
    const auto panel = showSurface();

    TestClient client(desktop(), {.fullScreen = true});

    await("the full-screen window below the panel", [&] {
        return client.rect() == x().rootRect() && areStacked({client.window(), windowOf(*panel)});
    });
}

TEST_P(StackGuardUnderAWindowManager, StaysAboveAWindowThatIsKeptAbove) {
    start(GetParam());
    const TestClient client(desktop(), {});
    const auto panel = showSurface();

    desktop().windows().setKeptAbove(client.window(), true);
    desktop().windows().activate(client.window());

    awaitStacking({client.window(), windowOf(*panel)});
}

TEST_P(StackGuardUnderAWindowManager, ComesToRestOnceThePanelIsBack) {
    start(GetParam());
    const TestClient first(desktop(), {.title = "first"});
    const TestClient second(desktop(), {.title = "second"});
    const auto panel = showSurface();
    desktop().windows().activate(first.window());
    await("the activated client below the panel", [&] {
        return areStacked({second.window(), first.window()}) && areStacked({first.window(), windowOf(*panel)});
    });
    RootWatcher watcher(desktop().server().display());
    static_cast<void>(configurationsDuring(watcher, manyTurns));

    EXPECT_EQ(configurationsDuring(watcher, manyTurns), 0);
}

TEST_P(StackGuardUnderAWindowManager, StaysOnTopThroughAWindowManagersCrashAndRestart) {
    start(GetParam());
    const TestClient first(desktop(), {.title = "first"});
    const TestClient second(desktop(), {.title = "second"});
    const auto panel = showSurface();

    desktop().stopWindowManager(true);
    await("the panel above without a window manager", [&] {
        return areStacked({first.window(), windowOf(*panel)}) && areStacked({second.window(), windowOf(*panel)});
    });
    desktop().startWindowManager(GetParam());
    desktop().windows().activate(first.window());

    await("the activated client below the panel", [&] {
        return areStacked({second.window(), first.window()}) && areStacked({first.window(), windowOf(*panel)});
    });
    EXPECT_TRUE(isOnRoot(*panel));
}

}  // namespace
}  // namespace pallwick::x11
