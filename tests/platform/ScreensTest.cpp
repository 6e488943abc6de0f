#include <PallwickMac/Platform/X11/DisplayNumber.h>
#include <gmock/gmock.h>
#include <xcb/randr.h>

#include <array>

#include "PlatformTest.h"
#include "Printing.h"

namespace pallwick::x11 {
namespace {

using support::Reply;
using ::testing::ElementsAre;
using ::testing::Field;

class ScreensTest : public PlatformTest {
protected:
    /// Counts what the platform says about screens from now on.
    void listen() {
        QObject::connect(&platform(), &DesktopPlatform::screensChanged, &platform(), [this] { ++changes_; });
    }

    [[nodiscard]] Screen screen(std::size_t index) { return platform().screens().at(index); }

    /// A dock as a window manager lists it.
    void addDock(const std::vector<std::uint32_t>& strutPartial) {
        const xcb_window_t dock = makeWindow({.x = 0, .y = 0, .width = 10, .height = 10}, true);
        setCardinals(dock, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, strutPartial);
        docks_.push_back(dock);
        setCardinals(x().root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, docks_);
    }

    void setEdid(const std::vector<std::uint8_t>& edid) {
        const Reply<xcb_randr_get_screen_resources_current_reply_t> resources(
            xcb_randr_get_screen_resources_current_reply(
                x().get(), xcb_randr_get_screen_resources_current(x().get(), x().root()), nullptr));
        xcb_randr_change_output_property(x().get(), xcb_randr_get_screen_resources_current_outputs(resources.get())[0],
                                         x().atom("EDID"), XCB_ATOM_INTEGER, 8, XCB_PROP_MODE_REPLACE,
                                         static_cast<std::uint32_t>(edid.size()), edid.data());
        x().roundTrip();
    }

    int changes_ = 0;
    std::vector<xcb_window_t> docks_;
};

TEST_F(ScreensTest, IsOneWhereNobodyHasSetUpMonitors) {
    startDesktop();
    startPlatform();

    EXPECT_THAT(platform().screens(),
                ElementsAre(Field("frame", &Screen::frame, Rect{.x = 0, .y = 0, .width = 1280, .height = 800})));
    EXPECT_EQ(screen(0).name, "screen");
    EXPECT_EQ(screen(0).displayID, displayNumber({}, "screen"));
}

TEST_F(ScreensTest, ComesWithThePrimaryOneFirstAndTheOriginAtItsCorner) {
    startDesktop({.server = {.width = 2560, .height = 1600}});
    desktop().addMonitor("U", {.x = 640, .y = 0, .width = 1280, .height = 800});
    desktop().addMonitor("L", {.x = 0, .y = 800, .width = 640, .height = 800});
    desktop().addMonitor("P", {.x = 640, .y = 800, .width = 1280, .height = 800}, true);
    startPlatform();

    EXPECT_THAT(platform().screens(), ElementsAre(Field("name", &Screen::name, "P"), Field("name", &Screen::name, "U"),
                                                  Field("name", &Screen::name, "L")));
    EXPECT_EQ(screen(0).frame, (Rect{.x = 0, .y = 0, .width = 1280, .height = 800}));
    EXPECT_EQ(screen(1).frame, (Rect{.x = 0, .y = 800, .width = 1280, .height = 800}));
    EXPECT_EQ(screen(2).frame, (Rect{.x = -640, .y = 0, .width = 640, .height = 800}));
}

class ScreensAtEveryScale : public ScreensTest, public ::testing::WithParamInterface<double> {};

INSTANTIATE_TEST_SUITE_P(Scales, ScreensAtEveryScale, ::testing::Values(1.0, 1.25, 1.5, 2.0));

TEST_P(ScreensAtEveryScale, AreMeasuredInPointsOfTheToolkitsScale) {
    startTwoScreens();
    startPlatform(GetParam());

    const double width = 1280 / GetParam();
    const double height = 800 / GetParam();

    EXPECT_EQ(screen(0).scale, GetParam());
    EXPECT_EQ(screen(0).frame, (Rect{.x = 0, .y = 0, .width = width, .height = height}));
    EXPECT_EQ(screen(1).frame, (Rect{.x = 0, .y = height, .width = width, .height = height}));
}

TEST_P(ScreensAtEveryScale, ShareTheirPointsWithThePointer) {
    startTwoScreens();
    startPlatform(GetParam());

    desktop().pointer().moveTo({.x = 740, .y = 1500});

    EXPECT_EQ(platform().pointerLocation(), (Point{.x = 100 / GetParam(), .y = 100 / GetParam()}));
}

TEST_F(ScreensTest, LoseWhatADockReserves) {
    startTwoScreens();
    startPlatform(2);

    // Along the bottom edge of the root, below the primary screen alone.
    addDock({0, 0, 0, 60, 0, 0, 0, 0, 0, 0, 640, 1919});

    EXPECT_EQ(screen(0).visibleFrame, (Rect{.x = 0, .y = 30, .width = 640, .height = 370}));
    EXPECT_EQ(screen(1).visibleFrame, screen(1).frame);
}

TEST_F(ScreensTest, LoseWhatSeveralDocksReserve) {
    startTwoScreens();
    startPlatform();

    addDock({0, 0, 830, 0, 0, 0, 0, 0, 640, 1919, 0, 0});
    addDock({700, 0, 0, 0, 800, 1599, 0, 0, 0, 0, 0, 0});

    EXPECT_EQ(screen(0).visibleFrame, (Rect{.x = 60, .y = 0, .width = 1220, .height = 770}));
    EXPECT_EQ(screen(1).visibleFrame, screen(1).frame);
}

TEST_F(ScreensTest, KnowTheOlderReservationOfAWholeEdge) {
    startDesktop();
    startPlatform();
    const xcb_window_t dock = makeWindow({.x = 0, .y = 0, .width = 10, .height = 10}, true);

    setCardinals(dock, "_NET_WM_STRUT", XCB_ATOM_CARDINAL, {0, 0, 25, 0});
    setCardinals(x().root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, {dock});

    EXPECT_EQ(screen(0).visibleFrame, (Rect{.x = 0, .y = 0, .width = 1280, .height = 775}));
}

TEST_F(ScreensTest, KeepTheirWholeFrameBesideDocksThatTalkNonsense) {
    startDesktop();
    startPlatform();

    addDock({0, 0, 0xFFFFFFFF, 0, 0, 0, 0, 0, 0, 0xFFFFFFFF, 0, 0});
    addDock({0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF});
    addDock({});
    docks_.push_back(0xDEAD);
    setCardinals(x().root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, docks_);
    setBytes(docks_.front(), "_NET_WM_STRUT", "CARDINAL", std::string(1U << 20U, '\xFF'));

    EXPECT_EQ(screen(0).visibleFrame, screen(0).frame);
}

TEST_F(ScreensTest, LoseWhatARealWindowManagersDockReserves) {
    startDesktop({.windowManager = support::WindowManager::openbox});
    startPlatform();
    const xcb_window_t dock = xcb_generate_id(x().get());
    xcb_create_window(x().get(), XCB_COPY_FROM_PARENT, dock, x().root(), 0, 760, 1280, 40, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    setCardinals(dock, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {x().atom("_NET_WM_WINDOW_TYPE_DOCK")});
    setCardinals(dock, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, {0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 0, 1279});

    xcb_map_window(x().get(), dock);
    x().roundTrip();

    await("the dock's strut", [this] { return screen(0).visibleFrame != screen(0).frame; });
    EXPECT_EQ(screen(0).visibleFrame, (Rect{.x = 0, .y = 40, .width = 1280, .height = 760}));
}

TEST_F(ScreensTest, AnnounceOneThatIsPluggedIn) {
    startDesktop({.server = {.width = 2560, .height = 1600}});
    desktop().addMonitor("P", {.x = 640, .y = 800, .width = 1280, .height = 800}, true);
    startPlatform();
    listen();

    desktop().addMonitor("U", {.x = 640, .y = 0, .width = 1280, .height = 800});

    await("two screens announced", [this] { return changes_ > 0 && platform().screens().size() == 2; });
    EXPECT_EQ(screen(1).frame, (Rect{.x = 0, .y = 800, .width = 1280, .height = 800}));
}

TEST_F(ScreensTest, AnnounceOneThatIsUnplugged) {
    startTwoScreens();
    startPlatform();
    listen();

    desktop().removeMonitor("U");

    await("one screen announced", [this] { return changes_ > 0 && platform().screens().size() == 1; });
    EXPECT_EQ(screen(0).name, "P");
}

TEST_F(ScreensTest, AnnounceThatThePrimaryOneHasMoved) {
    startTwoScreens();
    startPlatform();
    listen();

    desktop().removeMonitor("P");
    desktop().addMonitor("P", {.x = 1280, .y = 800, .width = 1280, .height = 800}, true);

    await("the other screen left of the primary one", [this] {
        return changes_ > 0 && platform().screens().size() == 2 &&
               screen(1).frame == Rect{.x = -640, .y = 800, .width = 1280, .height = 800};
    });
}

TEST_F(ScreensTest, AnnounceNothingWhereNothingHasChanged) {
    startTwoScreens();
    startPlatform();
    settle();
    listen();

    // The server reports both, and yet in the end everything is as it was before.
    desktop().addMonitor("V", {.x = 0, .y = 0, .width = 640, .height = 800});
    desktop().removeMonitor("V");
    settle();

    EXPECT_EQ(changes_, 0);
}

TEST_F(ScreensTest, KeepTheirNumberAfterAReplug) {
    startTwoScreens();
    startPlatform();
    const auto number = screen(1).displayID;

    desktop().removeMonitor("U");
    await("one screen", [this] { return platform().screens().size() == 1; });
    desktop().addMonitor("U", {.x = 0, .y = 0, .width = 1920, .height = 800});
    await("two screens", [this] { return platform().screens().size() == 2; });

    EXPECT_EQ(screen(1).displayID, number);
    EXPECT_NE(screen(1).displayID, screen(0).displayID);
}

TEST_F(ScreensTest, NumberOneByItsConnectorWhateverAPersonCallsIt) {
    startDesktop();
    startPlatform();
    const auto number = screen(0).displayID;

    desktop().addMonitor("My screen", {.x = 0, .y = 0, .width = 1280, .height = 800}, true);
    await("the new name", [this] { return screen(0).name == "My screen"; });

    EXPECT_EQ(screen(0).displayID, number);
}

TEST_F(ScreensTest, NumberOneByItsSerialNumber) {
    startDesktop();
    startPlatform();
    std::vector<std::uint8_t> edid(128);
    const std::array<std::uint8_t, 16> beginning{0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00,
                                                 0x10, 0xAC, 0x64, 0xA0, 0x4C, 0x32, 0x39, 0x30};
    std::copy(beginning.begin(), beginning.end(), edid.begin());

    setEdid(edid);

    EXPECT_EQ(screen(0).displayID, displayNumber(edid, "whichever"));
    EXPECT_NE(screen(0).displayID, displayNumber({}, "screen"));
}

}  // namespace
}  // namespace pallwick::x11
