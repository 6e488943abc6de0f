#include "ViewTestSupport.h"

#include <QCoreApplication>

#include <memory>
#include <vector>

namespace pallwick {
namespace {

using ::testing::ContainsRegex;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

/// The middle of a panel's delete control.
constexpr Point deleteControl{.x = 21, .y = 21};

class AppModelPanelTest : public ModelTest {};

TEST_F(AppModelPanelTest, MakesNoPanelBeforeTheFirstOverlay) {
    model.toggleEditMode();
    model.clearOverlays();

    EXPECT_THAT(platform.surfaces(), IsEmpty());
}

TEST_F(AppModelPanelTest, ShowsAPanelForEveryOverlayAtItsFrame) {
    addOverlays(2);

    ASSERT_THAT(platform.surfaces(), SizeIs(2));
    EXPECT_TRUE(platform.surfaces()[0]->isVisible());
    EXPECT_TRUE(platform.surfaces()[1]->isVisible());
    EXPECT_EQ(platform.surfaces()[1]->frame(), model.overlays()[1].frame);
}

TEST_F(AppModelPanelTest, KeepsAPanelOverItsOverlaysChanges) {
    addOverlays(1);

    model.updateSelectedShape(OverlayShape::circle);
    model.toggleEditMode();

    EXPECT_THAT(platform.surfaces(), SizeIs(1));
    EXPECT_EQ(platform.surfaces()[0]->effectLayer().shape, EffectLayer::Shape::ellipse);
}

TEST_F(AppModelPanelTest, LetsClicksThroughLockedPanelsOnly) {
    addOverlays(1);
    EXPECT_FALSE(platform.surfaces()[0]->ignoresMouseEvents());

    model.toggleEditMode();
    EXPECT_TRUE(platform.surfaces()[0]->ignoresMouseEvents());

    model.toggleEditMode();
    EXPECT_FALSE(platform.surfaces()[0]->ignoresMouseEvents());
}

TEST_F(AppModelPanelTest, UnlocksEveryPanelWhenAnOverlayIsAdded) {
    addOverlays(1);
    model.toggleEditMode();

    model.addOverlay();

    EXPECT_FALSE(platform.surfaces()[0]->ignoresMouseEvents());
    EXPECT_FALSE(platform.surfaces()[1]->ignoresMouseEvents());
}

TEST_F(AppModelPanelTest, ShowsAStyleOnThePanelAtOnce) {
    addOverlays(1);

    model.updateSelectedStyle(std::nullopt, std::nullopt, std::nullopt, false);

    EXPECT_TRUE(platform.surfaces()[0]->effectLayer().hidden);
}

TEST_F(AppModelPanelTest, ClosesThePanelOfARemovedOverlay) {
    addOverlays(2);
    FakeOverlaySurface* const kept = platform.surfaces()[1];

    model.removeOverlay(idOf(1));
    QCoreApplication::sendPostedEvents();

    EXPECT_THAT(platform.surfaces(), ElementsAre(kept));
}

TEST_F(AppModelPanelTest, TakesPanelsOffTheScreenBeforeACommandReturns) {
    addOverlays(2);
    const std::vector<FakeOverlaySurface*> surfaces = platform.surfaces();

    model.clearOverlays();

    EXPECT_FALSE(surfaces[0]->isVisible());
    EXPECT_FALSE(surfaces[1]->isVisible());
}

TEST_F(AppModelPanelTest, StoresAndPublishesEveryStepOfADrag) {
    addOverlays(1);
    FakeOverlaySurface* const surface = platform.surfaces()[0];
    const Rect before = model.overlays()[0].frame;
    surface->press({.x = 100, .y = 60});
    const NotificationLog log(model);

    surface->dragTo({.x = 10, .y = -20});
    surface->dragTo({.x = 30, .y = -40});

    EXPECT_EQ(model.overlays()[0].frame,
              (Rect{.x = before.x + 30, .y = before.y - 40, .width = before.width, .height = before.height}));
    EXPECT_THAT(log.names(), ElementsAre("overlays", "overlays"));
    EXPECT_EQ(model.statusText(), QStringLiteral("Overlay added"));
    surface->release();
}

TEST_F(AppModelPanelTest, StoresAResizedFrame) {
    addOverlays(1);
    FakeOverlaySurface* const surface = platform.surfaces()[0];
    const Rect before = model.overlays()[0].frame;

    surface->press({.x = before.width - 15, .y = before.height - 15});
    surface->dragTo({.x = 40, .y = -30});
    surface->release();

    EXPECT_EQ(model.overlays()[0].frame,
              (Rect{.x = before.x, .y = before.y - 30, .width = before.width + 40, .height = before.height + 30}));
}

TEST_F(AppModelPanelTest, DoesNotSendAReportedFrameBackToAnyPanel) {
    addOverlays(2);
    FakeOverlaySurface* const dragged = platform.surfaces()[0];
    dragged->press({.x = 100, .y = 60});
    platform.clearCalls();

    dragged->dragTo({.x = 10, .y = -20});

    EXPECT_THAT(platform.calls(), Each(Not(StartsWith("show")))) << "that would bring it to the front at every step";
    EXPECT_THAT(platform.calls(), Each(Not(ContainsRegex("^[A-Za-z]+ 2"))));
    dragged->release();
}

TEST_F(AppModelPanelTest, FillsAnEmptySelectionWhenAPanelIsDragged) {
    addOverlays(2);
    model.setSelectedOverlayID(std::nullopt);

    dragPanelTo(2, {.x = 5, .y = 5});

    EXPECT_EQ(model.selectedOverlayID(), idOf(1));
}

TEST_F(AppModelPanelTest, KeepsTheSelectionWhenAnotherPanelIsDragged) {
    addOverlays(2);

    dragPanelTo(1, {.x = 5, .y = 5});

    EXPECT_EQ(model.selectedOverlayID(), idOf(2));
}

TEST_F(AppModelPanelTest, RemovesAnOverlayFromInsideItsPanelsHandler) {
    addOverlays(2);
    const UUID second = idOf(2);
    FakeOverlaySurface* const clicked = platform.surfaces()[0];

    clicked->press(deleteControl);
    clicked->release();

    ASSERT_THAT(model.overlays(), SizeIs(1));
    EXPECT_EQ(model.overlays()[0].id(), second);
    EXPECT_EQ(model.selectedOverlayID(), second);
    EXPECT_EQ(model.statusText(), QStringLiteral("Overlay removed"));
    EXPECT_FALSE(clicked->isVisible());

    QCoreApplication::sendPostedEvents();
    EXPECT_THAT(platform.surfaces(), SizeIs(1));
}

TEST_F(AppModelPanelTest, RemovesTheLastOverlayFromInsideItsPanelsHandler) {
    addOverlays(1);

    platform.surfaces()[0]->press(deleteControl);

    EXPECT_THAT(model.overlays(), IsEmpty());
    EXPECT_EQ(model.selectedOverlayID(), std::nullopt);
}

TEST_F(AppModelPanelTest, PlacesTheNextPanelWhereADraggedOneWasLeft) {
    addOverlays(1);
    dragPanelTo(1, {.x = 12, .y = 34});

    model.toggleEditMode();

    EXPECT_EQ(platform.surfaces()[0]->frame(), model.overlays()[0].frame);
    EXPECT_EQ(platform.surfaces()[0]->frame().x, 12);
}

TEST(AppModel, ClosesItsPanelsWhenItGoes) {
    FakePlatform platform;
    auto model = std::make_unique<AppModel>(platform, withoutPresets);
    model->addOverlay();
    const std::vector<FakeOverlaySurface*> surfaces = platform.surfaces();

    model.reset();

    EXPECT_FALSE(surfaces[0]->isVisible());
    QCoreApplication::sendPostedEvents();
    EXPECT_THAT(platform.surfaces(), IsEmpty());
}

}  // namespace
}  // namespace pallwick
