// An overlay's window lies exactly where its frame says, to the pixel, at every scale, and so does what it shows.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Colour;
using support::PixelPoint;
using support::PixelRect;
using support::Program;
using support::Screenshot;

struct ScaledDesktop {
    const char* name;
    DesktopKind kind;
    int width;
    int height;
    double scale;
    /// 28 by 20 hundredths of the screen within 220x120 and 360x200 points, in the middle, rounded outward.
    PixelRect added;
    /// 120x40 points from the same top-left corner, rounded outward.
    PixelRect smallest;
};

class OverlayFrame : public testing::TestWithParam<ScaledDesktop> {
protected:
    OverlayFrame()
        : stage_(GetParam().kind, {.width = GetParam().width, .height = GetParam().height, .scale = GetParam().scale}) {
    }

    std::unique_ptr<support::TestClient> openSecretEverywhere() {
        return stage_.openSecret("Secret", stage_.desktop().x().rootRect());
    }

    /// Fails unless the pixels around the middle of each edge change from the secret to the overlay exactly there.
    void expectPixelsOf(const PixelRect& rect) {
        const Screenshot screen = stage_.awaitCovered(rect, Shape::rectangle);
        const PixelPoint middle = rect.centre();
        const auto at = [&](int x, int y) { return screen.at({.x = x, .y = y}); };
        EXPECT_FALSE(isUncovered(at(rect.x, middle.y))) << "left, inside";
        EXPECT_TRUE(isUncovered(at(rect.x - 1, middle.y))) << "left, outside";
        EXPECT_FALSE(isUncovered(at(rect.maxX() - 1, middle.y))) << "right, inside";
        EXPECT_TRUE(isUncovered(at(rect.maxX(), middle.y))) << "right, outside";
        EXPECT_FALSE(isUncovered(at(middle.x, rect.y))) << "top, inside";
        EXPECT_TRUE(isUncovered(at(middle.x, rect.y - 1))) << "top, outside";
        EXPECT_FALSE(isUncovered(at(middle.x, rect.maxY() - 1))) << "bottom, inside";
        EXPECT_TRUE(isUncovered(at(middle.x, rect.maxY()))) << "bottom, outside";
    }

    static bool isUncovered(Colour colour) { return colour == secretGround || colour == secretMark; }

    Stage stage_;
};

TEST_P(OverlayFrame, IsExactToThePixelOnceAdded) {
    const auto secret = openSecretEverywhere();

    const Program::Overlay overlay = stage_.add();

    EXPECT_EQ(overlay.rect, GetParam().added);
    expectPixelsOf(GetParam().added);
}

TEST_P(OverlayFrame, MovesByExactlyThePointersWay) {
    const auto secret = openSecretEverywhere();
    const Program::Overlay overlay = stage_.add();
    PixelRect expected = overlay.rect;
    expected.x -= 37;
    expected.y += 53;

    const Program::Overlay moved = stage_.dragBy(overlay, {.x = -37, .y = 53});
    stage_.settle();

    EXPECT_EQ(stage_.rectOf(moved.window), expected);
    expectPixelsOf(expected);
}

TEST_P(OverlayFrame, GrowsByExactlyThePointersWayAtItsHandle) {
    const auto secret = openSecretEverywhere();
    const Program::Overlay overlay = stage_.add();
    PixelRect expected = overlay.rect;
    expected.width += 41;
    expected.height += 27;

    const PixelPoint handle = stage_.resizeHandle(overlay.rect);
    stage_.pointer().drag(handle, {.x = handle.x + 41, .y = handle.y + 27});
    stage_.program().awaitOverlayAt(expected);
    stage_.settle();

    EXPECT_EQ(stage_.rectOf(overlay.window), expected);
    expectPixelsOf(expected);
}

TEST_P(OverlayFrame, ShrinksToItsLeastSizeAndNoFurther) {
    const auto secret = openSecretEverywhere();
    const Program::Overlay overlay = stage_.add();

    stage_.pointer().drag(stage_.resizeHandle(overlay.rect), {.x = 3, .y = 3});
    stage_.program().awaitOverlayAt(GetParam().smallest);
    stage_.settle();

    EXPECT_EQ(stage_.rectOf(overlay.window), GetParam().smallest);
    expectPixelsOf(GetParam().smallest);
}

INSTANTIATE_TEST_SUITE_P(
    Scales, OverlayFrame,
    testing::Values(
        ScaledDesktop{"scale1", DesktopKind::openbox, 1920, 1080, 1, {780, 440, 360, 200}, {780, 440, 120, 40}},
        ScaledDesktop{
            "scale1Composited", DesktopKind::openboxPicom, 1920, 1080, 1, {780, 440, 360, 200}, {780, 440, 120, 40}},
        ScaledDesktop{"scale1Fractions", DesktopKind::openbox, 1280, 800, 1, {460, 320, 360, 160}, {460, 320, 121, 40}},
        ScaledDesktop{"scale1And5", DesktopKind::openbox, 1920, 1200, 1.5, {691, 480, 538, 240}, {691, 480, 181, 60}},
        ScaledDesktop{"scale2", DesktopKind::openbox, 2560, 1440, 2, {921, 576, 718, 288}, {921, 576, 241, 80}}),
    [](const auto& instance) { return std::string(instance.param.name); });

struct Edge {
    const char* name;
    /// Where the middle of the overlay is dragged to.
    PixelPoint middle;
    PixelRect expected;
};

class ScreenEdge : public testing::TestWithParam<Edge> {};

TEST_P(ScreenEdge, HoldsNoOverlayBack) {
    Stage stage(DesktopKind::openbox);
    const auto secret = stage.openSecret("Secret", stage.desktop().x().rootRect());
    const Program::Overlay overlay = stage.add();

    stage.pointer().drag(overlay.rect.centre(), GetParam().middle);
    stage.program().awaitOverlayAt(GetParam().expected);
    stage.settle();

    EXPECT_EQ(stage.rectOf(overlay.window), GetParam().expected);
    EXPECT_EQ(leak(stage.desktop().screenshot(), {inside(GetParam().expected)}), "");
}

INSTANTIATE_TEST_SUITE_P(Edges, ScreenEdge,
                         testing::Values(Edge{"left", {4, 540}, {-176, 440, 360, 200}},
                                         Edge{"right", {1915, 540}, {1735, 440, 360, 200}},
                                         Edge{"top", {960, 3}, {780, -97, 360, 200}},
                                         Edge{"bottom", {960, 1076}, {780, 976, 360, 200}},
                                         Edge{"topLeft", {2, 2}, {-178, -98, 360, 200}}),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace pallwick::desktop
