#include <gmock/gmock.h>
#include <support/TestClient.h>

#include <algorithm>

namespace pallwick::support {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr Colour red{.red = 255, .green = 0, .blue = 0};
constexpr Colour blue{.red = 0, .green = 0, .blue = 255};
constexpr Colour white{.red = 255, .green = 255, .blue = 255};

/// Every window manager that is installed; the others' tests are skipped by not being there.
std::vector<WindowManager> installed(std::vector<WindowManager> windowManagers) {
    std::erase_if(windowManagers, [](WindowManager windowManager) { return !isInstalled(windowManager); });
    return windowManagers;
}

std::vector<WindowManager> installedOnesThatManage() {
    std::vector<WindowManager> windowManagers = installed(allWindowManagers());
    std::erase(windowManagers, WindowManager::none);
    return windowManagers;
}

class EveryWindowManager : public testing::TestWithParam<WindowManager> {};

INSTANTIATE_TEST_SUITE_P(Installed, EveryWindowManager, testing::ValuesIn(installed(allWindowManagers())),
                         [](const auto& instance) { return describe(instance.param); });

class EveryRealWindowManager : public testing::TestWithParam<WindowManager> {};

INSTANTIATE_TEST_SUITE_P(Installed, EveryRealWindowManager, testing::ValuesIn(installedOnesThatManage()),
                         [](const auto& instance) { return describe(instance.param); });

TEST_P(EveryWindowManager, LetsAClickThroughToTheWindowUnderIt) {
    PrivateDesktop desktop({.windowManager = GetParam()});
    TestClient client(desktop, {});
    const PixelRect rect = client.rect();

    desktop.pointer().click({.x = rect.x + 30, .y = rect.y + 40});

    EXPECT_EQ(client.count("press 1 30 40"), 1);
    EXPECT_EQ(client.count("release 1 30 40"), 1);
}

TEST_P(EveryWindowManager, ShowsTheWindowsColours) {
    PrivateDesktop desktop({.windowManager = GetParam()});
    TestClient client(desktop, {.ground = white, .mark = red});
    const PixelRect rect = client.rect();

    const Screenshot screen = desktop.awaitPixels(
        "a stripe", [&](const Screenshot& seen) { return seen.at({.x = rect.x + 1, .y = rect.y + 50}) == red; });

    EXPECT_EQ(screen.at({.x = rect.x + 8, .y = rect.y + 50}), white);
}

TEST_P(EveryRealWindowManager, MakesAWindowFullScreen) {
    PrivateDesktop desktop({.windowManager = GetParam()});
    TestClient client(desktop, {});

    client.setFullScreen(true);

    EXPECT_EQ(client.rect(), desktop.x().rootRect());
}

TEST(Windows, AreFoundByTitleWithTheirFrame) {
    PrivateDesktop desktop({});
    TestClient client(desktop, {.title = "Found", .windowClass = "found-class", .rect = {200, 150, 300, 200}});
    Windows& windows = desktop.windows();

    const xcb_window_t found = windows.awaitClient("Found");

    EXPECT_EQ(found, client.window());
    EXPECT_EQ(windows.rect(found), (PixelRect{200, 150, 300, 200}));
    EXPECT_GT(windows.frame(found)->height, 200);
    EXPECT_EQ(windows.windowClass(found), (std::vector<std::string>{"found-class", "found-class"}));
}

TEST(Windows, AreAskedToMoveCloseHideAndComeForward) {
    PrivateDesktop desktop({});
    TestClient lower(desktop, {.title = "Lower"});
    TestClient upper(desktop, {.title = "Upper"});
    Windows& windows = desktop.windows();

    windows.activate(lower.window());
    desktop.x().await("the lower one on top", [&] { return windows.isAbove(lower.window(), upper.window()); });
    windows.minimise(upper.window());
    windows.close(lower.window());

    EXPECT_EQ(lower.process().awaitExit(), ExitStatus{});
    EXPECT_EQ(windows.wmState(upper.window()), 3U);
}

TEST(Windows, SwitchWorkspaces) {
    PrivateDesktop desktop({});
    TestClient client(desktop, {});
    desktop.windows().setWorkspaceCount(2);

    desktop.windows().switchToWorkspace(1);
    desktop.x().await("the window gone", [&] { return !desktop.windows().isViewable(client.window()); });

    EXPECT_EQ(desktop.windows().workspace(), 1U);
}

TEST(Keyboard, TypesIntoTheFocusedWindow) {
    PrivateDesktop desktop({});
    TestClient client(desktop, {});
    desktop.windows().activate(client.window());
    client.awaitEvent("focus in");
    client.forgetEvents();

    desktop.keyboard().type("aB");

    // a, Shift, B.
    EXPECT_EQ(client.count("key "), 3);
}

TEST(TestClient, ReportsNoClickThatWentElsewhere) {
    PrivateDesktop desktop({});
    TestClient lower(desktop, {.title = "Lower"});
    TestClient upper(desktop, {.title = "Upper", .overrideRedirect = true});

    desktop.pointer().click(lower.rect().centre());

    EXPECT_EQ(lower.count("press"), 0);
    EXPECT_EQ(upper.count("press"), 1);
}

TEST(TestClient, ReportsEachStepOfADrag) {
    PrivateDesktop desktop({.windowManager = WindowManager::none});
    TestClient client(desktop, {.rect = {100, 100, 300, 200}});

    desktop.pointer().drag({.x = 110, .y = 110}, {.x = 190, .y = 150}, 4);

    EXPECT_EQ(client.count("drag"), 4);
    EXPECT_EQ(client.count("release 1 90 50"), 1);
}

TEST(PrivateDesktop, NoticesThatAWindowManagerCrashedAndAnotherCame) {
    PrivateDesktop desktop({.windowManager = WindowManager::openbox});
    TestClient client(desktop, {});

    desktop.stopWindowManager(true);
    desktop.startWindowManager(WindowManager::xfwm4);

    EXPECT_EQ(desktop.windows().windowManagerName(), "Xfwm4");
    EXPECT_EQ(desktop.windows().client("Test client"), client.window());
}

TEST(PrivateDesktop, StartsAndLosesACompositor) {
    PrivateDesktop desktop({.windowManager = WindowManager::openbox});

    desktop.startCompositor();
    const bool before = desktop.isComposited();
    desktop.stopCompositor(true);
    const bool after = desktop.isComposited();
    desktop.startCompositor(PrivateDesktop::Fading::on);

    EXPECT_TRUE(before);
    EXPECT_FALSE(after);
    EXPECT_TRUE(desktop.isComposited());
}

TEST(PrivateDesktop, ShowsWhatACompositorShows) {
    PrivateDesktop desktop({.windowManager = WindowManager::openbox});
    desktop.startCompositor();
    TestClient client(desktop, {.ground = white, .mark = red});
    const PixelArea area = PixelArea::rectangle(client.rect());

    client.setColours(white, blue);
    const Screenshot screen = desktop.awaitPixels(
        "blue", [&](const Screenshot& seen) { return seen.find(area, isNear(blue, 0)).has_value(); });

    EXPECT_FALSE(screen.find(area, isNear(red, 0)));
}

TEST(PrivateDesktop, HandsDownNoVariableOfTheSurroundingSession) {
    ::setenv("PALLWICK_TEST_LEAK", "leaked", 1);
    PrivateDesktop desktop({.windowManager = WindowManager::none, .environment = {{"OWN", "value"}}});

    const auto process = desktop.start({"sh", "-c", "echo \"$PALLWICK_TEST_LEAK/$OWN/$LANG\""});

    EXPECT_EQ(process->readLine(), "/value/C.UTF-8");
}

TEST(PrivateDesktop, AddsMonitorsAndTakesThemAway) {
    PrivateDesktop desktop({.windowManager = WindowManager::none, .server = {.width = 2560, .height = 1600}});
    const auto monitors = [&] {
        const auto process = desktop.start({"sh", "-c", "xrandr --listmonitors; echo end"});
        std::string all;
        for (std::string line; (line = process->readLine()) != "end";) {
            all += line + "\n";
        }
        return all;
    };

    desktop.addMonitor("P", {.x = 640, .y = 800, .width = 1280, .height = 800}, true);
    desktop.addMonitor("U", {.x = 640, .y = 0, .width = 1280, .height = 800});
    const std::string both = monitors();
    desktop.removeMonitor("U");
    const std::string one = monitors();

    EXPECT_THAT(both, AllOf(HasSubstr("*P 1280/"), HasSubstr("U 1280/"), HasSubstr("+640+800")));
    EXPECT_THAT(one, Not(HasSubstr("U 1280/")));
}

TEST(PrivateXServer, CrashesWhenKilled) {
    PrivateDesktop desktop({.windowManager = WindowManager::none});
    TestClient client(desktop, {});

    desktop.server().kill();

    EXPECT_EQ(client.process().awaitExit(), ExitStatus{});
    EXPECT_THROW(desktop.x().await("the impossible", [] { return false; }), Timeout);
}

TEST(XConnection, SaysWhatItAwaitedInVain) {
    PrivateDesktop desktop({.windowManager = WindowManager::none});

    std::string message;
    try {
        desktop.x().await(
            "a miracle", [] { return false; }, [] { return "nothing"; }, std::chrono::milliseconds(1));
    } catch (const Timeout& timeout) {
        message = timeout.what();
    }

    EXPECT_EQ(message, "awaited in vain: a miracle; seen: nothing");
}

TEST(XConnection, GivesUpWhenAGuardedProcessEnds) {
    PrivateDesktop desktop({.windowManager = WindowManager::none});
    const auto process = desktop.start({"sh", "-c", "echo why >&2; exit 3"});
    desktop.x().guard(*process);

    std::string message;
    try {
        desktop.x().await("a miracle", [] { return false; });
    } catch (const Timeout& timeout) {
        message = timeout.what();
    }

    EXPECT_THAT(message, AllOf(HasSubstr("exit code 3"), HasSubstr("why")));
}

TEST(PixelArea, HasRoundedCornersAndEllipses) {
    const PixelRect bounds{.x = 10, .y = 10, .width = 100, .height = 60};

    EXPECT_TRUE(PixelArea::rectangle(bounds).contains({10, 10}));
    EXPECT_FALSE(PixelArea::roundedRectangle(bounds, 12).contains({10, 10}));
    EXPECT_TRUE(PixelArea::roundedRectangle(bounds, 12).contains({10, 40}));
    EXPECT_TRUE(PixelArea::roundedRectangle(bounds, 12).contains({22, 10}));
    EXPECT_FALSE(PixelArea::ellipse(bounds).contains({22, 12}));
    EXPECT_TRUE(PixelArea::ellipse(bounds).contains({60, 10}));
    EXPECT_FALSE(PixelArea::rectangle(bounds).contains({110, 20}));
}

TEST(Screenshot, IsWrittenAsAPicture) {
    PrivateDesktop desktop({.windowManager = WindowManager::none});
    const TemporaryDirectory directory;

    desktop.screenshot().savePng(directory.path() / "screen.png");

    EXPECT_GT(std::filesystem::file_size(directory.path() / "screen.png"), 100U);
}

}  // namespace
}  // namespace pallwick::support
