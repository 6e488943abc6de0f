#include "OverlayContentViewFixture.h"

namespace pallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using DragMode = OverlayContentView::DragMode;

class OverlayContentViewGesture : public OverlayContentViewFixture {
protected:
    /// A press that the surface lets through whatever the view's mode.
    void pressView(const Point& locationInView) {
        view.mouseDown({.locationInView = locationInView,
                        .mouseLocation = {.x = surface.frame().minX() + locationInView.x,
                                          .y = surface.frame().maxY() - locationInView.y}});
    }
};

TEST_F(OverlayContentViewGesture, RequestsDeletionAtThePressOnTheDeleteControl) {
    surface.press({.x = 10, .y = 10});

    EXPECT_THAT(deleteRequests, ElementsAre(overlay.id()));
}

TEST_F(OverlayContentViewGesture, StartsNoDragWithAPressOnTheDeleteControl) {
    surface.press({.x = 10, .y = 10});

    surface.dragTo({.x = 50, .y = 50});

    EXPECT_EQ(view.dragMode(), std::nullopt);
    EXPECT_EQ(surface.frame(), overlay.frame);
    EXPECT_THAT(frameChanges, IsEmpty());
}

TEST_F(OverlayContentViewGesture, DeletesWhetherOrNotTheControlIsDrawn) {
    ASSERT_FALSE(view.shouldShowResizeHandle());

    surface.press({.x = 21, .y = 21});

    EXPECT_THAT(deleteRequests, ElementsAre(overlay.id()));
}

TEST_F(OverlayContentViewGesture, KeepsTheTopLeftCornerWhileResizing) {
    surface.press({.x = 280, .y = 180});

    surface.dragTo({.x = 30, .y = -20});

    const Rect expected{.x = 100, .y = 80, .width = 330, .height = 220};
    EXPECT_EQ(surface.frame(), expected);
    EXPECT_EQ(surface.frame().maxY(), overlay.frame.maxY());
    EXPECT_THAT(frameChanges, ElementsAre(FrameChange{.overlayID = overlay.id(), .frame = expected}));
}

TEST_F(OverlayContentViewGesture, StopsShrinkingAtTheMinimumSize) {
    surface.press({.x = 280, .y = 180});

    surface.dragTo({.x = -2000, .y = 2000});

    EXPECT_EQ(surface.frame(), (Rect{.x = 100, .y = 260, .width = 120, .height = 40}));
}

TEST_F(OverlayContentViewGesture, MovesByTheMousesDisplacement) {
    surface.press({.x = 150, .y = 100});

    surface.dragTo({.x = 12.5, .y = -7.25});

    const Rect expected{.x = 112.5, .y = 92.75, .width = 300, .height = 200};
    EXPECT_EQ(surface.frame(), expected);
    EXPECT_THAT(frameChanges, ElementsAre(FrameChange{.overlayID = overlay.id(), .frame = expected}));
}

TEST_F(OverlayContentViewGesture, ReportsEveryStepMeasuredFromThePress) {
    surface.press({.x = 150, .y = 100});

    surface.dragTo({.x = 40, .y = 40});
    surface.dragTo({.x = 10, .y = 0});
    surface.dragTo({.x = 0, .y = 0});

    EXPECT_THAT(frameChanges,
                ElementsAre(FrameChange{overlay.id(), {.x = 140, .y = 140, .width = 300, .height = 200}},
                            FrameChange{overlay.id(), {.x = 110, .y = 100, .width = 300, .height = 200}},
                            FrameChange{overlay.id(), {.x = 100, .y = 100, .width = 300, .height = 200}}));
}

TEST_F(OverlayContentViewGesture, GrowsBackFromTheMinimumToWhereTheMouseIs) {
    surface.press({.x = 280, .y = 180});

    surface.dragTo({.x = -2000, .y = 2000});
    surface.dragTo({.x = 5, .y = -5});

    EXPECT_EQ(surface.frame(), (Rect{.x = 100, .y = 95, .width = 305, .height = 205}));
}

TEST_F(OverlayContentViewGesture, FollowsTheMouseOffEveryScreen) {
    surface.press({.x = 150, .y = 100});

    surface.dragTo({.x = -5000, .y = 9000});

    EXPECT_EQ(surface.frame(), (Rect{.x = -4900, .y = 9100, .width = 300, .height = 200}));
}

TEST_F(OverlayContentViewGesture, ReportsNothingAtTheRelease) {
    surface.press({.x = 150, .y = 100});

    surface.release();

    EXPECT_EQ(view.dragMode(), std::nullopt);
    EXPECT_THAT(frameChanges, IsEmpty());
}

TEST_F(OverlayContentViewGesture, EndsWithTheRelease) {
    surface.press({.x = 150, .y = 100});
    surface.release();

    view.mouseDragged({.locationInView = {.x = 160, .y = 100}, .mouseLocation = {.x = 260, .y = 200}});

    EXPECT_EQ(surface.frame(), overlay.frame);
    EXPECT_THAT(frameChanges, IsEmpty());
}

TEST_F(OverlayContentViewGesture, IgnoresADragWithoutAPress) {
    view.mouseDragged({.locationInView = {.x = 160, .y = 100}, .mouseLocation = {.x = 260, .y = 200}});

    EXPECT_EQ(surface.frame(), overlay.frame);
    EXPECT_THAT(frameChanges, IsEmpty());
}

TEST_F(OverlayContentViewGesture, GoesOnUndisturbedByTheUpdatesItCauses) {
    surface.press({.x = 280, .y = 180});
    surface.dragTo({.x = 10, .y = -10});
    BlurOverlay stored = overlay;
    stored.frame = frameChanges.back().frame;
    surface.setFrame(stored.frame);
    view.update(stored, true);

    surface.dragTo({.x = 20, .y = -20});

    EXPECT_EQ(surface.frame(), (Rect{.x = 100, .y = 80, .width = 320, .height = 220}));
}

TEST_F(OverlayContentViewGesture, TakesTheMouseEverywhereInEditMode) {
    EXPECT_EQ(view.hitTest({.x = 150, .y = 100}), &view);
    EXPECT_EQ(view.hitTest({.x = -5, .y = 5000}), &view);
}

TEST_F(OverlayContentViewGesture, NeverTakesTheMouseWhileLocked) {
    view.update(overlay, false);

    EXPECT_EQ(view.hitTest({.x = 150, .y = 100}), nullptr);
    EXPECT_EQ(view.hitTest({.x = 10, .y = 10}), nullptr);
}

TEST_F(OverlayContentViewGesture, IgnoresPressesWhileLocked) {
    view.update(overlay, false);

    pressView({.x = 10, .y = 10});
    pressView({.x = 280, .y = 180});

    EXPECT_THAT(deleteRequests, IsEmpty());
    EXPECT_EQ(view.dragMode(), std::nullopt);
}

TEST_F(OverlayContentViewGesture, StandsStillWhenLockedInMidDrag) {
    surface.press({.x = 150, .y = 100});
    surface.dragTo({.x = 10, .y = 10});
    const Rect before = surface.frame();

    view.update(overlay, false);
    surface.dragTo({.x = 60, .y = 60});

    EXPECT_EQ(surface.frame(), before);
    EXPECT_EQ(frameChanges.size(), 1U);
}

TEST_F(OverlayContentViewGesture, ForgetsTheDragWhenItsSurfaceGoesAway) {
    surface.press({.x = 150, .y = 100});

    surface.hide();
    surface.show();
    view.mouseDragged({.locationInView = {.x = 160, .y = 100}, .mouseLocation = {.x = 260, .y = 200}});

    EXPECT_EQ(view.dragMode(), std::nullopt);
    EXPECT_EQ(surface.frame(), overlay.frame);
}

TEST_F(OverlayContentViewGesture, DoesNothingInNoWindow) {
    view.setSurface(nullptr);

    pressView({.x = 10, .y = 10});
    pressView({.x = 150, .y = 100});
    view.mouseDragged({.locationInView = {.x = 160, .y = 100}, .mouseLocation = {.x = 260, .y = 200}});
    view.mouseUp();

    EXPECT_THAT(deleteRequests, IsEmpty());
    EXPECT_THAT(frameChanges, IsEmpty());
    EXPECT_EQ(view.dragMode(), std::nullopt);
    EXPECT_THAT(platform.calls(), IsEmpty());
}

TEST_F(OverlayContentViewGesture, StopsADragWhenTakenOutOfItsWindow) {
    surface.press({.x = 150, .y = 100});
    view.setSurface(nullptr);

    surface.dragTo({.x = 10, .y = 10});

    EXPECT_EQ(surface.frame(), overlay.frame);
    EXPECT_THAT(frameChanges, IsEmpty());
}

TEST_F(OverlayContentViewGesture, DeletesWhereASmallViewsControlsOverlap) {
    BlurOverlay small = overlay;
    small.frame = {.x = 0, .y = 0, .width = 40, .height = 40};
    surface.setFrame(small.frame);
    view.update(small, true);
    ASSERT_TRUE(view.resizeHandleRect().contains({.x = 20, .y = 20}));

    surface.press({.x = 20, .y = 20});

    EXPECT_THAT(deleteRequests, ElementsAre(overlay.id()));
    EXPECT_EQ(view.dragMode(), std::nullopt);
}

TEST_F(OverlayContentViewGesture, EnlargesASmallViewToTheMinimumWithTheFirstStepOfAResize) {
    BlurOverlay small = overlay;
    small.frame = {.x = 10, .y = 10, .width = 50, .height = 30};
    surface.setFrame(small.frame);
    view.update(small, true);
    surface.press({.x = 40, .y = 20});

    surface.dragTo({.x = 0, .y = 0});

    EXPECT_EQ(surface.frame(), (Rect{.x = 10, .y = 0, .width = 120, .height = 40}));
}

enum class Outcome { deletes, moves, resizes };

struct PressCase {
    Point point;
    Outcome outcome;
    std::string name;

    friend void PrintTo(const PressCase& press, std::ostream* stream) { *stream << press.name; }
};

class OverlayContentViewPress : public OverlayContentViewFixture, public ::testing::WithParamInterface<PressCase> {};

TEST_P(OverlayContentViewPress, MeansWhatLiesBeneath) {
    surface.press(GetParam().point);

    const bool deletes = GetParam().outcome == Outcome::deletes;
    const std::optional<DragMode> drag =
        deletes ? std::nullopt
                : std::optional(GetParam().outcome == Outcome::resizes ? DragMode::resize : DragMode::move);
    EXPECT_EQ(deleteRequests.size(), deletes ? 1U : 0U);
    EXPECT_EQ(view.dragMode(), drag);
}

INSTANTIATE_TEST_SUITE_P(
    , OverlayContentViewPress,
    ::testing::Values(PressCase{{8, 8}, Outcome::deletes, "OnTheDeleteControlsMinimumEdges"},
                      PressCase{{33.99, 33.99}, Outcome::deletes, "WithinTheDeleteControlsMaximumEdges"},
                      PressCase{{7.99, 21}, Outcome::moves, "LeftOfTheDeleteControl"},
                      PressCase{{21, 7.99}, Outcome::moves, "AboveTheDeleteControl"},
                      PressCase{{34, 21}, Outcome::moves, "OnTheDeleteControlsRightEdge"},
                      PressCase{{21, 34}, Outcome::moves, "OnTheDeleteControlsBottomEdge"},
                      PressCase{{266, 166}, Outcome::resizes, "OnTheHandlesMinimumEdges"},
                      PressCase{{293.99, 193.99}, Outcome::resizes, "WithinTheHandlesMaximumEdges"},
                      PressCase{{265.99, 180}, Outcome::moves, "LeftOfTheHandle"},
                      PressCase{{280, 165.99}, Outcome::moves, "AboveTheHandle"},
                      PressCase{{294, 180}, Outcome::moves, "OnTheHandlesRightEdge"},
                      PressCase{{280, 194}, Outcome::moves, "OnTheHandlesBottomEdge"},
                      PressCase{{0, 0}, Outcome::moves, "InTheCorner"},
                      PressCase{{150, 100}, Outcome::moves, "InTheMiddle"}),
    [](const ::testing::TestParamInfo<PressCase>& test) { return test.param.name; });

}  // namespace
}  // namespace pallwick
