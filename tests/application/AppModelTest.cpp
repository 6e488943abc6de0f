#include "ViewTestSupport.h"

#include <QSignalSpy>

#include <utility>

namespace pallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AppModelTest : public ModelTest {
protected:
    void useScreens(std::vector<Screen> screens) { platform.setScreens(std::move(screens)); }
};

std::vector<UUID> identities(const AppModel& model) {
    std::vector<UUID> ids;
    for (const BlurOverlay& overlay : model.overlays()) {
        ids.push_back(overlay.id());
    }
    return ids;
}

TEST_F(AppModelTest, StartsWithNothingInEditModeAndReady) {
    EXPECT_THAT(model.overlays(), IsEmpty());
    EXPECT_EQ(model.selectedOverlayID(), std::nullopt);
    EXPECT_EQ(model.selectedOverlay(), nullptr);
    EXPECT_TRUE(model.editMode());
    EXPECT_EQ(model.statusText(), QStringLiteral("Ready"));
    EXPECT_THAT(platform.calls(), IsEmpty());
}

TEST_F(AppModelTest, SelectsTheOverlayItAdds) {
    model.addOverlay();
    model.addOverlay();

    ASSERT_EQ(model.overlays().size(), 2U);
    ASSERT_TRUE(model.selectedOverlay());
    EXPECT_EQ(model.selectedOverlay()->id(), model.overlays()[1].id());
    EXPECT_EQ(model.selectedOverlayID(), model.overlays()[1].id());
    EXPECT_EQ(model.statusText(), QStringLiteral("Overlay added"));
}

TEST_F(AppModelTest, TurnsEditModeOnWhenItAddsAnOverlay) {
    model.toggleEditMode();
    ASSERT_FALSE(model.editMode());

    model.addOverlay();

    EXPECT_TRUE(model.editMode());
    EXPECT_EQ(model.statusText(), QStringLiteral("Overlay added"));
}

TEST_F(AppModelTest, AddsARectangleOnTheScreenInTheDefaultStyle) {
    model.addOverlay();

    const BlurOverlay& overlay = model.overlays().front();
    EXPECT_EQ(overlay.style, BlurStyle());
    EXPECT_EQ(overlay.shape, OverlayShape::rectangle);
    EXPECT_EQ(overlay.anchor, OverlayAnchor::screen);
    EXPECT_EQ(overlay.windowAttachment, std::nullopt);
    EXPECT_EQ(overlay.displayID, 1U);
}

TEST_F(AppModelTest, CentresANewOverlayInTheVisibleAreaOfThePrimaryScreen) {
    useScreens({{.frame = {.x = 0, .y = 0, .width = 1440, .height = 900},
                 .visibleFrame = {.x = 0, .y = 25, .width = 1440, .height = 875},
                 .displayID = 7},
                {.frame = {.x = 1440, .y = 0, .width = 640, .height = 480},
                 .visibleFrame = {.x = 1440, .y = 0, .width = 640, .height = 480},
                 .displayID = 8}});

    model.addOverlay();

    EXPECT_EQ(model.overlays()[0].frame, (Rect{.x = 540, .y = 375, .width = 360, .height = 175}));
    EXPECT_EQ(model.overlays()[0].displayID, 7U);
}

TEST_F(AppModelTest, KeepsANewOverlayLargeEnoughOnASmallScreen) {
    useScreens({{.visibleFrame = {.x = 0, .y = 0, .width = 700, .height = 500}, .displayID = 7}});

    model.addOverlay();

    EXPECT_EQ(model.overlays()[0].frame, (Rect{.x = 240, .y = 190, .width = 220, .height = 120}));
}

TEST_F(AppModelTest, KeepsANewOverlaySmallEnoughOnALargeScreen) {
    useScreens({{.visibleFrame = {.x = -3840, .y = 100, .width = 3840, .height = 2160}, .displayID = 7}});

    model.addOverlay();

    EXPECT_EQ(model.overlays()[0].frame, (Rect{.x = -2100, .y = 1080, .width = 360, .height = 200}));
}

TEST_F(AppModelTest, SizesANewOverlayByTheScreenBetweenTheLimits) {
    useScreens({{.visibleFrame = {.x = 0, .y = 0, .width = 1000, .height = 800}, .displayID = 7}});

    model.addOverlay();

    EXPECT_DOUBLE_EQ(model.overlays()[0].frame.width, 280);
    EXPECT_DOUBLE_EQ(model.overlays()[0].frame.height, 160);
}

TEST_F(AppModelTest, AddsAnOverlayWithoutAScreen) {
    useScreens({});

    model.addOverlay();

    const Rect& frame = model.overlays()[0].frame;
    EXPECT_DOUBLE_EQ(frame.width, 358.4);
    EXPECT_DOUBLE_EQ(frame.height, 160);
    EXPECT_DOUBLE_EQ(frame.x, 460.8);
    EXPECT_DOUBLE_EQ(frame.y, 320);
}

TEST_F(AppModelTest, PutsAnOverlayOnDisplayZeroWithoutAScreen) {
    useScreens({});

    model.addOverlay();

    EXPECT_EQ(model.overlays()[0].displayID, 0U);
}

TEST_F(AppModelTest, PutsAnOverlayOnDisplayZeroOfAScreenWithoutANumber) {
    useScreens({{.visibleFrame = {.x = 0, .y = 0, .width = 1000, .height = 800}}});

    model.addOverlay();

    EXPECT_EQ(model.overlays()[0].displayID, 0U);
}

TEST_F(AppModelTest, ReadsTheScreensAfreshForEveryNewOverlay) {
    model.addOverlay();
    useScreens({{.visibleFrame = {.x = 0, .y = 0, .width = 700, .height = 500}, .displayID = 9}});

    model.addOverlay();

    EXPECT_EQ(model.overlays()[0].displayID, 1U);
    EXPECT_EQ(model.overlays()[1].displayID, 9U);
}

TEST_F(AppModelTest, LeavesOverlaysWhereTheyAreWhenScreensChange) {
    model.addOverlay();
    const std::vector<BlurOverlay> before = model.overlays();
    const NotificationLog log(model);

    useScreens({{.visibleFrame = {.x = 0, .y = 0, .width = 700, .height = 500}, .displayID = 9}});

    EXPECT_EQ(model.overlays(), before);
    EXPECT_THAT(log.names(), IsEmpty());
}

TEST_F(AppModelTest, SelectsTheFirstOverlayWhenAnyOtherIsRemoved) {
    addOverlays(3);
    const UUID first = idOf(1);
    const UUID third = idOf(3);
    model.setSelectedOverlayID(third);

    model.removeOverlay(idOf(2));

    EXPECT_THAT(identities(model), ElementsAre(first, third));
    EXPECT_EQ(model.selectedOverlayID(), first);
    EXPECT_EQ(model.statusText(), QStringLiteral("Overlay removed"));
}

TEST_F(AppModelTest, SelectsTheFirstOverlayWhenAnUnknownOneIsRemoved) {
    addOverlays(2);
    const std::vector<UUID> before = identities(model);

    model.removeOverlay(UUID::random());

    EXPECT_EQ(identities(model), before);
    EXPECT_EQ(model.selectedOverlayID(), before[0]);
    EXPECT_EQ(model.statusText(), QStringLiteral("Overlay removed"));
}

TEST_F(AppModelTest, ReportsARemovalFromAnEmptyList) {
    model.removeOverlay(UUID::random());

    EXPECT_EQ(model.selectedOverlayID(), std::nullopt);
    EXPECT_EQ(model.statusText(), QStringLiteral("Overlay removed"));
}

TEST_F(AppModelTest, HasNoSelectionOnceTheLastOverlayIsRemoved) {
    addOverlays(1);

    model.removeSelectedOverlay();

    EXPECT_THAT(model.overlays(), IsEmpty());
    EXPECT_EQ(model.selectedOverlayID(), std::nullopt);
    EXPECT_EQ(model.selectedOverlay(), nullptr);
}

TEST_F(AppModelTest, RemovesTheSelectedOverlayAndNoOther) {
    addOverlays(3);
    const UUID first = idOf(1);
    const UUID third = idOf(3);
    model.setSelectedOverlayID(idOf(2));

    model.removeSelectedOverlay();

    EXPECT_THAT(identities(model), ElementsAre(first, third));
    EXPECT_EQ(model.statusText(), QStringLiteral("Overlay removed"));
}

TEST_F(AppModelTest, RemovesTheFirstOverlayWhenTheSelectionIsStale) {
    addOverlays(2);
    const UUID second = idOf(2);
    model.setSelectedOverlayID(UUID::random());

    model.removeSelectedOverlay();

    EXPECT_THAT(identities(model), ElementsAre(second));
}

TEST_F(AppModelTest, DoesNothingToAnEmptySelection) {
    const NotificationLog log(model);

    model.removeSelectedOverlay();
    model.updateSelectedStyle(10, std::string("#FF0000"), 10, false);
    model.updateSelectedShape(OverlayShape::circle);

    EXPECT_THAT(log.names(), IsEmpty());
    EXPECT_EQ(model.statusText(), QStringLiteral("Ready"));
}

TEST_F(AppModelTest, ClearsListAndSelection) {
    addOverlays(2);

    model.clearOverlays();

    EXPECT_THAT(model.overlays(), IsEmpty());
    EXPECT_EQ(model.selectedOverlayID(), std::nullopt);
    EXPECT_EQ(model.statusText(), QStringLiteral("All overlays cleared"));
}

TEST_F(AppModelTest, ClearsAStaleSelectionOfAnEmptyList) {
    model.setSelectedOverlayID(UUID::random());

    model.clearOverlays();

    EXPECT_EQ(model.selectedOverlayID(), std::nullopt);
}

TEST_F(AppModelTest, SelectsQuietly) {
    addOverlays(2);
    const NotificationLog log(model);
    platform.clearCalls();

    model.select(model.overlays()[0]);

    EXPECT_EQ(model.selectedOverlayID(), idOf(1));
    EXPECT_EQ(model.statusText(), QStringLiteral("Overlay added"));
    EXPECT_THAT(log.names(), ElementsAre("selectedOverlayID"));
    EXPECT_THAT(platform.calls(), IsEmpty());
}

TEST_F(AppModelTest, PublishesADirectlyWrittenSelectionAndDoesNothingElse) {
    addOverlays(2);
    const NotificationLog log(model);
    platform.clearCalls();

    model.setSelectedOverlayID(std::nullopt);

    EXPECT_EQ(model.selectedOverlayID(), std::nullopt);
    EXPECT_THAT(log.names(), ElementsAre("selectedOverlayID"));
    EXPECT_THAT(platform.calls(), IsEmpty());
}

TEST_F(AppModelTest, FallsBackToTheFirstOverlayWithoutASelection) {
    addOverlays(2);

    model.setSelectedOverlayID(std::nullopt);

    ASSERT_TRUE(model.selectedOverlay());
    EXPECT_EQ(model.selectedOverlay()->id(), idOf(1));
}

TEST_F(AppModelTest, FillsAnEmptySelectionAtTheNextCommand) {
    addOverlays(2);
    model.setSelectedOverlayID(std::nullopt);

    model.toggleEditMode();

    EXPECT_EQ(model.selectedOverlayID(), idOf(1));
}

TEST_F(AppModelTest, KeepsAStaleSelectionAtTheNextCommand) {
    addOverlays(2);
    const UUID stale = UUID::random();
    model.setSelectedOverlayID(stale);

    model.toggleEditMode();

    EXPECT_EQ(model.selectedOverlayID(), stale);
}

TEST_F(AppModelTest, ChangesTheFirstOverlayWhenTheSelectionIsStale) {
    addOverlays(2);
    model.setSelectedOverlayID(UUID::random());

    model.updateSelectedStyle(5, std::nullopt, std::nullopt, std::nullopt);
    model.updateSelectedShape(OverlayShape::circle);

    EXPECT_EQ(model.overlays()[0].style.intensity, 5);
    EXPECT_EQ(model.overlays()[0].shape, OverlayShape::circle);
    EXPECT_EQ(model.overlays()[1].style.intensity, 50);
    EXPECT_EQ(model.overlays()[1].shape, OverlayShape::rectangle);
}

TEST_F(AppModelTest, TogglesEditModeThereAndBack) {
    model.toggleEditMode();
    EXPECT_FALSE(model.editMode());
    EXPECT_EQ(model.statusText(), QStringLiteral("Overlays locked; clicks pass through"));

    model.toggleEditMode();
    EXPECT_TRUE(model.editMode());
    EXPECT_EQ(model.statusText(), QStringLiteral("Edit mode on"));
}

TEST_F(AppModelTest, ChangesOnlyTheGivenPartsOfAStyle) {
    addOverlays(1);

    model.updateSelectedStyle(10, std::nullopt, std::nullopt, std::nullopt);
    model.updateSelectedStyle(std::nullopt, std::string("#FF8000"), std::nullopt, std::nullopt);
    model.updateSelectedStyle(std::nullopt, std::nullopt, 30, std::nullopt);
    model.updateSelectedStyle(std::nullopt, std::nullopt, std::nullopt, false);

    EXPECT_EQ(model.overlays()[0].style, BlurStyle(10, "#FF8000", 30, false));
    EXPECT_EQ(model.statusText(), QStringLiteral("Style updated"));
}

TEST_F(AppModelTest, NormalizesTheStyleItStores) {
    addOverlays(1);

    model.updateSelectedStyle(-5, std::string(" f80 "), 1000, std::nullopt);

    EXPECT_EQ(model.overlays()[0].style, BlurStyle(0, "#FF8800", 100, true));
}

TEST_F(AppModelTest, StampsAStyleUpdateThatChangesNothing) {
    addOverlays(1);
    const BlurOverlay before = model.overlays()[0];
    QSignalSpy published(&model, &AppModel::overlaysChanged);

    model.updateSelectedStyle(std::nullopt, std::nullopt, std::nullopt, std::nullopt);

    EXPECT_EQ(model.overlays()[0].style, before.style);
    EXPECT_GT(model.overlays()[0].updatedAt, before.updatedAt);
    EXPECT_EQ(published.count(), 1);
    EXPECT_EQ(model.statusText(), QStringLiteral("Style updated"));
}

TEST_F(AppModelTest, ChangesTheShape) {
    addOverlays(1);

    model.updateSelectedShape(OverlayShape::circle);

    EXPECT_EQ(model.overlays()[0].shape, OverlayShape::circle);
    EXPECT_EQ(model.statusText(), QStringLiteral("Shape updated"));
}

TEST_F(AppModelTest, NotifiesOncePerChangedField) {
    model.toggleEditMode();
    const NotificationLog log(model);

    model.addOverlay();

    EXPECT_THAT(log.names(), ElementsAre("selectedOverlayID", "editMode", "statusText", "overlays"));
}

TEST_F(AppModelTest, DoesNotNotifyOfFieldsThatStayTheSame) {
    addOverlays(1);
    const NotificationLog log(model);

    model.removeOverlay(UUID::random());
    model.removeOverlay(UUID::random());

    EXPECT_THAT(log.names(), ElementsAre("statusText"))
        << "list and selection are the same, and the text the second time";
}

TEST_F(AppModelTest, ShowsConsistentStateToWhoeverIsNotifiedLast) {
    std::optional<UUID> seen;
    QObject::connect(&model, &AppModel::overlaysChanged, &model, [&] { seen = model.selectedOverlay()->id(); });

    model.addOverlay();

    EXPECT_EQ(seen, idOf(1));
}

}  // namespace
}  // namespace pallwick
