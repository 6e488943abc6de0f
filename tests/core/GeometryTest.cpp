#include <PallwickMacCore/Models/Geometry.h>
#include <gtest/gtest.h>

namespace pallwick {
namespace {

constexpr Rect inverted{.x = 100, .y = 100, .width = -50, .height = -20};

TEST(Rect, StandardizedMovesTheOriginToTheMinimumCorner) {
    EXPECT_EQ(inverted.standardized(), (Rect{.x = 50, .y = 80, .width = 50, .height = 20}));
}

TEST(Rect, StandardizedLeavesAnOrdinaryRectangleAlone) {
    constexpr Rect rect{.x = -3, .y = 4, .width = 5, .height = 0};

    EXPECT_EQ(rect.standardized(), rect);
}

TEST(Rect, AnswersForTheCoveredAreaWhateverTheSigns) {
    EXPECT_EQ(inverted.minX(), 50);
    EXPECT_EQ(inverted.maxX(), 100);
    EXPECT_EQ(inverted.minY(), 80);
    EXPECT_EQ(inverted.maxY(), 100);
    EXPECT_EQ(inverted.midX(), 75);
    EXPECT_EQ(inverted.midY(), 90);
    EXPECT_EQ(inverted.extent(), (Size{.width = 50, .height = 20}));
}

TEST(Rect, DoesNotEqualItsStandardizedForm) {
    EXPECT_NE(inverted, inverted.standardized());
}

TEST(Rect, ContainsItsMinimumEdgesAndNotItsMaximumEdges) {
    constexpr Rect rect{.x = 10, .y = 20, .width = 30, .height = 40};

    EXPECT_TRUE(rect.contains({.x = 10, .y = 20}));
    EXPECT_TRUE(rect.contains({.x = 39.5, .y = 59.5}));
    EXPECT_FALSE(rect.contains({.x = 40, .y = 30}));
    EXPECT_FALSE(rect.contains({.x = 20, .y = 60}));
}

TEST(Rect, InsetMovesEveryEdgeInward) {
    constexpr Rect rect{.x = 10, .y = 20, .width = 30, .height = 40};

    EXPECT_EQ(rect.inset(4), (Rect{.x = 14, .y = 24, .width = 22, .height = 32}));
    EXPECT_EQ(rect.inset(-1), (Rect{.x = 9, .y = 19, .width = 32, .height = 42}));
}

}  // namespace
}  // namespace pallwick
