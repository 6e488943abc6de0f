#include <PallwickMac/Platform/RateLimit.h>
#include <gtest/gtest.h>

namespace pallwick {
namespace {

using std::chrono::milliseconds;

constexpr RateLimit::Clock::time_point start{std::chrono::hours(1)};

/// One action in eight milliseconds, after so many at once at `start`.
RateLimit afterActions(int count, int burst) {
    RateLimit limit(milliseconds(8), burst);
    for (int i = 0; i < count; ++i) {
        limit.spend(start);
    }
    return limit;
}

TEST(RateLimit, LetsABurstThroughAtOnce) {
    const RateLimit limit = afterActions(2, 3);

    EXPECT_EQ(limit.wait(start), milliseconds(0));
}

TEST(RateLimit, LetsOneThroughInEveryIntervalAfterABurst) {
    RateLimit limit = afterActions(3, 3);

    EXPECT_EQ(limit.wait(start), milliseconds(8));
    EXPECT_EQ(limit.wait(start + milliseconds(5)), milliseconds(3));
    EXPECT_EQ(limit.wait(start + milliseconds(8)), milliseconds(0));

    limit.spend(start + milliseconds(8));
    EXPECT_EQ(limit.wait(start + milliseconds(8)), milliseconds(8));
}

TEST(RateLimit, GivesTheBurstBackAfterAPause) {
    RateLimit limit = afterActions(2, 2);

    const auto later = start + milliseconds(1000);
    limit.spend(later);

    EXPECT_EQ(limit.wait(later), milliseconds(0));
    limit.spend(later);
    EXPECT_EQ(limit.wait(later), milliseconds(8));
}

TEST(RateLimit, NeverLetsMoreThanTheBurstThroughAtOnce) {
    const RateLimit limit = afterActions(1, 1);

    EXPECT_EQ(limit.wait(start), milliseconds(8));
}

TEST(RateLimit, MakesNobodyWaitLongerForActionsThatDidNotWait) {
    const RateLimit limit = afterActions(10, 2);

    EXPECT_EQ(limit.wait(start), milliseconds(8));
}

TEST(RateLimit, KeepsWhatIsLeftOfABurstAtAnotherPace) {
    RateLimit limit = afterActions(2, 4);

    limit.setInterval(milliseconds(80), start);

    limit.spend(start);
    EXPECT_EQ(limit.wait(start), milliseconds(0));
    limit.spend(start);
    EXPECT_EQ(limit.wait(start), milliseconds(80));
}

TEST(RateLimit, WaitsForNoLongerThanItsNewPace) {
    RateLimit limit(milliseconds(80), 1);
    limit.spend(start);

    limit.setInterval(milliseconds(8), start + milliseconds(40));

    EXPECT_EQ(limit.wait(start + milliseconds(40)), milliseconds(4));
}

TEST(RateLimit, GivesAWholeBurstAfterAPauseAndAnotherPace) {
    RateLimit limit = afterActions(1, 2);

    const auto later = start + milliseconds(1000);
    limit.setInterval(milliseconds(80), later);

    limit.spend(later);
    EXPECT_EQ(limit.wait(later), milliseconds(0));
    limit.spend(later);
    EXPECT_EQ(limit.wait(later), milliseconds(80));
}

}  // namespace
}  // namespace pallwick
