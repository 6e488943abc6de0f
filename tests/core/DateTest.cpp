#include <PallwickMacCore/Models/Date.h>
#include <gtest/gtest.h>

#include <ctime>

namespace pallwick {
namespace {

TEST(Date, CountsSecondsFromTheStartOf2001) {
    constexpr double unixSecondsOf2001 = 978307200;

    const auto before = static_cast<double>(std::time(nullptr)) - unixSecondsOf2001;
    const Date now = Date::now();
    const auto after = static_cast<double>(std::time(nullptr)) - unixSecondsOf2001;

    EXPECT_GE(now.secondsSinceReferenceDate, before - 1);
    EXPECT_LE(now.secondsSinceReferenceDate, after + 1);
}

TEST(Date, OrdersByTime) {
    EXPECT_LT(Date{-0.5}, Date{0.25});
}

}  // namespace
}  // namespace pallwick
