#include "RecordingPanel.h"
#include "SampleRecords.h"

#include <PallwickMacCore/Services/OverlayWindowController.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <thread>

namespace pallwick {
namespace {

using test::overlayOf;
using test::uuidOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class OverlayWindowControllerTest : public testing::Test {
protected:
    test::PanelJournal journal_;
    OverlayWindowController controller_{test::recordingFactory(journal_)};
};

TEST_F(OverlayWindowControllerTest, StartsWithoutPanels) {
    EXPECT_THAT(controller_.visibleOverlayIDs(), IsEmpty());
    EXPECT_EQ(controller_.panel(uuidOf('A')), nullptr);
    EXPECT_THAT(journal_.calls, IsEmpty());
}

TEST_F(OverlayWindowControllerTest, MakesUpdatesAndShowsEachPanelInTheOrderOfTheList) {
    controller_.sync({overlayOf('B'), overlayOf('A')}, true, std::nullopt);

    EXPECT_THAT(journal_.calls, ElementsAre("B make", "B edit", "B show", "A make", "A edit", "A show"));
}

TEST_F(OverlayWindowControllerTest, OnlyUpdatesAndShowsPanelsItAlreadyHas) {
    controller_.sync({overlayOf('A'), overlayOf('B')}, true, std::nullopt);
    journal_.calls.clear();

    controller_.sync({overlayOf('A'), overlayOf('B')}, false, std::nullopt);

    EXPECT_THAT(journal_.calls, ElementsAre("A lock", "A show", "B lock", "B show"));
    EXPECT_EQ(journal_.panels.size(), 2U);
}

TEST_F(OverlayWindowControllerTest, HandsThePanelTheOverlaysCurrentState) {
    BlurOverlay overlay = overlayOf('A');
    controller_.sync({overlay}, true, std::nullopt);
    overlay.shape = OverlayShape::circle;

    controller_.sync({overlay}, true, std::nullopt);

    EXPECT_EQ(journal_.panel(0)->shown, overlay);
}

TEST_F(OverlayWindowControllerTest, ClosesAVanishedOverlaysPanelOnceAndBeforeAnyUpdate) {
    controller_.sync({overlayOf('A'), overlayOf('B'), overlayOf('C')}, true, std::nullopt);
    journal_.calls.clear();

    controller_.sync({overlayOf('A'), overlayOf('C'), overlayOf('D')}, true, std::nullopt);

    EXPECT_THAT(journal_.calls,
                ElementsAre("B close", "A edit", "A show", "C edit", "C show", "D make", "D edit", "D show"));
    EXPECT_EQ(controller_.panel(uuidOf('B')), nullptr);
    EXPECT_TRUE(journal_.panels.at(1).expired());
}

TEST_F(OverlayWindowControllerTest, ClosesEveryPanelForAnEmptyList) {
    controller_.sync({overlayOf('A'), overlayOf('B')}, true, std::nullopt);
    journal_.calls.clear();

    controller_.sync({}, true, std::nullopt);

    EXPECT_THAT(journal_.calls, UnorderedElementsAre("A close", "B close"));
    EXPECT_THAT(controller_.visibleOverlayIDs(), IsEmpty());
}

TEST_F(OverlayWindowControllerTest, GivesTwoRecordsWithOneIdOnePanelAndTheLaterState) {
    BlurOverlay later = overlayOf('A');
    later.shape = OverlayShape::circle;

    controller_.sync({overlayOf('A'), later}, true, std::nullopt);

    EXPECT_THAT(journal_.calls, ElementsAre("A make", "A edit", "A show", "A edit", "A show"));
    EXPECT_EQ(journal_.panel(0)->shown, later);
}

TEST_F(OverlayWindowControllerTest, KeepsAHiddenPanel) {
    BlurOverlay overlay = test::attachedOverlay();
    controller_.sync({overlay}, true, 512);
    const auto panel = controller_.panel(uuidOf('A'));

    controller_.sync({overlay}, true, 513);

    EXPECT_EQ(controller_.panel(uuidOf('A')), panel);
    EXPECT_THAT(journal_.calls, ElementsAre("A make", "A edit", "A show", "A edit", "A hide"));
}

struct Visibility {
    const char* name;
    OverlayAnchor anchor;
    bool attached;
    std::optional<std::int32_t> active;
    bool editMode;
    const char* decision;
};

class OverlayWindowControllerVisibility : public testing::TestWithParam<Visibility> {};

TEST_P(OverlayWindowControllerVisibility, FollowsTheAttachedWindowsOwner) {
    test::PanelJournal journal;
    OverlayWindowController controller(test::recordingFactory(journal));
    BlurOverlay overlay = test::attachedOverlay();
    overlay.anchor = GetParam().anchor;
    if (!GetParam().attached) {
        overlay.windowAttachment.reset();
    }

    controller.sync({overlay}, GetParam().editMode, GetParam().active);

    EXPECT_EQ(journal.calls.back(), GetParam().decision);
}

constexpr auto screen = OverlayAnchor::screen;
constexpr auto application = OverlayAnchor::application;
constexpr auto window = OverlayAnchor::window;

INSTANTIATE_TEST_SUITE_P(
    All, OverlayWindowControllerVisibility,
    testing::Values(Visibility{"OwnerInFront", window, true, 512, false, "A show"},
                    Visibility{"AnotherInFront", window, true, 513, false, "A hide"},
                    Visibility{"NobodyInFront", window, true, std::nullopt, false, "A hide"},
                    Visibility{"AnotherInFrontWhileEditing", window, true, 513, true, "A hide"},
                    Visibility{"NobodyInFrontWhileEditing", window, true, std::nullopt, true, "A hide"},
                    Visibility{"WindowWithoutAttachment", window, false, 513, false, "A show"},
                    Visibility{"WindowWithoutAttachmentAndNobody", window, false, std::nullopt, false, "A show"},
                    Visibility{"Screen", screen, false, 513, false, "A show"},
                    Visibility{"ScreenAndNobody", screen, false, std::nullopt, false, "A show"},
                    Visibility{"ScreenWithALeftoverAttachment", screen, true, 513, false, "A show"},
                    Visibility{"Application", application, false, 513, false, "A show"},
                    Visibility{"ApplicationAndNobody", application, false, std::nullopt, false, "A show"},
                    Visibility{"ApplicationWithAnAttachment", application, true, 513, false, "A show"}),
    [](const auto& instance) { return instance.param.name; });

TEST_F(OverlayWindowControllerTest, DoesNotTakeProcessZeroForNobody) {
    BlurOverlay overlay = test::attachedOverlay();
    overlay.windowAttachment = test::attachmentOwnedBy(0);

    controller_.sync({overlay}, false, std::nullopt);

    EXPECT_EQ(journal_.calls.back(), "A hide");
}

TEST_F(OverlayWindowControllerTest, ListsPanelsByTheTextOfTheIdHiddenOnesIncluded) {
    // Enough of them that no order of a hash table is this one by chance.
    const std::string digits = "F3A90C7E15B82D64";
    std::vector<BlurOverlay> overlays;
    std::ranges::transform(digits, std::back_inserter(overlays), overlayOf);
    overlays.at(2) = test::attachedOverlay();

    controller_.sync(overlays, false, std::nullopt);

    std::vector<std::string> listed;
    std::ranges::transform(controller_.visibleOverlayIDs(), std::back_inserter(listed), &UUID::uuidString);
    std::vector<std::string> expected;
    std::ranges::transform(overlays, std::back_inserter(expected),
                           [](const BlurOverlay& overlay) { return overlay.id().uuidString(); });
    std::ranges::sort(expected);
    EXPECT_EQ(listed, expected);
}

TEST_F(OverlayWindowControllerTest, PassesItsCallbacksToEveryPanel) {
    std::vector<std::pair<UUID, Rect>> frames;
    std::vector<UUID> deletions;
    OverlayWindowController controller(
        test::recordingFactory(journal_), [&](const UUID& id, const Rect& frame) { frames.emplace_back(id, frame); },
        [&](const UUID& id) { deletions.push_back(id); });
    constexpr Rect frame{.x = 1, .y = 2, .width = 3, .height = 4};

    controller.sync({overlayOf('A'), overlayOf('B')}, true, std::nullopt);
    journal_.panel(0)->onFrameChanged(uuidOf('A'), frame);
    journal_.panel(1)->onDeleteRequested(uuidOf('B'));

    EXPECT_THAT(frames, ElementsAre(std::pair(uuidOf('A'), frame)));
    EXPECT_THAT(deletions, ElementsAre(uuidOf('B')));
}

TEST_F(OverlayWindowControllerTest, HandsOutCallbacksThatDoNothingByDefault) {
    controller_.sync({overlayOf('A')}, true, std::nullopt);
    journal_.calls.clear();

    journal_.panel(0)->onFrameChanged(uuidOf('A'), Rect());
    journal_.panel(0)->onDeleteRequested(uuidOf('A'));

    EXPECT_THAT(journal_.calls, IsEmpty());
    EXPECT_THAT(controller_.visibleOverlayIDs(), ElementsAre(uuidOf('A')));
}

TEST_F(OverlayWindowControllerTest, ClosesAllPanelsAndForgetsThem) {
    controller_.sync({overlayOf('A'), overlayOf('B')}, true, std::nullopt);
    journal_.calls.clear();

    controller_.closeAll();

    EXPECT_THAT(journal_.calls, UnorderedElementsAre("A close", "B close"));
    EXPECT_THAT(controller_.visibleOverlayIDs(), IsEmpty());
    EXPECT_TRUE(journal_.panels.at(0).expired());
}

TEST_F(OverlayWindowControllerTest, MakesPanelsAnewAfterClosingAll) {
    controller_.sync({overlayOf('A')}, true, std::nullopt);
    controller_.closeAll();
    journal_.calls.clear();

    controller_.sync({overlayOf('A')}, true, std::nullopt);

    EXPECT_THAT(journal_.calls, ElementsAre("A make", "A edit", "A show"));
}

TEST_F(OverlayWindowControllerTest, SurvivesAPanelThatCallsBackWhileAllAreClosed) {
    controller_.sync({overlayOf('A'), overlayOf('B'), overlayOf('C')}, true, std::nullopt);
    const auto closeTheRest = [this] { controller_.sync({}, true, std::nullopt); };
    journal_.panel(0)->onClose = closeTheRest;
    journal_.panel(1)->onClose = closeTheRest;
    journal_.panel(2)->onClose = closeTheRest;

    controller_.closeAll();

    EXPECT_THAT(controller_.visibleOverlayIDs(), IsEmpty());
}

TEST_F(OverlayWindowControllerTest, KeepsAPanelAliveWhileItIsClosed) {
    controller_.sync({overlayOf('A')}, true, std::nullopt);
    bool alive = false;
    journal_.panel(0)->onClose = [&] { alive = !journal_.panels.at(0).expired(); };

    controller_.sync({}, true, std::nullopt);

    EXPECT_TRUE(alive);
}

TEST_F(OverlayWindowControllerTest, DropsItsPanelsWithoutClosingThem) {
    auto controller = std::make_unique<OverlayWindowController>(test::recordingFactory(journal_));
    controller->sync({overlayOf('A')}, true, std::nullopt);
    const auto kept = controller->panel(uuidOf('A'));
    journal_.calls.clear();

    controller.reset();

    EXPECT_THAT(journal_.calls, IsEmpty());
    EXPECT_EQ(kept.use_count(), 1);
}

struct ForeignCall {
    const char* name;
    void (*make)(OverlayWindowController&);
};

class OverlayWindowControllerDeathTest : public testing::TestWithParam<ForeignCall> {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_P(OverlayWindowControllerDeathTest, StopsTheProgramOnAForeignThread) {
    test::PanelJournal journal;
    OverlayWindowController controller(test::recordingFactory(journal));
    controller.sync({overlayOf('A'), overlayOf('B')}, true, std::nullopt);

    EXPECT_DEATH(std::thread([&] { GetParam().make(controller); }).join(), "off its own thread");
}

INSTANTIATE_TEST_SUITE_P(
    Calls, OverlayWindowControllerDeathTest,
    testing::Values(
        ForeignCall{"sync", [](OverlayWindowController& controller) { controller.sync({}, true, std::nullopt); }},
        ForeignCall{"closeAll", [](OverlayWindowController& controller) { controller.closeAll(); }},
        ForeignCall{"visibleOverlayIDs",
                    [](OverlayWindowController& controller) { static_cast<void>(controller.visibleOverlayIDs()); }},
        ForeignCall{"panel",
                    [](OverlayWindowController& controller) { static_cast<void>(controller.panel(uuidOf('A'))); }}),
    [](const auto& instance) { return instance.param.name; });

}  // namespace
}  // namespace pallwick
