#include <PallwickMac/Platform/ActivationToken.h>

#include <gmock/gmock.h>

#include <cstdlib>

namespace pallwick {
namespace {

TEST(ActivationToken, HasTheTimeThatAStartupIDEndsWith) {
    const ActivationToken token = ActivationToken::ofStartupID("panel-1234-host-app-0_TIME987654");

    EXPECT_EQ(token.id, "panel-1234-host-app-0_TIME987654");
    EXPECT_EQ(token.time, 987654U);
}

class IDWithoutTime : public ::testing::TestWithParam<const char*> {};

TEST_P(IDWithoutTime, HasNone) {
    EXPECT_EQ(ActivationToken::ofStartupID(GetParam()), (ActivationToken{.id = GetParam(), .time = 0}));
}

INSTANTIATE_TEST_SUITE_P(IDs, IDWithoutTime,
                         ::testing::Values("", "a", "_TIME", "a_TIME12x", "a_TIME-1", "a_TIME99999999999", "a_time1"));

TEST(ActivationToken, OfAStartIsTheStartupIDBeforeAnyOther) {
    ::setenv("XDG_ACTIVATION_TOKEN", "token", 1);
    ::setenv("DESKTOP_STARTUP_ID", "id_TIME5", 1);
    EXPECT_EQ(ActivationToken::ofThisStart(), (ActivationToken{.id = "id_TIME5", .time = 5}));

    ::setenv("DESKTOP_STARTUP_ID", "", 1);
    EXPECT_EQ(ActivationToken::ofThisStart(), (ActivationToken{.id = "token", .time = 0}));

    ::unsetenv("DESKTOP_STARTUP_ID");
    ::unsetenv("XDG_ACTIVATION_TOKEN");
    EXPECT_EQ(ActivationToken::ofThisStart(), ActivationToken());
}

}  // namespace
}  // namespace pallwick
