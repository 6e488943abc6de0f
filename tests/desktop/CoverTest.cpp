// What an overlay covers cannot be seen, on any desktop, while it is made, moved and resized.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::PixelPoint;
using support::PixelRect;
using support::Program;
using support::Screenshot;

class Cover : public testing::TestWithParam<DesktopKind> {
protected:
    Cover() : stage_(GetParam()), secret_(stage_.openSecret()) {}

    /// Moves the pointer, with whatever it holds, and looks at every picture until the overlay is seen at `to`: what
    /// it covers both before and after must be hidden all the while, though a compositing manager may be late.
    void stepTo(PixelPoint pointer, const PixelRect& from, const PixelRect& to, Shape shape = Shape::rectangle) {
        stage_.pointer().moveTo(pointer);
        stage_.program().awaitOverlayAt(to);
        stage_.watch(
            "the overlay at " + support::describe(to),
            [&](const Screenshot& screen) {
                EXPECT_EQ(leak(screen, {inside(from, shape), inside(to, shape)}), "") << support::describe(to);
            },
            [&](const Screenshot& screen) { return leak(screen, {inside(to, shape)}).empty(); });
    }

    void drag(Shape shape) {
        const PixelRect start = stage_.program().overlays().front().rect;
        const PixelPoint grip = start.centre();
        stage_.pointer().moveTo(grip);
        stage_.pointer().press();
        PixelRect before = start;
        for (int step = 1; step <= 8; ++step) {
            const PixelRect after{start.x - 23 * step, start.y - 11 * step, start.width, start.height};
            stepTo({.x = grip.x - 23 * step, .y = grip.y - 11 * step}, before, after, shape);
            before = after;
        }
        stage_.pointer().release();
    }

    void resize(Shape shape) {
        const PixelRect start = stage_.program().overlays().front().rect;
        const PixelPoint handle = stage_.resizeHandle(start);
        stage_.pointer().moveTo(handle);
        stage_.pointer().press();
        PixelRect before = start;
        // Out, back and in.
        for (const int growth : {2, 9, 60, 31, 0, -40, -75}) {
            const PixelRect after{start.x, start.y, start.width + growth, start.height + growth};
            stepTo({.x = handle.x + growth, .y = handle.y + growth}, before, after, shape);
            before = after;
        }
        stage_.pointer().release();
    }

    Stage stage_;
    std::unique_ptr<support::TestClient> secret_;
};

TEST_P(Cover, HidesWhatLiesBeneathOnceAdded) {
    const Program::Overlay overlay = stage_.add();

    const Screenshot screen = stage_.awaitCovered(overlay.rect);

    EXPECT_EQ(screen.count(inside(overlay.rect), isSecret), 0);
    EXPECT_TRUE(isSecret(screen.at({.x = overlay.rect.x - 20, .y = overlay.rect.y - 20})));
}

TEST_P(Cover, HidesWhatLiesBeneathAtEveryStepOfADrag) {
    stage_.awaitCovered(stage_.add().rect);

    drag(Shape::rectangle);
}

TEST_P(Cover, HidesWhatLiesBeneathAtEveryStepOfAResize) {
    stage_.awaitCovered(stage_.add().rect);

    resize(Shape::rectangle);
}

TEST_P(Cover, HidesWhatLiesBeneathACircleAtEveryStep) {
    stage_.awaitCovered(stage_.add().rect);
    stage_.setShape(Shape::circle);

    drag(Shape::circle);
    resize(Shape::circle);
}

TEST_P(Cover, KeepsHidingWhileItIsLockedAndUnlocked) {
    const Program::Overlay overlay = stage_.add();
    stage_.awaitCovered(overlay.rect);
    // The border shows in edit mode alone.
    const PixelPoint border{.x = overlay.rect.centre().x, .y = overlay.rect.y + 1};
    const auto look = [&](const Screenshot& screen) { EXPECT_EQ(leak(screen, {inside(overlay.rect)}), ""); };

    stage_.operate("Lock");
    stage_.watch("no border", look, [&](const Screenshot& screen) { return difference(screen.at(border), {}) < 20; });
    stage_.operate("Edit");
    stage_.watch("the border", look, [&](const Screenshot& screen) { return difference(screen.at(border), {}) > 100; });
}

TEST_P(Cover, UncoversAtOnceWhenItIsRemoved) {
    const Program::Overlay overlay = stage_.add();
    stage_.awaitCovered(overlay.rect);

    stage_.operate("Remove Overlay");
    const Screenshot screen = stage_.desktop().awaitPixels(
        "the secret again", [&](const Screenshot& seen) { return seen.count(inside(overlay.rect), isSecret) > 0; });

    EXPECT_TRUE(stage_.program().overlays().empty());
    EXPECT_TRUE(isSecret(screen.at(overlay.rect.centre())));
}

PALLWICK_ON_EVERY_DESKTOP(Cover);

}  // namespace
}  // namespace pallwick::desktop
