#include <PallwickMac/Platform/X11/WindowList.h>
#include <gmock/gmock.h>
#include <support/TestClient.h>
#include <support/XProxy.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "PlatformTest.h"

namespace pallwick::x11 {
namespace {

using support::TestClient;
using support::WindowManager;
using support::XProxy;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::SizeIs;
using namespace std::string_literals;

/// The size of the screen that a test has unless it says otherwise.
constexpr int screenWidth = 1280;

class WindowListTest : public PlatformTest {
protected:
    [[nodiscard]] std::unique_ptr<TestClient> makeClient(const std::string& title) { return makeClient(title, title); }
    [[nodiscard]] std::unique_ptr<TestClient> makeClient(const std::string& title, const std::string& windowClass) {
        return std::make_unique<TestClient>(desktop(), TestClient::Options{.title = title, .windowClass = windowClass});
    }

    [[nodiscard]] std::vector<WindowRecord> records() { return platform().onScreenWindows().value(); }
    [[nodiscard]] std::vector<std::uint32_t> numbers() {
        std::vector<std::uint32_t> list;
        for (const WindowRecord& record : records()) {
            list.push_back(record.number.value());
        }
        return list;
    }
    /// The window's record, which the whole list and the question for the window alone must give alike.
    [[nodiscard]] std::optional<WindowRecord> recordOf(xcb_window_t window) {
        const std::vector<WindowRecord> all = records();
        const auto found = std::ranges::find(all, std::optional<std::uint32_t>(window), &WindowRecord::number);
        const std::optional<WindowRecord> listed = found == all.end() ? std::nullopt : std::optional(*found);
        EXPECT_EQ(platform().onScreenWindow(window), listed);
        return listed;
    }
    [[nodiscard]] WindowRecord recordOf(TestClient& client) { return recordOf(client.window()).value(); }

    void setAtoms(xcb_window_t window, const std::string& property, const std::vector<std::string>& names) {
        std::vector<std::uint32_t> atoms;
        for (const std::string& name : names) {
            atoms.push_back(x().atom(name));
        }
        setCardinals(window, property, XCB_ATOM_ATOM, atoms);
    }

    void addDesktopFile(const std::string& id, const std::string& lines) {
        const std::filesystem::path folder = desktop().dataHome() / "applications";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / (id + ".desktop")) << "[Desktop Entry]\nType=Application\n" << lines;
    }
};

TEST_F(WindowListTest, IsEmptyOnAnEmptyDesktop) {
    startDesktop({.windowManager = WindowManager::openbox});
    startPlatform();

    EXPECT_THAT(records(), IsEmpty());
    EXPECT_EQ(platform().onScreenWindow(x().root()), std::nullopt);
    EXPECT_EQ(platform().onScreenWindow(0), std::nullopt);
}

TEST_F(WindowListTest, TellsAllThatIsKnownOfAWindow) {
    startDesktop({.windowManager = WindowManager::openbox});
    addDesktopFile("org.example.Paint", "Name=Paint Shop\nStartupWMClass=paint\n");
    const auto client = makeClient("Sketch", "paint");
    startPlatform();
    const support::PixelRect frame = desktop().windows().frame(client->window()).value();
    ASSERT_NE(frame, client->rect()) << "openbox decorates it";

    EXPECT_EQ(recordOf(*client), (WindowRecord{.layer = 0,
                                               .number = client->window(),
                                               .ownerProcessID = client->process().pid(),
                                               .ownerName = "Paint Shop",
                                               .title = "Sketch",
                                               .bounds = Rect{.x = static_cast<double>(frame.x),
                                                              .y = static_cast<double>(frame.y),
                                                              .width = static_cast<double>(frame.width),
                                                              .height = static_cast<double>(frame.height)}}));
}

TEST_F(WindowListTest, GoesFromFrontToBack) {
    startDesktop({.windowManager = WindowManager::openbox});
    const auto first = makeClient("first");
    const auto second = makeClient("second");
    startPlatform();

    desktop().windows().activate(first->window());
    EXPECT_THAT(numbers(), ElementsAre(first->window(), second->window()));

    desktop().windows().activate(second->window());
    EXPECT_THAT(numbers(), ElementsAre(second->window(), first->window()));
}

class EveryWindowManagersList : public WindowListTest, public ::testing::WithParamInterface<WindowManager> {};

INSTANTIATE_TEST_SUITE_P(WindowManagers, EveryWindowManagersList, ::testing::ValuesIn(support::allWindowManagers()),
                         [](const auto& instance) { return support::describe(instance.param); });

TEST_P(EveryWindowManagersList, HasAWindowWhereItIsSeen) {
    if (!support::isInstalled(GetParam())) {
        GTEST_SKIP() << "not installed";
    }
    startDesktop({.windowManager = GetParam()});
    const auto client = makeClient("paint");
    startPlatform();
    const support::PixelRect inner = client->rect();

    const WindowRecord record = recordOf(*client);

    EXPECT_EQ(record.layer, 0);
    EXPECT_EQ(record.title, "paint");
    EXPECT_EQ(record.ownerProcessID, client->process().pid());
    // Its decoration belongs to it, and no decoration is larger than this.
    constexpr int thickestBorder = 60;
    const Rect bounds = record.bounds.value();
    EXPECT_LE(bounds.minX(), inner.x);
    EXPECT_LE(bounds.minY(), inner.y);
    EXPECT_GE(bounds.maxX(), inner.x + inner.width);
    EXPECT_GE(bounds.maxY(), inner.y + inner.height);
    EXPECT_LE(bounds.width, inner.width + thickestBorder);
    EXPECT_LE(bounds.height, inner.height + thickestBorder);
}

TEST_P(EveryWindowManagersList, LosesAWindowThatIsClosed) {
    if (!support::isInstalled(GetParam())) {
        GTEST_SKIP() << "not installed";
    }
    startDesktop({.windowManager = GetParam()});
    const auto client = makeClient("paint");
    const xcb_window_t window = client->window();
    startPlatform();
    ASSERT_TRUE(recordOf(window));

    client->process().kill();

    EXPECT_EQ(recordOf(window), std::nullopt);
}

class EveryMinimisingList : public WindowListTest, public ::testing::WithParamInterface<WindowManager> {};

INSTANTIATE_TEST_SUITE_P(WindowManagers, EveryMinimisingList,
                         ::testing::Values(WindowManager::openbox, WindowManager::xfwm4,
                                           WindowManager::xfwm4Compositing, WindowManager::metacity,
                                           WindowManager::mutter, WindowManager::kwin, WindowManager::kwinCompositing),
                         [](const auto& instance) { return support::describe(instance.param); });

TEST_P(EveryMinimisingList, LeavesOutWhatIsMinimised) {
    if (!support::isInstalled(GetParam())) {
        GTEST_SKIP() << "not installed";
    }
    startDesktop({.windowManager = GetParam()});
    const auto client = makeClient("paint");
    startPlatform();
    ASSERT_TRUE(recordOf(client->window()));

    desktop().windows().minimise(client->window());
    EXPECT_EQ(recordOf(client->window()), std::nullopt);

    desktop().windows().activate(client->window());
    EXPECT_TRUE(recordOf(client->window()));
}

TEST_P(EveryMinimisingList, LeavesOutWhatIsOnAnotherWorkspace) {
    if (!support::isInstalled(GetParam())) {
        GTEST_SKIP() << "not installed";
    }
    startDesktop({.windowManager = GetParam()});
    desktop().windows().setWorkspaceCount(2);
    const auto client = makeClient("paint");
    startPlatform();
    ASSERT_TRUE(recordOf(client->window()));

    desktop().windows().switchToWorkspace(1);
    EXPECT_EQ(recordOf(client->window()), std::nullopt);

    // A window manager may say where it goes before it shows what is there.
    desktop().windows().switchToWorkspace(0);
    desktop().x().await("the client's workspace", [&] { return desktop().windows().isViewable(client->window()); });
    EXPECT_TRUE(recordOf(client->window()));
}

TEST_F(WindowListTest, GivesKeptWindowsLayersOfTheirOwn) {
    startDesktop({.windowManager = WindowManager::openbox});
    const auto client = makeClient("paint");
    startPlatform();

    desktop().windows().setKeptAbove(client->window(), true);
    EXPECT_GT(recordOf(*client).layer, 0);

    desktop().windows().setKeptAbove(client->window(), false);
    EXPECT_EQ(recordOf(*client).layer, 0);
}

struct KindOfWindow {
    std::vector<std::string> types;
    std::vector<std::string> states;
    int side;
};

void PrintTo(const KindOfWindow& kind, std::ostream* stream) {
    *stream << ::testing::PrintToString(kind.types) << ::testing::PrintToString(kind.states);
}

class EveryKindOfWindow : public WindowListTest, public ::testing::WithParamInterface<KindOfWindow> {};

INSTANTIATE_TEST_SUITE_P(
    Kinds, EveryKindOfWindow,
    ::testing::Values(KindOfWindow{{}, {}, 0}, KindOfWindow{{"_NET_WM_WINDOW_TYPE_NORMAL"}, {}, 0},
                      KindOfWindow{{"_NET_WM_WINDOW_TYPE_DIALOG"}, {}, 0},
                      KindOfWindow{{"_NET_WM_WINDOW_TYPE_UTILITY"}, {}, 0},
                      KindOfWindow{{"_NET_WM_WINDOW_TYPE_DESKTOP"}, {}, -1},
                      KindOfWindow{{"_NET_WM_WINDOW_TYPE_DOCK"}, {}, 1},
                      KindOfWindow{{"_NET_WM_WINDOW_TYPE_NOTIFICATION"}, {}, 1},
                      KindOfWindow{{"_NET_WM_WINDOW_TYPE_POPUP_MENU"}, {}, 1},
                      KindOfWindow{{"_KDE_NET_WM_WINDOW_TYPE_OVERRIDE", "_NET_WM_WINDOW_TYPE_DOCK"}, {}, 1},
                      KindOfWindow{{"_KDE_NET_WM_WINDOW_TYPE_OVERRIDE"}, {}, 0},
                      KindOfWindow{{}, {"_NET_WM_STATE_ABOVE"}, 1}, KindOfWindow{{}, {"_NET_WM_STATE_BELOW"}, -1},
                      KindOfWindow{{}, {"_NET_WM_STATE_FULLSCREEN", "_NET_WM_STATE_MODAL"}, 0},
                      KindOfWindow{{"_NET_WM_WINDOW_TYPE_DESKTOP"}, {"_NET_WM_STATE_ABOVE"}, -1}));

TEST_P(EveryKindOfWindow, HasALayerOnItsSideOfOrdinaryWindows) {
    startDesktop();
    startPlatform();
    const xcb_window_t window = makeWindow({.x = 10, .y = 20, .width = 300, .height = 200});
    setAtoms(window, "_NET_WM_WINDOW_TYPE", GetParam().types);
    setAtoms(window, "_NET_WM_STATE", GetParam().states);

    const std::int32_t layer = recordOf(window)->layer.value();

    EXPECT_EQ((layer > 0) - (layer < 0), GetParam().side);
}

TEST_F(WindowListTest, HasTheRootsChildrenWithoutAWindowManager) {
    startDesktop();
    startPlatform();
    const xcb_window_t lower = makeWindow({.x = 10, .y = 20, .width = 300, .height = 200});
    const xcb_window_t upper = makeWindow({.x = 40, .y = 50, .width = 300, .height = 200});
    const xcb_window_t menu = makeWindow({.x = 40, .y = 50, .width = 300, .height = 200}, true);

    EXPECT_THAT(numbers(), ElementsAre(upper, lower));
    EXPECT_EQ(recordOf(menu), std::nullopt);
    EXPECT_EQ(recordOf(lower)->bounds, (Rect{.x = 10, .y = 20, .width = 300, .height = 200}));
    EXPECT_EQ(recordOf(lower)->ownerProcessID, ::getpid());
}

TEST_F(WindowListTest, DoesNotTrustTheListOfAWindowManagerThatIsGone) {
    startDesktop({.windowManager = WindowManager::openbox});
    const auto client = makeClient("paint");
    startPlatform();
    desktop().stopWindowManager(true);

    const auto later = makeClient("later");

    EXPECT_THAT(numbers(), IsSupersetOf({client->window(), later->window()}));
    EXPECT_TRUE(recordOf(later->window()));
}

TEST_F(WindowListTest, LeavesOutInvisibleShadows) {
    startDesktop();
    startPlatform();
    const xcb_window_t window = makeWindow({.x = 100, .y = 200, .width = 300, .height = 200});
    setCardinals(window, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {10, 20, 30, 40});

    EXPECT_EQ(recordOf(window)->bounds, (Rect{.x = 110, .y = 230, .width = 270, .height = 130}));
}

TEST_F(WindowListTest, SurvivesNonsenseAboutBorders) {
    startDesktop();
    startPlatform();
    const xcb_window_t window = makeWindow({.x = 100, .y = 200, .width = 300, .height = 200});
    const std::uint32_t huge = 0xFFFFFFFF;

    setCardinals(window, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {huge, huge, huge, huge});
    EXPECT_EQ(recordOf(window)->bounds->width, 0);

    setCardinals(window, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {10, 20});
    setCardinals(window, "_NET_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {huge, huge, huge, huge});
    EXPECT_GE(recordOf(window)->bounds->width, 300);

    setBytes(window, "_NET_FRAME_EXTENTS", "CARDINAL", "text");
    EXPECT_EQ(recordOf(window)->bounds, (Rect{.x = 100, .y = 200, .width = 300, .height = 200}));
}

TEST_F(WindowListTest, MeasuresFromTheTopOfAllScreensInPoints) {
    startTwoScreens();
    startPlatform(2);
    const xcb_window_t window = makeWindow({.x = 740, .y = 900, .width = 300, .height = 200});

    // The primary display begins at x = 640, the union of both at y = 0; two pixels are a point.
    EXPECT_EQ(recordOf(window)->bounds, (Rect{.x = 50, .y = 450, .width = 150, .height = 100}));
}

TEST_F(WindowListTest, NamesTheProcessThatTheServerKnowsWhateverTheWindowClaims) {
    startDesktop({.windowManager = WindowManager::openbox});
    const auto client = makeClient("liar");
    startPlatform();

    setCardinals(client->window(), "_NET_WM_PID", XCB_ATOM_CARDINAL, {1});

    EXPECT_EQ(recordOf(*client).ownerProcessID, client->process().pid());
}

TEST_F(WindowListTest, NamesTheProcessThatTheWindowClaimsWhereTheServerCannotTell) {
    startDesktop({.windowManager = WindowManager::none, .server = {.arguments = {"-extension", "X-Resource"}}});
    startPlatform();
    const xcb_window_t window = makeWindow({.x = 100, .y = 200, .width = 300, .height = 200});

    setCardinals(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {4711});
    EXPECT_EQ(recordOf(window)->ownerProcessID, 4711);

    setCardinals(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {0x80000000U});
    EXPECT_EQ(recordOf(window)->ownerProcessID, std::nullopt);
    EXPECT_EQ(recordOf(window)->ownerName, std::nullopt);
}

TEST_F(WindowListTest, NamesAnOwnerByItsDesktopFileThenByItsClassThenByItsProcess) {
    startDesktop();
    addDesktopFile("org.example.Paint", "Name=Paint Shop\n");
    const auto client = makeClient("painter");
    startPlatform();
    EXPECT_EQ(recordOf(*client).ownerName, "painter");

    setBytes(client->window(), "_GTK_APPLICATION_ID", "UTF8_STRING", "org.example.Paint");
    EXPECT_EQ(recordOf(*client).ownerName, "Paint Shop");

    setBytes(client->window(), "_GTK_APPLICATION_ID", "UTF8_STRING", "org.example.Missing");
    EXPECT_EQ(recordOf(*client).ownerName, "painter");

    xcb_delete_property(x().get(), client->window(), x().atom("_GTK_APPLICATION_ID"));
    xcb_delete_property(x().get(), client->window(), XCB_ATOM_WM_CLASS);
    x().roundTrip();
    EXPECT_EQ(recordOf(*client).ownerName, "pallwick-test-c") << "as much of a name as the system keeps";
}

struct HostileTitle {
    std::string what;
    std::string property;
    std::string type;
    std::string value;
    std::string title;
};

void PrintTo(const HostileTitle& title, std::ostream* stream) {
    *stream << title.what;
}

class EveryHostileTitle : public WindowListTest, public ::testing::WithParamInterface<HostileTitle> {};

INSTANTIATE_TEST_SUITE_P(
    Titles, EveryHostileTitle,
    ::testing::Values(
        HostileTitle{"a megabyte", "_NET_WM_NAME", "UTF8_STRING", std::string(1U << 20U, 'x'), std::string(4096, 'x')},
        HostileTitle{"bad UTF-8", "_NET_WM_NAME", "UTF8_STRING", "a\xFFz", "a\uFFFDz"},
        HostileTitle{"control characters", "_NET_WM_NAME", "UTF8_STRING", "one\ntwo\x1B[31m\0"s, "one two [31m "},
        HostileTitle{"an old title alone", "WM_NAME", "STRING", "M\xFCnchen", "M\u00FCnchen"},
        HostileTitle{"compound text", "WM_NAME", "COMPOUND_TEXT", "\x1B%G\u20AC\x1B%@ M\xFCnchen",
                     "\u20AC M\u00FCnchen"},
        HostileTitle{"an old title in UTF-8", "WM_NAME", "UTF8_STRING", "\u20AC", "\u20AC"},
        HostileTitle{"an empty one", "_NET_WM_NAME", "UTF8_STRING", "", ""}));

TEST_P(EveryHostileTitle, IsCleaned) {
    startDesktop();
    startPlatform();
    const xcb_window_t window = makeWindow({.x = 100, .y = 200, .width = 300, .height = 200});

    setBytes(window, GetParam().property, GetParam().type, GetParam().value);

    EXPECT_EQ(recordOf(window)->title, GetParam().title);
}

TEST_F(WindowListTest, IgnoresATitleOfNumbers) {
    startDesktop();
    startPlatform();
    const xcb_window_t window = makeWindow({.x = 100, .y = 200, .width = 300, .height = 200});

    setCardinals(window, "_NET_WM_NAME", x().atom("UTF8_STRING"), {1, 2, 3});
    setBytes(window, "WM_NAME", "STRING", "old");

    EXPECT_EQ(recordOf(window)->title, "old");
}

TEST_F(WindowListTest, CanBeAskedForWhileWindowsComeAndGo) {
    startDesktop();
    startPlatform();
    const auto restless = desktop().start({PALLWICK_RESTLESS_CLIENT});
    restless->readLine();

    std::size_t seen = 0;
    for (int i = 0; i < 2000; ++i) {
        for (const WindowRecord& record : records()) {
            EXPECT_TRUE(record.number && record.bounds);
            ++seen;
        }
    }
    settle();

    EXPECT_GT(seen, 0U);
    EXPECT_THAT(platform().screens(), SizeIs(1));
}

TEST_F(WindowListTest, HasANewWindowInFrontUntilTheWindowManagerSaysWhereItStands) {
    startDesktop({.windowManager = WindowManager::openbox});
    const auto old = makeClient("old");
    const auto young = makeClient("young");
    startPlatform();

    setCardinals(x().root(), "_NET_CLIENT_LIST_STACKING", XCB_ATOM_WINDOW, {old->window()});
    EXPECT_THAT(numbers(), ElementsAre(young->window(), old->window()));

    xcb_delete_property(x().get(), x().root(), x().atom("_NET_CLIENT_LIST_STACKING"));
    x().roundTrip();
    EXPECT_THAT(numbers(), ElementsAre(young->window(), old->window()));
}

TEST_F(WindowListTest, IgnoresAListThatNamesWhatIsNoWindow) {
    startDesktop({.windowManager = WindowManager::openbox});
    const auto client = makeClient("paint");
    startPlatform();
    // Openbox sets the list anew only when windows come and go.
    setCardinals(x().root(), "_NET_CLIENT_LIST_STACKING", XCB_ATOM_WINDOW,
                 {client->window(), 0, 0xFFFFFFFF, client->window() + 1000, x().atom("WM_STATE")});

    EXPECT_THAT(numbers(), ElementsAre(client->window()));
}

TEST_F(WindowListTest, FailsOnceTheServerIsGone) {
    startDesktop();
    startPlatform();

    desktop().server().kill();

    EXPECT_EQ(platform().onScreenWindows(), std::nullopt);
    EXPECT_EQ(platform().onScreenWindow(1), std::nullopt);
}

/// What a question costs on the way to the server, counted on a connection that nothing else uses.
class WindowListTraffic : public WindowListTest {
protected:
    /// With a title and known borders, as a window manager has them.
    void openWindows(int count) {
        openBareWindows(count, [this](xcb_window_t window) {
            setBytes(window, "_NET_WM_NAME", "UTF8_STRING", "window");
            setCardinals(window, "_NET_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {0, 0, 0, 0});
        });
    }

    /// About which more has to be asked.
    void openBareWindows(
        int count, const std::function<void(xcb_window_t)>& dress = [](xcb_window_t) {}) {
        for (int i = 0; i < count; ++i) {
            last_ = makeWindow({.x = i % (screenWidth / 2), .y = 20, .width = 300, .height = 200});
            dress(last_);
        }
    }

    template <typename Question>
    [[nodiscard]] unsigned requestsOf(const Question& question) {
        const unsigned before = xcb_no_operation(connection_->xcb()).sequence;
        question();
        return xcb_no_operation(connection_->xcb()).sequence - before - 1;
    }

    /// Of asking for the whole list, which has `count` windows.
    [[nodiscard]] XProxy::Traffic trafficOfList(std::size_t count) {
        static_cast<void>(proxy_->takeTraffic());
        EXPECT_EQ(list_->onScreen(WindowPlacement())->size(), count);
        return proxy_->takeTraffic();
    }

    void start() {
        startDesktop();
        startPlatform();
        proxy_.emplace(desktop().server().display());
        qputenv("DISPLAY", proxy_->display().c_str());
        connection_.emplace();
        applications_.emplace();
        list_.emplace(*connection_, *applications_);
    }

    xcb_window_t last_ = XCB_WINDOW_NONE;
    std::optional<XProxy> proxy_;
    std::optional<Connection> connection_;
    std::optional<ApplicationIndex> applications_;
    std::optional<WindowList> list_;
};

/// The library sends its buffer by itself when that is full; nobody waits for an answer then.
std::size_t fullBuffers(const XProxy::Traffic& traffic) {
    constexpr std::size_t bufferSize = 16384;
    return traffic.bytes / bufferSize;
}

TEST_F(WindowListTraffic, OfOneWindowDoesNotGrowWithTheirNumber) {
    start();
    const auto askForOne = [this] { ASSERT_TRUE(list_->onScreen(last_, WindowPlacement())); };
    openWindows(1);
    const unsigned alone = requestsOf(askForOne);
    openWindows(100);

    EXPECT_EQ(requestsOf(askForOne), alone);
}

TEST_F(WindowListTraffic, OfTheListNeedsNoMoreRoundTripsForManyWindows) {
    start();
    openWindows(1);
    const XProxy::Traffic alone = trafficOfList(1);
    openWindows(100);

    const XProxy::Traffic many = trafficOfList(101);

    EXPECT_LE(many.sendings, alone.sendings + fullBuffers(many));
}

TEST_F(WindowListTraffic, OfTheListNeedsNoMoreRoundTripsForManyWindowsThatTellLittle) {
    start();
    openBareWindows(1);
    const XProxy::Traffic alone = trafficOfList(1);
    openBareWindows(100);

    const XProxy::Traffic many = trafficOfList(101);

    EXPECT_LE(many.sendings, alone.sendings + fullBuffers(many));
}

}  // namespace
}  // namespace pallwick::x11
