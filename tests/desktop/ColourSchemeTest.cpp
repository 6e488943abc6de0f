// What an overlay draws in the desktop's colours follows them.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Colour;
using support::PixelPoint;
using support::Program;
using support::Screenshot;

TEST(DarkColours, AreThoseOfBorderAndResizeHandle) {
    Stage stage(DesktopKind::openbox, {.dark = true});
    const Program::Overlay overlay = stage.add();
    stage.pointer().moveTo(overlay.rect.centre());
    constexpr Colour accent{.red = 61, .green = 174, .blue = 233};
    constexpr Colour background{.red = 42, .green = 46, .blue = 50};
    const PixelPoint border{.x = overlay.rect.centre().x, .y = overlay.rect.y + 1};
    // In the handle's upper left half, off its grip.
    const PixelPoint handle{.x = overlay.rect.maxX() - 28, .y = overlay.rect.maxY() - 28};

    const Screenshot screen =
        stage.desktop().awaitPixels("border and handle in dark colours", [&](const Screenshot& seen) {
            return support::isNear(accent, 12)(seen.at(border)) && support::isNear(background, 12)(seen.at(handle));
        });

    EXPECT_EQ(screen.at(overlay.rect.centre()), Colour{});
}

TEST(LightColours, AreThoseOfBorderAndResizeHandle) {
    Stage stage(DesktopKind::openbox);
    const Program::Overlay overlay = stage.add();
    stage.pointer().moveTo(overlay.rect.centre());
    const PixelPoint border{.x = overlay.rect.centre().x, .y = overlay.rect.y + 1};
    const PixelPoint handle{.x = overlay.rect.maxX() - 28, .y = overlay.rect.maxY() - 28};

    const Screenshot screen = stage.desktop().awaitPixels("a light handle", [&](const Screenshot& seen) {
        return difference(seen.at(handle), {.red = 255, .green = 255, .blue = 255}) < 50;
    });

    EXPECT_GT(screen.at(border).blue, screen.at(border).red + 50);
}

}  // namespace
}  // namespace pallwick::desktop
