// Scales of the desktop, and what changes while the program runs.

#include <gmock/gmock.h>
#include <support/ScaleSettings.h>

#include <cstdlib>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::PixelRect;
using support::PrivateDesktop;
using support::Program;

struct Scale {
    const char* name;
    double value;
};

class MainWindowAtScale : public testing::TestWithParam<Scale> {};

INSTANTIATE_TEST_SUITE_P(Scales, MainWindowAtScale,
                         testing::Values(Scale{"one", 1}, Scale{"oneAndAHalf", 1.5}, Scale{"two", 2}),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(MainWindowAtScale, IsWholeOnTheScreenWithAllItsControls) {
    PrivateDesktop desktop({.server = {.width = 2560, .height = 1440}});
    Program program(desktop, {.scale = GetParam().value, .scaleSource = Program::ScaleSource::xftDpi});
    const xcb_window_t window = program.awaitMainWindow();
    program.click("Add");
    program.awaitOverlayCount(1);

    const PixelRect frame = desktop.windows().frame(window).value_or(PixelRect{});
    EXPECT_EQ(frame.intersection(desktop.x().rootRect()), frame);
    const PixelRect client = desktop.windows().rect(window).value_or(PixelRect{});
    EXPECT_GE(client.width, program.pixels(760));
    EXPECT_GE(client.height, program.pixels(460));
    const PixelRect remove = program.controls().await("push button", "Remove Overlay").extents();
    EXPECT_EQ(remove.intersection(client), remove);
}

TEST(MainWindowAtTwiceTheScale, IsWholeOnAScreenThatHasRoomForItsSmallestSizeOnly) {
    PrivateDesktop desktop({.server = {.width = 1920, .height = 1080}});
    Program program(desktop, {.scale = 2, .scaleSource = Program::ScaleSource::xftDpi});

    const PixelRect frame = desktop.windows().frame(program.awaitMainWindow()).value_or(PixelRect{});

    EXPECT_EQ(frame.intersection(desktop.x().rootRect()), frame);
}

TEST(ScaleChange, OfTheResourcesLeavesOverlaysWhereTheyAre) {
    PrivateDesktop desktop({.server = {.width = 2560, .height = 1440}});
    Program program(desktop, {.scale = 1, .scaleSource = Program::ScaleSource::xftDpi});
    const xcb_window_t window = program.awaitMainWindow();
    program.click("Add");
    const Program::Overlay overlay = program.awaitOverlayCount(1).front();
    const std::string row = program.controls().await("list item", "").name();
    const PixelRect main = desktop.windows().rect(window).value_or(PixelRect{});

    // The toolkit reads them once, when the program starts.
    desktop.setResources("Xft.dpi:\t192\n");
    for (int turn = 0; turn < 30; ++turn) {
        desktop.x().roundTrip();
        static_cast<void>(program.controls().application().role());
    }

    EXPECT_EQ(program.awaitOverlayCount(1).front().rect, overlay.rect);
    EXPECT_EQ(program.controls().await("list item", "").name(), row);
    EXPECT_EQ(desktop.windows().rect(window), main);
}

TEST(ScaleChange, OfTheDesktopsSettingsKeepsOverlaysInPoints) {
    PrivateDesktop desktop({.server = {.width = 2560, .height = 1440}});
    support::ScaleSettings settings(desktop, 1);
    Program program(desktop);
    const xcb_window_t window = program.awaitMainWindow();
    program.click("Add");
    const Program::Overlay before = program.awaitOverlayCount(1).front();
    const std::string row = program.controls().await("list item", "").name();

    settings.setScale(1.5);

    // Points are counted from the lower left corner; each edge is rounded outward.
    const auto isClose = [](int a, double b) { return std::abs(a - b) <= 2; };
    const Program::Overlay after = program.awaitOverlay("it half as large again", [&](const Program::Overlay& seen) {
        return isClose(seen.rect.x, before.rect.x * 1.5) && isClose(seen.rect.width, before.rect.width * 1.5) &&
               isClose(seen.rect.height, before.rect.height * 1.5) &&
               isClose(1440 - seen.rect.maxY(), (1440 - before.rect.maxY()) * 1.5);
    });
    EXPECT_EQ(after.window, before.window);
    EXPECT_EQ(program.controls().await("list item", "").name(), row);
    desktop.x().await(
        "the main window as large as at that scale, and whole on the screen",
        [&] {
            const PixelRect client = desktop.windows().rect(window).value_or(PixelRect{});
            const PixelRect frame = desktop.windows().frame(window).value_or(PixelRect{});
            return client.width >= 760 * 3 / 2 && client.height >= 460 * 3 / 2 &&
                   frame.intersection(desktop.x().rootRect()) == frame;
        },
        [&] { return describe(desktop.windows().frame(window).value_or(PixelRect{})); });
}

}  // namespace
}  // namespace pallwick::desktop
