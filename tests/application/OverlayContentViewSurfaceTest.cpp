#include "OverlayContentViewFixture.h"

namespace pallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// What the view tells its surface besides frames: effect layer, cursors, name and when to draw.
class OverlayContentViewSurface : public OverlayContentViewFixture {};

const CursorRegion handleCursor{.rect = {.x = 266, .y = 166, .width = 28, .height = 28},
                                .shape = CursorShape::resizeLeftRight};
const CursorRegion deleteCursor{.rect = {.x = 8, .y = 8, .width = 26, .height = 26},
                                .shape = CursorShape::pointingHand};

TEST_F(OverlayContentViewSurface, PlacesItsControlsInTwoCorners) {
    EXPECT_EQ(view.bounds(), (Rect{.x = 0, .y = 0, .width = 300, .height = 200}));
    EXPECT_EQ(view.deleteControlRect(), (Rect{.x = 8, .y = 8, .width = 26, .height = 26}));
    EXPECT_EQ(view.resizeHandleRect(), (Rect{.x = 266, .y = 166, .width = 28, .height = 28}));
}

TEST(OverlayContentViewInNoWindow, IsAsLargeAsItsOverlay) {
    const BlurOverlay overlay({.frame = {.x = 7, .y = 8, .width = 150, .height = 60}});

    const OverlayContentView view(overlay, {}, {});

    EXPECT_EQ(view.bounds(), (Rect{.x = 0, .y = 0, .width = 150, .height = 60}));
}

TEST_F(OverlayContentViewSurface, TellsTheEffectsStrengthAndItsCover) {
    overlay.style = BlurStyle(50, "#FF8000", 80, true);

    view.update(overlay, true);

    EXPECT_EQ(surface.effectLayer(), (EffectLayer{.hidden = false,
                                                  .alpha = 0.4,
                                                  .shape = EffectLayer::Shape::roundedRectangle,
                                                  .cornerRadius = 12,
                                                  .cover = QColor(255, 128, 0)}));
}

TEST_F(OverlayContentViewSurface, HidesTheEffectWithoutGlassBlur) {
    overlay.style.glassBlur = false;

    view.update(overlay, true);
    const bool hiddenWithout = surface.effectLayer().hidden;
    overlay.style.glassBlur = true;
    view.update(overlay, true);

    EXPECT_TRUE(hiddenWithout);
    EXPECT_FALSE(surface.effectLayer().hidden);
}

TEST_F(OverlayContentViewSurface, ClipsTheEffectOfACircleToItsEllipse) {
    overlay.shape = OverlayShape::circle;

    view.update(overlay, true);
    const EffectLayer circle = surface.effectLayer();
    overlay.shape = OverlayShape::rectangle;
    view.update(overlay, true);

    EXPECT_EQ(circle.shape, EffectLayer::Shape::ellipse);
    EXPECT_EQ(surface.effectLayer().shape, EffectLayer::Shape::roundedRectangle);
    EXPECT_EQ(surface.effectLayer().cornerRadius, 12);
}

TEST_F(OverlayContentViewSurface, HoldsTheEffectOfAnExtremeStyleWithinItsRange) {
    overlay.style.intensity = 400;

    view.update(overlay, true);
    const double strong = surface.effectLayer().alpha;
    overlay.style.intensity = -100;
    view.update(overlay, true);

    EXPECT_EQ(strong, 1);
    EXPECT_EQ(surface.effectLayer().alpha, 0);
}

TEST_F(OverlayContentViewSurface, CoversWithOpaqueBlackUnderAMisspeltColour) {
    overlay.style.colorHex = "#GG0000";
    overlay.style.opacity = 10;

    view.update(overlay, true);

    EXPECT_EQ(surface.effectLayer().cover, QColor(0, 0, 0, 255));
}

TEST_F(OverlayContentViewSurface, NamesItsShapeToScreenReaders) {
    const QString rectangle = surface.accessibleName();
    overlay.shape = OverlayShape::circle;

    view.update(overlay, false);

    EXPECT_EQ(rectangle, QStringLiteral("Overlay, Rectangle"));
    EXPECT_EQ(surface.accessibleName(), QStringLiteral("Overlay, Circle"));
}

TEST_F(OverlayContentViewSurface, AsksToBeDrawnAtEveryUpdate) {
    const int before = surface.displayRequests();

    view.update(overlay, true);

    EXPECT_EQ(surface.displayRequests(), before + 1);
}

TEST_F(OverlayContentViewSurface, ShowsItsControlsWhileThePointerIsInside) {
    const int before = surface.displayRequests();

    surface.enter();

    EXPECT_TRUE(view.shouldShowResizeHandle());
    EXPECT_EQ(surface.displayRequests(), before + 1);
    EXPECT_THAT(surface.cursorRegions(), ElementsAre(handleCursor, deleteCursor));
}

TEST_F(OverlayContentViewSurface, TakesItsControlsAwayWhenThePointerLeaves) {
    surface.enter();
    const int before = surface.displayRequests();

    surface.leave();

    EXPECT_FALSE(view.shouldShowResizeHandle());
    EXPECT_EQ(surface.displayRequests(), before + 1);
    EXPECT_THAT(surface.cursorRegions(), IsEmpty());
}

TEST_F(OverlayContentViewSurface, HasNoCursorsWhileLocked) {
    surface.enter();

    view.update(overlay, false);

    EXPECT_THAT(surface.cursorRegions(), IsEmpty());
}

TEST_F(OverlayContentViewSurface, GetsItsCursorsBackWhenUnlockedUnderThePointer) {
    surface.enter();
    view.update(overlay, false);

    view.update(overlay, true);

    EXPECT_THAT(surface.cursorRegions(), ElementsAre(handleCursor, deleteCursor));
}

TEST_F(OverlayContentViewSurface, KeepsItsControlsDuringAResizeThatLeavesTheView) {
    surface.enter();
    surface.press({.x = 280, .y = 180});

    surface.leave();

    EXPECT_TRUE(view.shouldShowResizeHandle());
    EXPECT_THAT(surface.cursorRegions(), ElementsAre(handleCursor, deleteCursor));
}

TEST_F(OverlayContentViewSurface, LosesItsControlsDuringAMoveThatLeavesTheView) {
    surface.enter();
    surface.press({.x = 150, .y = 100});

    surface.leave();

    EXPECT_FALSE(view.shouldShowResizeHandle());
}

TEST_F(OverlayContentViewSurface, TakesItsControlsAwayWhenAResizeEndsOutside) {
    surface.enter();
    surface.press({.x = 280, .y = 180});
    surface.leave();
    const int before = surface.displayRequests();

    surface.release();

    EXPECT_FALSE(view.shouldShowResizeHandle());
    EXPECT_EQ(surface.displayRequests(), before + 1);
    EXPECT_THAT(surface.cursorRegions(), IsEmpty());
}

TEST_F(OverlayContentViewSurface, TakesItsControlsAwayWhenAResizeIsCancelledOutside) {
    surface.enter();
    surface.press({.x = 280, .y = 180});
    surface.leave();
    const int before = surface.displayRequests();

    surface.hide();

    EXPECT_FALSE(view.shouldShowResizeHandle());
    EXPECT_EQ(surface.displayRequests(), before + 1);
    EXPECT_THAT(surface.cursorRegions(), IsEmpty());
}

TEST_F(OverlayContentViewSurface, MovesTheHandlesCursorWithTheCornerThatIsDragged) {
    surface.enter();
    surface.press({.x = 280, .y = 180});

    surface.dragTo({.x = 30, .y = -20});

    ASSERT_EQ(surface.cursorRegions().size(), 2U);
    EXPECT_EQ(surface.cursorRegions()[0].rect, (Rect{.x = 296, .y = 186, .width = 28, .height = 28}));
}

TEST_F(OverlayContentViewSurface, AsksToBeDrawnBeforeItsSurfaceTakesAnotherSize) {
    surface.press({.x = 280, .y = 180});
    platform.clearCalls();

    surface.dragTo({.x = 30, .y = -20});

    EXPECT_THAT(platform.calls(),
                ElementsAre("setNeedsDisplay 1", "setFrame 1 (100, 80, 330, 220)", "setCursorRegions 1 2"));
}

}  // namespace
}  // namespace pallwick
