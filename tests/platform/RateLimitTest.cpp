#include <PallwickMac/Platform/RateLimit.h>
#include <gtest/gtest.h>

namespace pallwick {
namespace {

using std::chrono::milliseconds;

constexpr RateLimit::Clock::time_point start{std::chrono::hours(1)};

TEST(RateLimit, LetsABurstThroughAtOnce) {
    RateLimit limit(milliseconds(8), 3);

    limit.spend(start);
    limit.spend(start);

    EXPECT_EQ(limit.wait(start), milliseconds(0));
}

TEST(RateLimit, LetsOneThroughInEveryIntervalAfterABurst) {
    RateLimit limit(milliseconds(8), 3);
    limit.spend(start);
    limit.spend(start);
    limit.spend(start);

    EXPECT_EQ(limit.wait(start), milliseconds(8));
    EXPECT_EQ(limit.wait(start + milliseconds(5)), milliseconds(3));
    EXPECT_EQ(limit.wait(start + milliseconds(8)), milliseconds(0));

    limit.spend(start + milliseconds(8));
    EXPECT_EQ(limit.wait(start + milliseconds(8)), milliseconds(8));
}

TEST(RateLimit, GivesTheBurstBackAfterAPause) {
    RateLimit limit(milliseconds(8), 2);
    limit.spend(start);
    limit.spend(start);

    const auto later = start + milliseconds(1000);
    limit.spend(later);

    EXPECT_EQ(limit.wait(later), milliseconds(0));
    limit.spend(later);
    EXPECT_EQ(limit.wait(later), milliseconds(8));
}

TEST(RateLimit, NeverLetsMoreThanTheBurstThroughAtOnce) {
    RateLimit limit(milliseconds(8), 1);

    limit.spend(start);

    EXPECT_EQ(limit.wait(start), milliseconds(8));
}

TEST(RateLimit, MakesNobodyWaitLongerForActionsThatDidNotWait) {
    RateLimit limit(milliseconds(8), 2);
    for (int i = 0; i < 10; ++i) {
        limit.spend(start);
    }

    EXPECT_EQ(limit.wait(start), milliseconds(8));
}

TEST(RateLimit, KeepsWhatIsLeftOfABurstAtAnotherPace) {
    RateLimit limit(milliseconds(8), 4);
    limit.spend(start);
    limit.spend(start);

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
    RateLimit limit(milliseconds(8), 2);
    limit.spend(start);

    const auto later = start + milliseconds(1000);
    limit.setInterval(milliseconds(80), later);

    limit.spend(later);
    EXPECT_EQ(limit.wait(later), milliseconds(0));
    limit.spend(later);
    EXPECT_EQ(limit.wait(later), milliseconds(80));
}

}  // namespace
}  // namespace pallwick
