#include <PallwickMac/Platform/FrameBudget.h>
#include <gtest/gtest.h>

namespace pallwick {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

FrameBudget afterFramesOf(FrameBudget::Duration cost, int count) {
    FrameBudget budget;
    for (int i = 0; i < count; ++i) {
        budget.note(cost);
    }
    return budget;
}

TEST(FrameBudget, BeginsWithThirtyFramesASecond) {
    EXPECT_EQ(FrameBudget().interval(), microseconds(33'333));
}

TEST(FrameBudget, LeavesCheapFramesAtThirtyASecond) {
    EXPECT_EQ(afterFramesOf(microseconds(1), 1).interval(), microseconds(33'333));
    EXPECT_EQ(afterFramesOf(microseconds(500), 100).interval(), microseconds(33'333));
}

TEST(FrameBudget, SpendsOneSixtyFourthOfTheTimeOnDearFrames) {
    EXPECT_EQ(afterFramesOf(milliseconds(1), 1).interval(), milliseconds(64));
    EXPECT_EQ(afterFramesOf(milliseconds(2), 100).interval(), milliseconds(128));
}

TEST(FrameBudget, DrawsFiveFramesASecondHoweverDearTheyAre) {
    EXPECT_EQ(afterFramesOf(milliseconds(50), 1).interval(), milliseconds(200));
}

TEST(FrameBudget, TakesLittleNoticeOfOneFrameThatWasInterrupted) {
    FrameBudget budget = afterFramesOf(milliseconds(1), 10);

    budget.note(milliseconds(2000));

    EXPECT_LT(budget.interval(), milliseconds(82));
}

TEST(FrameBudget, FollowsAChangeThatLasts) {
    FrameBudget budget = afterFramesOf(milliseconds(3), 10);

    for (int i = 0; i < 100; ++i) {
        budget.note(milliseconds(1));
    }

    EXPECT_GE(budget.interval(), milliseconds(64));
    EXPECT_LT(budget.interval(), milliseconds(65));
}

}  // namespace
}  // namespace pallwick
