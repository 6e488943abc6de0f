#include <PallwickMac/Platform/Fake/FakePlatform.h>
#include <PallwickMac/Services/WindowTrackingService.h>

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

namespace pallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

WindowRecord record(std::uint32_t number, const std::string& owner = "Nova", const std::string& title = "Notes") {
    return {.layer = 0,
            .number = number,
            .ownerProcessID = 512,
            .ownerName = owner,
            .title = title,
            .bounds = Rect{.x = 100, .y = 50, .width = 400, .height = 300}};
}

WindowRecord sized(double width, double height) {
    WindowRecord window = record(1);
    window.bounds = Rect{.x = 0, .y = 0, .width = width, .height = height};
    return window;
}

class WindowTrackingServiceTest : public ::testing::Test {
protected:
    [[nodiscard]] std::vector<std::uint32_t> listed(std::vector<WindowRecord> records) {
        platform.setOnScreenWindows(std::move(records));
        std::vector<std::uint32_t> numbers;
        for (const TrackedWindow& window : service.visibleWindows()) {
            numbers.push_back(window.id);
        }
        return numbers;
    }

    [[nodiscard]] std::vector<std::pair<std::string, std::string>> listedTexts(std::vector<WindowRecord> records) {
        platform.setOnScreenWindows(std::move(records));
        std::vector<std::pair<std::string, std::string>> texts;
        for (const TrackedWindow& window : service.visibleWindows()) {
            texts.emplace_back(window.ownerName, window.title);
        }
        return texts;
    }

    FakePlatform platform;
    const WindowTrackingService service{platform};
};

TEST_F(WindowTrackingServiceTest, ListsAnOrdinaryWindowWithEverythingKnownOfIt) {
    platform.setOnScreenWindows({{record(7, "Nova", "Notes")}});

    EXPECT_THAT(service.visibleWindows(),
                ElementsAre(TrackedWindow{.id = 7,
                                          .ownerPID = 512,
                                          .ownerName = "Nova",
                                          .title = "Notes",
                                          .frame = {.x = 100, .y = 550, .width = 400, .height = 300}}));
}

TEST_F(WindowTrackingServiceTest, ListsNothingWhereTheDesktopDoesNotAnswer) {
    platform.setOnScreenWindows(std::nullopt);

    EXPECT_THAT(service.visibleWindows(), IsEmpty());
    EXPECT_EQ(service.window(7), std::nullopt);
}

TEST_F(WindowTrackingServiceTest, LeavesOutEveryOtherLayer) {
    WindowRecord above = record(1);
    above.layer = 3;
    WindowRecord below = record(2);
    below.layer = -1;
    WindowRecord unknown = record(3);
    unknown.layer = std::nullopt;

    EXPECT_THAT(listed({above, below, unknown, record(4)}), ElementsAre(4));
}

TEST_F(WindowTrackingServiceTest, LeavesOutRecordsThatLackWhatItNeeds) {
    WindowRecord numberless = record(1);
    numberless.number = std::nullopt;
    WindowRecord ownerless = record(2);
    ownerless.ownerProcessID = std::nullopt;
    WindowRecord boundless = record(3);
    boundless.bounds = std::nullopt;

    EXPECT_THAT(listed({numberless, ownerless, boundless, record(4)}), ElementsAre(4));
}

TEST_F(WindowTrackingServiceTest, LeavesOutTheProgramsOwnWindows) {
    WindowRecord own = record(1);
    own.ownerProcessID = static_cast<std::int32_t>(QCoreApplication::applicationPid());

    EXPECT_THAT(listed({own, record(2)}), ElementsAre(2));
    EXPECT_EQ(service.window(1), std::nullopt);
}

TEST_F(WindowTrackingServiceTest, LeavesOutWhatIsTooSmallToBeAWindow) {
    EXPECT_THAT(listed({sized(80, 40)}), ElementsAre(1));
    EXPECT_THAT(listed({sized(79, 300)}), IsEmpty());
    EXPECT_THAT(listed({sized(79.9, 300)}), IsEmpty());
    EXPECT_THAT(listed({sized(300, 39)}), IsEmpty());
    EXPECT_THAT(listed({sized(300, 39.9)}), IsEmpty());
    EXPECT_THAT(listed({sized(std::numeric_limits<double>::quiet_NaN(), 300)}), IsEmpty());
}

TEST_F(WindowTrackingServiceTest, CallsAnOwnerWithoutANameUnknown) {
    WindowRecord nameless = record(1, "", "A");
    nameless.ownerName = std::nullopt;

    EXPECT_THAT(listedTexts({record(2, "Vim", "B"), nameless, record(3, "Tidy", "C")}),
                ElementsAre(Pair("Tidy", "C"), Pair("Unknown", "A"), Pair("Vim", "B")));
}

TEST_F(WindowTrackingServiceTest, KeepsWindowsWithoutATitle) {
    WindowRecord untitled = record(1);
    untitled.title = std::nullopt;

    EXPECT_THAT(listedTexts({record(2, "Nova", "A"), untitled}), ElementsAre(Pair("Nova", ""), Pair("Nova", "A")));
}

TEST_F(WindowTrackingServiceTest, SortsByOwnerAndThenByTitle) {
    EXPECT_THAT(listedTexts({record(1, "Nova", "B"), record(2, "Nova", "A"), record(3, "Mint", "Z")}),
                ElementsAre(Pair("Mint", "Z"), Pair("Nova", "A"), Pair("Nova", "B")));
}

TEST_F(WindowTrackingServiceTest, SortsCapitalsBeforeSmallLetters) {
    EXPECT_THAT(listedTexts({record(1, "alpha", ""), record(2, "Zeta", "")}),
                ElementsAre(Pair("Zeta", ""), Pair("alpha", "")));
}

TEST_F(WindowTrackingServiceTest, SortsByScalarsAndNotByHalvesOfThem) {
    const std::string privateUse = "\uE000";
    const std::string face = "\U0001F600";

    EXPECT_THAT(listedTexts({record(1, face, ""), record(2, privateUse, "")}),
                ElementsAre(Pair(privateUse, ""), Pair(face, "")));
}

TEST_F(WindowTrackingServiceTest, SortsALetterAlikeWhetherItsAccentIsSeparateOrNot) {
    const std::string composed = "\u00C9clair";
    const std::string decomposed = "E\u0301clair";

    EXPECT_THAT(listedTexts({record(1, decomposed, "2"), record(2, composed, "1"), record(3, "Ez", "")}),
                ElementsAre(Pair("Ez", ""), Pair(composed, "1"), Pair(decomposed, "2")));
}

TEST_F(WindowTrackingServiceTest, KeepsWindowsThatReadAlikeInFrontToBackOrder) {
    EXPECT_THAT(listed({record(9), record(3), record(5), record(1)}), ElementsAre(9, 3, 5, 1));
}

TEST_F(WindowTrackingServiceTest, FlipsAboutTheTopOfAllScreensTogether) {
    platform.setScreens({{.frame = {.x = 0, .y = 0, .width = 1440, .height = 900}},
                         {.frame = {.x = 1440, .y = 300, .width = 1920, .height = 1080}}});
    platform.setOnScreenWindows({{record(1)}});

    EXPECT_EQ(service.window(1)->frame, (Rect{.x = 100, .y = 1030, .width = 400, .height = 300}));
}

TEST_F(WindowTrackingServiceTest, LeavesBoundsAsTheyAreWithoutAScreen) {
    platform.setScreens({});
    platform.setOnScreenWindows({{record(1)}});

    EXPECT_EQ(service.window(1)->frame, (Rect{.x = 100, .y = 50, .width = 400, .height = 300}));
}

TEST_F(WindowTrackingServiceTest, FindsOneWindowAsTheListHasIt) {
    platform.setOnScreenWindows({{record(1, "Nova"), record(2, "Mint"), record(3, "Zeta")}});

    EXPECT_EQ(service.window(2), service.visibleWindows()[0]);
    EXPECT_EQ(platform.singleWindowQueries(), 1);
}

TEST_F(WindowTrackingServiceTest, FindsOneWindowWithoutTheList) {
    platform.setOnScreenWindows({{record(1)}});

    static_cast<void>(service.window(1));

    EXPECT_EQ(platform.wholeListQueries(), 0);
}

TEST_F(WindowTrackingServiceTest, FindsNoWindowThatTheListDoesNotHave) {
    platform.setOnScreenWindows({{record(1), sized(10, 10)}});
    EXPECT_EQ(service.window(2), std::nullopt);

    platform.setOnScreenWindows({{sized(10, 10)}});
    EXPECT_EQ(service.window(1), std::nullopt);
}

}  // namespace
}  // namespace pallwick
