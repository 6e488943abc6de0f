#include <PallwickMac/Platform/X11/X11OverlaySurface.h>
#include <xcb/xfixes.h>

#include "SurfaceTest.h"

namespace pallwick::x11 {
namespace {

using support::MouseButton;
using support::Reply;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

/// The pointer over a surface that covers the pixels from 100,580 to 300,700.
class SurfacePointer : public SurfaceTest {
protected:
    void start(double scale = 1) {
        startDesktop();
        desktop().pointer().moveTo({.x = 700, .y = 100});
        startPlatform(scale);
        surface_ = makeSurface(content_, {.x = 100, .y = 100, .width = 200, .height = 120});
        surface_->show();
        settle();
        content_.events.clear();
    }

    void moveTo(int pixelX, int pixelY) {
        desktop().pointer().moveTo({.x = pixelX, .y = pixelY});
        settle();
    }

    void press(MouseButton button = MouseButton::left) {
        desktop().pointer().press(button);
        settle();
    }

    void release(MouseButton button = MouseButton::left) {
        desktop().pointer().release(button);
        settle();
    }

    /// The picture of the pointer's shape now.
    [[nodiscard]] std::vector<std::uint32_t> cursor() {
        const Reply<xcb_xfixes_get_cursor_image_reply_t> image(
            xcb_xfixes_get_cursor_image_reply(x().get(), xcb_xfixes_get_cursor_image(x().get()), nullptr));
        const std::uint32_t* pixels = xcb_xfixes_get_cursor_image_cursor_image(image.get());
        std::vector<std::uint32_t> picture{image->xhot, image->yhot};
        picture.insert(picture.end(), pixels, pixels + xcb_xfixes_get_cursor_image_cursor_image_length(image.get()));
        return picture;
    }

    std::unique_ptr<OverlaySurface> surface_;
};

TEST_F(SurfacePointer, ReportsADragFromPressToRelease) {
    start();

    moveTo(110, 600);
    press();
    moveTo(115, 605);
    moveTo(150, 650);
    release();

    EXPECT_THAT(content_.events, ElementsAre("entered", "down 10,20", "dragged 15,25", "dragged 50,70", "up"));
    EXPECT_THAT(content_.screenLocations, ElementsAre(Point{110, 200}, Point{115, 195}, Point{150, 150}));
}

TEST_F(SurfacePointer, LosesAClickOnASurfaceThatHasMadeWayForAnother) {
    start();
    moveTo(110, 600);
    const xcb_window_t native = windowOf(*surface_);
    RecordingContent nextContent;

    // Pressed before the surface goes, heard of only after the next one has come.
    desktop().pointer().press(MouseButton::left);
    x().roundTrip();
    surface_.reset();
    surface_ = makeSurface(nextContent, {.x = 100, .y = 100, .width = 200, .height = 120});
    surface_->show();
    ASSERT_EQ(windowOf(*surface_), native);
    settle();

    EXPECT_THAT(nextContent.events, Not(Contains("down 10,20")));
}

TEST_F(SurfacePointer, ReportsPlacesInPointsOfTheScale) {
    startTwoScreens();
    startPlatform(2);
    surface_ = makeSurface(content_, {.x = 100, .y = 100, .width = 200, .height = 120});
    surface_->show();
    settle();

    // Its pixels begin at 840,1160.
    desktop().pointer().moveTo({.x = 851, .y = 1200});
    press();

    EXPECT_THAT(content_.events, ElementsAre("entered", "down 5.5,20"));
    EXPECT_THAT(content_.screenLocations, ElementsAre(Point{105.5, 200}));
}

TEST_F(SurfacePointer, ReportsPlacesFromTheExactCornerOfAFrameBetweenPixels) {
    start();
    surface_->setFrame({.x = 100.25, .y = 100, .width = 200, .height = 119.5});
    settle();

    moveTo(110, 600);
    press();

    EXPECT_THAT(content_.events, ElementsAre("entered", "down 9.75,19.5"));
}

TEST_F(SurfacePointer, FollowsADragThatLeavesTheSurfaceAndTheScreen) {
    start();

    moveTo(110, 600);
    press();
    moveTo(1279, 0);
    release();

    EXPECT_THAT(content_.events, Contains("dragged 1179,-580"));
    EXPECT_THAT(content_.events, Contains("up"));
}

TEST_F(SurfacePointer, FollowsADragWhileTheSurfaceMovesWithIt) {
    start();

    moveTo(110, 600);
    press();
    surface_->setFrame({.x = 200, .y = 100, .width = 200, .height = 120});
    settle();
    moveTo(310, 600);

    EXPECT_EQ(content_.events.back(), "dragged 110,20");
    EXPECT_EQ(content_.screenLocations.back(), (Point{.x = 310, .y = 200}));
}

TEST_F(SurfacePointer, ReportsTheLatestPlaceBeforeTheRelease) {
    start();
    moveTo(110, 600);

    // All of it at once, as after a moment of work elsewhere.
    desktop().pointer().press();
    desktop().pointer().moveTo({.x = 120, .y = 600});
    desktop().pointer().moveTo({.x = 130, .y = 600});
    desktop().pointer().release();
    settle();

    EXPECT_THAT(content_.events, ElementsAre("entered", "down 10,20", "dragged 30,20", "up"));
}

TEST_F(SurfacePointer, ForgetsTheGestureWhenItIsHiddenInItsMiddle) {
    start();
    moveTo(110, 600);
    press();
    content_.events.clear();

    surface_->hide();
    EXPECT_THAT(content_.events, ElementsAre("cancelled"));

    moveTo(120, 610);
    release();
    EXPECT_THAT(content_.events, Not(Contains(::testing::HasSubstr("dragged"))));
    EXPECT_THAT(content_.events, Not(Contains("up")));
}

TEST_F(SurfacePointer, ForgetsTheGestureWhenItStopsTakingTheMouse) {
    start();
    moveTo(110, 600);
    press();
    content_.events.clear();

    surface_->setIgnoresMouseEvents(true);
    moveTo(120, 610);
    release();

    EXPECT_THAT(content_.events, Contains("cancelled").Times(1));
    EXPECT_THAT(content_.events, Not(Contains(::testing::HasSubstr("dragged"))));
    EXPECT_THAT(content_.events, Not(Contains("up")));
}

TEST_F(SurfacePointer, CancelsNothingWhereNoGestureIsUnderWay) {
    start();
    moveTo(110, 600);
    content_.events.clear();

    surface_->hide();

    EXPECT_THAT(content_.events, Not(Contains("cancelled")));
}

TEST_F(SurfacePointer, ForgetsTheGestureWhenItIsDestroyedInItsMiddle) {
    start();
    moveTo(110, 600);
    press();
    content_.events.clear();

    surface_.reset();
    moveTo(120, 610);
    release();

    EXPECT_THAT(content_.events, ElementsAre("cancelled"));
}

class EveryOtherButton : public SurfacePointer, public ::testing::WithParamInterface<MouseButton> {};

INSTANTIATE_TEST_SUITE_P(Buttons, EveryOtherButton,
                         ::testing::Values(MouseButton::middle, MouseButton::right, MouseButton::wheelUp,
                                           MouseButton::wheelDown));

TEST_P(EveryOtherButton, MeansNothing) {
    start();
    moveTo(110, 600);

    press(GetParam());
    moveTo(120, 610);
    release(GetParam());

    EXPECT_THAT(content_.events, ElementsAre("entered"));
}

TEST_P(EveryOtherButton, DoesNotEndADragOfTheLeftOne) {
    start();
    moveTo(110, 600);

    press();
    press(GetParam());
    release(GetParam());
    moveTo(120, 610);
    release();

    EXPECT_THAT(content_.events, ElementsAre("entered", "down 10,20", "dragged 20,30", "up"));
}

TEST_F(SurfacePointer, ReportsThatThePointerComesAndGoes) {
    start();

    moveTo(110, 600);
    moveTo(700, 100);
    moveTo(110, 600);

    EXPECT_THAT(content_.events, ElementsAre("entered", "exited", "entered"));
}

TEST_F(SurfacePointer, TakesNoGrabForAMovementOfThePointer) {
    start();
    moveTo(110, 600);

    // As a menu or a screen locker does while the pointer lies still.
    const Reply<xcb_grab_pointer_reply_t> grab(xcb_grab_pointer_reply(
        x().get(),
        xcb_grab_pointer(x().get(), 0, x().root(), XCB_EVENT_MASK_BUTTON_PRESS, XCB_GRAB_MODE_ASYNC,
                         XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME),
        nullptr));
    ASSERT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
    settle();
    xcb_ungrab_pointer(x().get(), XCB_CURRENT_TIME);
    x().roundTrip();
    settle();

    EXPECT_THAT(content_.events, ElementsAre("entered"));
}

TEST_F(SurfacePointer, IsExitedOnceByADragThatEndsOutside) {
    start();

    moveTo(110, 600);
    press();
    moveTo(700, 100);
    release();

    EXPECT_THAT(content_.events, ElementsAre("entered", "down 10,20", "exited", "dragged 600,-480", "up"));
}

TEST_F(SurfacePointer, ShowsTheCursorOfEachRegion) {
    start();
    surface_->setCursorRegions(
        {{.rect = {.x = 0, .y = 0, .width = 100, .height = 120}, .shape = CursorShape::resizeLeftRight},
         {.rect = {.x = 50, .y = 0, .width = 50, .height = 120}, .shape = CursorShape::pointingHand}});

    moveTo(110, 600);
    const auto resize = cursor();
    moveTo(160, 600);
    const auto hand = cursor();
    moveTo(250, 600);
    const auto arrow = cursor();
    moveTo(120, 600);

    EXPECT_NE(resize, hand);
    EXPECT_NE(hand, arrow);
    EXPECT_NE(arrow, resize);
    EXPECT_EQ(cursor(), resize);
}

TEST_F(SurfacePointer, ChangesTheCursorUnderAStillPointerWithItsRegions) {
    start();
    moveTo(110, 600);
    const auto arrow = cursor();

    surface_->setCursorRegions(
        {{.rect = {.x = 0, .y = 0, .width = 100, .height = 120}, .shape = CursorShape::pointingHand}});
    settle();

    EXPECT_NE(cursor(), arrow);
}

TEST_F(SurfacePointer, KeepsTheCursorOfADragUntilItEnds) {
    start();
    surface_->setCursorRegions(
        {{.rect = {.x = 0, .y = 0, .width = 100, .height = 120}, .shape = CursorShape::resizeLeftRight}});
    moveTo(110, 600);
    const auto resize = cursor();

    press();
    moveTo(250, 600);
    EXPECT_EQ(cursor(), resize);

    release();
    EXPECT_NE(cursor(), resize);
}

TEST_F(SurfacePointer, TellsEachOfTwoSurfacesItsOwn) {
    start();
    RecordingContent other;
    const auto second = makeSurface(other, {.x = 200, .y = 100, .width = 200, .height = 120});
    second->show();
    settle();

    moveTo(110, 600);
    moveTo(250, 600);
    press();
    release();

    EXPECT_THAT(content_.events, ElementsAre("entered", "exited"));
    EXPECT_THAT(other.events, ElementsAre("entered", "down 50,20", "up"));
}

}  // namespace
}  // namespace pallwick::x11
