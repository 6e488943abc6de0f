// With the blur off a compositing manager shows what is beneath through the tint, at the tint's opacity.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Colour;
using support::PixelPoint;
using support::Program;
using support::Screenshot;
using support::TestClient;

struct Tint {
    const char* name;
    DesktopKind kind;
    int opacity;
    /// Of black over #c86432.
    Colour expected;
};

class TranslucentTint : public testing::TestWithParam<Tint> {};

TEST_P(TranslucentTint, MixesWithWhatLiesBeneathAsItsOpacitySays) {
    Stage stage(GetParam().kind);
    constexpr Colour ground{.red = 200, .green = 100, .blue = 50};
    const TestClient client(stage.desktop(),
                            {.rect = stage.secretRect(), .ground = ground, .mark = ground, .undecorated = true});
    const Program::Overlay overlay = stage.add();
    const PixelPoint middle = overlay.rect.centre();

    stage.setTint(GetParam().opacity);
    stage.awaitStatus("Style updated");
    const auto isMixed = support::isNear(GetParam().expected, 3);
    stage.desktop().awaitPixels("the mixed colour",
                                [&](const Screenshot& screen) { return isMixed(screen.at(middle)); });
    stage.lock();
    stage.settle();
    const Screenshot locked = stage.desktop().awaitPixels(
        "the mixed colour", [&](const Screenshot& screen) { return isMixed(screen.at(middle)); });

    EXPECT_PRED1(isMixed, locked.at({.x = middle.x, .y = overlay.rect.y + 2}));
    EXPECT_PRED1(isMixed, locked.at({.x = overlay.rect.x + 2, .y = middle.y}));
    EXPECT_EQ(locked.at({.x = middle.x, .y = overlay.rect.y - 1}), ground);
}

INSTANTIATE_TEST_SUITE_P(Tints, TranslucentTint,
                         testing::Values(Tint{"halfUnderPicom", DesktopKind::openboxPicom, 50, {100, 50, 25}},
                                         Tint{"quarterUnderPicom", DesktopKind::openboxPicom, 25, {150, 75, 38}},
                                         Tint{"noneUnderPicom", DesktopKind::openboxPicom, 0, {200, 100, 50}},
                                         Tint{"allUnderPicom", DesktopKind::openboxPicom, 100, {0, 0, 0}},
                                         Tint{"halfUnderXfwm4", DesktopKind::xfwm4Compositing, 50, {100, 50, 25}}),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace pallwick::desktop
