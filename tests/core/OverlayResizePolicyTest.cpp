#include <PallwickMacCore/Models/OverlayResizePolicy.h>
#include <gtest/gtest.h>

namespace pallwick {
namespace {

constexpr Rect frame{.x = 100, .y = 100, .width = 200, .height = 100};

TEST(OverlayResizePolicy, MovesTheRightAndBottomEdgesWithThePointer) {
    const Rect resized = OverlayResizePolicy::resizedFrame(frame, {.x = 30, .y = -20});

    EXPECT_EQ(resized, (Rect{.x = 100, .y = 80, .width = 230, .height = 120}));
    EXPECT_EQ(resized.maxY(), 200);
}

TEST(OverlayResizePolicy, StopsAtTheMinimumSizeBelowTheSameTopEdge) {
    const Rect resized = OverlayResizePolicy::resizedFrame(frame, {.x = -500, .y = 500});

    EXPECT_EQ(resized, (Rect{.x = 100, .y = 160, .width = 120, .height = 40}));
    EXPECT_EQ(resized.maxY(), 200);
}

TEST(OverlayResizePolicy, LeavesALargeEnoughFrameAloneWhenNothingMoved) {
    EXPECT_EQ(OverlayResizePolicy::resizedFrame(frame, Point()), frame);
}

TEST(OverlayResizePolicy, EnlargesATooSmallFrameAtOnceKeepingItsTopLeftCorner) {
    constexpr Rect small{.x = 10, .y = 20, .width = 30, .height = 15};

    const Rect resized = OverlayResizePolicy::resizedFrame(small, Point());

    EXPECT_EQ(resized, (Rect{.x = 10, .y = -5, .width = 120, .height = 40}));
}

TEST(OverlayResizePolicy, DoesNotRound) {
    const Rect resized = OverlayResizePolicy::resizedFrame(frame, {.x = 0.25, .y = -0.5});

    EXPECT_EQ(resized, (Rect{.x = 100, .y = 99.5, .width = 200.25, .height = 100.5}));
}

TEST(OverlayResizePolicy, MeasuresAnInvertedFrameByItsExtentAndItsUpperEdge) {
    constexpr Rect inverted{.x = 300, .y = 200, .width = -200, .height = -100};

    const Rect resized = OverlayResizePolicy::resizedFrame(inverted, {.x = 10, .y = 0});

    EXPECT_EQ(resized, (Rect{.x = 300, .y = 100, .width = 210, .height = 100}));
}

}  // namespace
}  // namespace pallwick
