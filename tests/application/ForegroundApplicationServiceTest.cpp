#include <PallwickMac/Platform/Fake/FakePlatform.h>
#include <PallwickMac/Services/ForegroundApplicationService.h>

#include <gtest/gtest.h>

namespace pallwick {
namespace {

TEST(ForegroundApplicationService, KnowsNothingWhenNoApplicationIsFrontmost) {
    const FakePlatform platform;
    const ForegroundApplicationService service(platform);

    EXPECT_EQ(service.currentBundleID(), std::nullopt);
    EXPECT_EQ(service.currentProcessID(), std::nullopt);
}

TEST(ForegroundApplicationService, TellsTheFrontmostApplication) {
    FakePlatform platform;
    const ForegroundApplicationService service(platform);
    platform.setFrontmostApplication(FrontmostApplication{.processID = 417, .bundleID = "org.example.Nova"});

    EXPECT_EQ(service.currentBundleID(), "org.example.Nova");
    EXPECT_EQ(service.currentProcessID(), 417);
}

TEST(ForegroundApplicationService, KnowsTheProcessOfAnApplicationWithoutAnIdentifier) {
    FakePlatform platform;
    const ForegroundApplicationService service(platform);
    platform.setFrontmostApplication(FrontmostApplication{.processID = 417, .bundleID = std::nullopt});

    EXPECT_EQ(service.currentBundleID(), std::nullopt);
    EXPECT_EQ(service.currentProcessID(), 417);
}

TEST(ForegroundApplicationService, AsksThePlatformAfreshAtEveryCall) {
    FakePlatform platform;
    const ForegroundApplicationService service(platform);
    platform.setFrontmostApplication(FrontmostApplication{.processID = 1, .bundleID = "org.example.First"});
    ASSERT_EQ(service.currentProcessID(), 1);

    platform.setFrontmostApplication(FrontmostApplication{.processID = 2, .bundleID = "org.example.Second"});

    EXPECT_EQ(service.currentBundleID(), "org.example.Second");
    EXPECT_EQ(service.currentProcessID(), 2);
}

}  // namespace
}  // namespace pallwick
