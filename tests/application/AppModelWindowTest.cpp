#include "ViewTestSupport.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTimer>

#include <memory>
#include <utility>
#include <vector>

namespace pallwick {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

constexpr std::int32_t ownerPID = 512;
constexpr double screenHeight = 900;

/// A window with its minimum corner at `origin`, screen coordinates.
WindowRecord windowAt(const Point& origin, std::uint32_t number = 7, const std::string& title = "Notes") {
    constexpr Size size{.width = 800, .height = 600};
    return {.layer = 0,
            .number = number,
            .ownerProcessID = ownerPID,
            .ownerName = "Nova",
            .title = title,
            .bounds = Rect{
                .x = origin.x, .y = screenHeight - origin.y - size.height, .width = size.width, .height = size.height}};
}

class AppModelWindowTest : public ModelTest {
protected:
    void showWindows(std::vector<WindowRecord> windows) { platform.setOnScreenWindows(std::move(windows)); }

    void bringToFront(std::int32_t processID) {
        platform.setFrontmostApplication(FrontmostApplication{.processID = processID, .bundleID = std::nullopt});
    }

    /// The timer fires, and its work is done.
    void tick() {
        QMetaObject::invokeMethod(model.findChild<QTimer*>(), "timeout");
        QCoreApplication::sendPostedEvents();
    }

    /// An overlay with its minimum corner at `origin`, attached to window 7 at (100, 100), whose owner is in front.
    void attachOverlayAt(const Point& origin) {
        showWindows({windowAt({.x = 100, .y = 100})});
        bringToFront(ownerPID);
        model.refreshWindows();
        addOverlays(1);
        dragPanelTo(1, origin);
        model.setSelectedWindowID(7);
        model.attachSelectedOverlayToWindow();
    }

    [[nodiscard]] Point originOf(int number) const {
        const Rect& frame = model.overlays().at(static_cast<std::size_t>(number - 1)).frame;
        return {.x = frame.x, .y = frame.y};
    }

    [[nodiscard]] FakeOverlaySurface& panel(int number) {
        return *platform.surfaces().at(static_cast<std::size_t>(number - 1));
    }
};

TEST(AppModelStart, ReadsTheWindowsThatAreOnTheScreen) {
    FakePlatform platform;
    platform.setOnScreenWindows({{windowAt({.x = 100, .y = 100}), windowAt({.x = 0, .y = 0}, 8, "Ideas")}});

    const AppModel model(platform, withoutPresets);

    ASSERT_THAT(model.visibleWindows(), SizeIs(2));
    EXPECT_EQ(model.visibleWindows()[0].title, "Ideas");
    EXPECT_EQ(model.visibleWindows()[1].frame, (Rect{.x = 100, .y = 100, .width = 800, .height = 600}));
    EXPECT_EQ(model.selectedWindowID(), std::nullopt);
    EXPECT_EQ(model.statusText(), QStringLiteral("Ready"));
    EXPECT_THAT(platform.surfaces(), IsEmpty());
}

TEST_F(AppModelWindowTest, KeepsItsListOfWindowsUntilItIsAskedToRefreshIt) {
    showWindows({windowAt({.x = 100, .y = 100})});
    tick();
    EXPECT_THAT(model.visibleWindows(), IsEmpty());

    const NotificationLog log(model);
    model.refreshWindows();

    EXPECT_THAT(model.visibleWindows(), SizeIs(1));
    EXPECT_THAT(log.names(), ElementsAre("visibleWindows"));
    EXPECT_EQ(model.statusText(), QStringLiteral("Ready"));
    EXPECT_THAT(platform.calls(), IsEmpty());
}

TEST_F(AppModelWindowTest, SaysNothingOfARefreshThatFindsTheSameWindows) {
    showWindows({windowAt({.x = 100, .y = 100})});
    model.refreshWindows();
    const NotificationLog log(model);

    model.refreshWindows();

    EXPECT_THAT(log.names(), IsEmpty());
}

TEST_F(AppModelWindowTest, PublishesTheChosenWindowAndDoesNothingElse) {
    const NotificationLog log(model);

    model.setSelectedWindowID(7);
    model.setSelectedWindowID(7);

    EXPECT_EQ(model.selectedWindowID(), 7U);
    EXPECT_THAT(log.names(), ElementsAre("selectedWindowID"));
    EXPECT_THAT(platform.calls(), IsEmpty());
}

TEST_F(AppModelWindowTest, KeepsTheChosenWindowWhileItIsListed) {
    showWindows({windowAt({.x = 100, .y = 100})});
    model.refreshWindows();
    model.setSelectedWindowID(7);

    showWindows({windowAt({.x = 300, .y = 100}), windowAt({.x = 0, .y = 0}, 8)});
    model.refreshWindows();

    EXPECT_EQ(model.selectedWindowID(), 7U);
}

TEST_F(AppModelWindowTest, ForgetsTheChosenWindowOnceItIsNoLongerListed) {
    showWindows({windowAt({.x = 100, .y = 100})});
    model.refreshWindows();
    model.setSelectedWindowID(7);
    const NotificationLog log(model);

    showWindows({windowAt({.x = 100, .y = 100}, 8)});
    model.refreshWindows();

    EXPECT_EQ(model.selectedWindowID(), std::nullopt);
    EXPECT_THAT(log.names(), ElementsAre("visibleWindows", "selectedWindowID"));
}

TEST_F(AppModelWindowTest, AttachesTheSelectedOverlayToTheChosenWindow) {
    showWindows({windowAt({.x = 100, .y = 100})});
    model.refreshWindows();
    addOverlays(2);
    dragPanelTo(1, {.x = 150, .y = 200});
    model.setSelectedOverlayID(idOf(1));
    model.setSelectedWindowID(7);
    const NotificationLog log(model);

    model.attachSelectedOverlayToWindow();

    const BlurOverlay& overlay = model.overlays()[0];
    EXPECT_EQ(overlay.anchor, OverlayAnchor::window);
    ASSERT_TRUE(overlay.windowAttachment);
    EXPECT_EQ(overlay.windowAttachment->windowID, 7U);
    EXPECT_EQ(overlay.windowAttachment->ownerPID, ownerPID);
    EXPECT_EQ(overlay.windowAttachment->ownerName, "Nova");
    EXPECT_EQ(overlay.windowAttachment->title, "Notes");
    EXPECT_EQ(overlay.windowAttachment->offset, (Point{.x = 50, .y = 100}));
    EXPECT_EQ(model.overlays()[1].windowAttachment, std::nullopt);
    EXPECT_EQ(model.statusText(), QStringLiteral("Attached to Nova - Notes"));
    EXPECT_THAT(log.names(), ElementsAre("statusText", "overlays"));
}

TEST_F(AppModelWindowTest, NamesAWindowWithoutATitleByItsOwner) {
    showWindows({windowAt({.x = 100, .y = 100}, 7, "")});
    model.refreshWindows();
    addOverlays(1);
    model.setSelectedWindowID(7);

    model.attachSelectedOverlayToWindow();

    EXPECT_EQ(model.statusText(), QStringLiteral("Attached to Nova"));
}

TEST_F(AppModelWindowTest, AttachesTheFirstOverlayWhereTheSelectionIsStale) {
    showWindows({windowAt({.x = 100, .y = 100})});
    model.refreshWindows();
    addOverlays(2);
    model.setSelectedOverlayID(UUID());
    model.setSelectedWindowID(7);

    model.attachSelectedOverlayToWindow();

    EXPECT_TRUE(model.overlays()[0].windowAttachment);
    EXPECT_FALSE(model.overlays()[1].windowAttachment);
}

TEST_F(AppModelWindowTest, WantsAWindowChosenFirst) {
    addOverlays(1);
    const std::vector<BlurOverlay> before = model.overlays();

    model.attachSelectedOverlayToWindow();

    EXPECT_EQ(model.statusText(), QStringLiteral("Choose a window first"));
    EXPECT_EQ(model.overlays(), before);
}

TEST_F(AppModelWindowTest, WantsAWindowChosenThatIsStillListed) {
    showWindows({windowAt({.x = 100, .y = 100})});
    model.refreshWindows();
    addOverlays(1);
    model.setSelectedWindowID(7);
    showWindows({});
    model.refreshWindows();

    model.attachSelectedOverlayToWindow();

    EXPECT_EQ(model.statusText(), QStringLiteral("Choose a window first"));
    EXPECT_FALSE(model.overlays()[0].windowAttachment);
}

TEST_F(AppModelWindowTest, WantsAWindowChosenThatItHasListed) {
    addOverlays(1);
    showWindows({windowAt({.x = 100, .y = 100})});
    model.setSelectedWindowID(7);

    model.attachSelectedOverlayToWindow();

    EXPECT_EQ(model.statusText(), QStringLiteral("Choose a window first"));
    EXPECT_FALSE(model.overlays()[0].windowAttachment);
}

TEST_F(AppModelWindowTest, SaysTheSameWithoutAnOverlayToAttach) {
    showWindows({windowAt({.x = 100, .y = 100})});
    model.refreshWindows();
    model.setSelectedWindowID(7);

    model.attachSelectedOverlayToWindow();

    EXPECT_EQ(model.statusText(), QStringLiteral("Choose a window first"));
    EXPECT_THAT(platform.surfaces(), IsEmpty());
}

TEST_F(AppModelWindowTest, AttachesWhereTheWindowWasWhenItWasListedAndFollowsItsMovementSince) {
    showWindows({windowAt({.x = 100, .y = 100})});
    model.refreshWindows();
    addOverlays(1);
    dragPanelTo(1, {.x = 150, .y = 120});
    model.setSelectedWindowID(7);
    showWindows({windowAt({.x = 110, .y = 130})});

    model.attachSelectedOverlayToWindow();
    EXPECT_EQ(originOf(1), (Point{.x = 150, .y = 120}));
    EXPECT_EQ(model.overlays()[0].windowAttachment->offset, (Point{.x = 50, .y = 20}));

    tick();
    EXPECT_EQ(originOf(1), (Point{.x = 160, .y = 150}));
}

TEST_F(AppModelWindowTest, LeavesADetachedOverlayWhereItIs) {
    attachOverlayAt({.x = 150, .y = 120});
    bringToFront(ownerPID + 1);
    const Rect before = model.overlays()[0].frame;

    model.detachSelectedOverlayFromWindow();

    EXPECT_EQ(model.overlays()[0].anchor, OverlayAnchor::screen);
    EXPECT_FALSE(model.overlays()[0].windowAttachment);
    EXPECT_EQ(model.overlays()[0].frame, before);
    EXPECT_EQ(model.statusText(), QStringLiteral("Window attachment removed"));
    EXPECT_TRUE(panel(1).isVisible()) << "it belongs to the screen now, whoever is in front";

    showWindows({windowAt({.x = 300, .y = 400})});
    tick();
    EXPECT_EQ(model.overlays()[0].frame, before);
}

TEST_F(AppModelWindowTest, DetachesAnOverlayThatWasNotAttached) {
    addOverlays(1);

    model.detachSelectedOverlayFromWindow();

    EXPECT_EQ(model.statusText(), QStringLiteral("Window attachment removed"));
}

TEST_F(AppModelWindowTest, DetachesNothingWithoutAnOverlay) {
    model.detachSelectedOverlayFromWindow();

    EXPECT_EQ(model.statusText(), QStringLiteral("Ready"));
    EXPECT_THAT(platform.calls(), IsEmpty());
}

TEST_F(AppModelWindowTest, MovesAnOverlayAfterItsWindow) {
    attachOverlayAt({.x = 150, .y = 120});
    const Size size = model.overlays()[0].frame.extent();
    const QString status = model.statusText();

    showWindows({windowAt({.x = 300, .y = 400})});
    tick();

    EXPECT_EQ(model.overlays()[0].frame, (Rect{.x = 350, .y = 420, .width = size.width, .height = size.height}));
    EXPECT_EQ(panel(1).frame(), model.overlays()[0].frame);
    EXPECT_EQ(model.statusText(), status);
}

TEST_F(AppModelWindowTest, MovesEveryOverlayAfterTheWindowItIsAttachedTo) {
    showWindows({windowAt({.x = 100, .y = 100}), windowAt({.x = 200, .y = 50}, 8)});
    model.refreshWindows();
    addOverlays(3);
    dragPanelTo(1, {.x = 10, .y = 10});
    dragPanelTo(2, {.x = 20, .y = 20});
    dragPanelTo(3, {.x = 30, .y = 30});
    model.setSelectedOverlayID(idOf(1));
    model.setSelectedWindowID(7);
    model.attachSelectedOverlayToWindow();
    model.setSelectedOverlayID(idOf(3));
    model.setSelectedWindowID(8);
    model.attachSelectedOverlayToWindow();

    showWindows({windowAt({.x = 101, .y = 102}), windowAt({.x = 203, .y = 54}, 8)});
    tick();

    EXPECT_EQ(originOf(1), (Point{.x = 11, .y = 12}));
    EXPECT_EQ(originOf(2), (Point{.x = 20, .y = 20}));
    EXPECT_EQ(originOf(3), (Point{.x = 33, .y = 34}));
}

TEST_F(AppModelWindowTest, AsksForEachAttachedWindowAloneOnceATick) {
    attachOverlayAt({.x = 150, .y = 120});
    addOverlays(1);
    const int whole = platform.wholeListQueries();
    const int single = platform.singleWindowQueries();

    tick();

    EXPECT_EQ(platform.wholeListQueries(), whole);
    EXPECT_EQ(platform.singleWindowQueries(), single + 1);
}

TEST_F(AppModelWindowTest, LetsAnOverlayWaitWhileItsWindowIsAwayAndFollowWhenItIsBack) {
    attachOverlayAt({.x = 150, .y = 120});
    const BlurOverlay before = model.overlays()[0];
    const NotificationLog log(model);
    platform.clearCalls();

    showWindows({});
    tick();
    EXPECT_EQ(model.overlays()[0], before);
    EXPECT_THAT(log.names(), IsEmpty());
    EXPECT_THAT(platform.calls(), IsEmpty());

    showWindows({windowAt({.x = 300, .y = 400})});
    tick();
    EXPECT_EQ(originOf(1), (Point{.x = 350, .y = 420}));
}

TEST_F(AppModelWindowTest, LetsAnOverlayWaitWhileItsWindowIsTooSmall) {
    attachOverlayAt({.x = 150, .y = 120});
    WindowRecord small = windowAt({.x = 300, .y = 400});
    small.bounds->width = 79;

    showWindows({small});
    tick();

    EXPECT_EQ(originOf(1), (Point{.x = 150, .y = 120}));
    EXPECT_TRUE(model.overlays()[0].windowAttachment);
}

TEST_F(AppModelWindowTest, ShowsAnAttachedOverlayOnlyWhileItsOwnerIsInFront) {
    attachOverlayAt({.x = 150, .y = 120});
    addOverlays(1);
    EXPECT_TRUE(panel(1).isVisible());

    bringToFront(ownerPID + 1);
    tick();
    EXPECT_FALSE(panel(1).isVisible());
    EXPECT_TRUE(panel(2).isVisible());

    bringToFront(ownerPID);
    tick();
    EXPECT_TRUE(panel(1).isVisible());

    platform.setFrontmostApplication(std::nullopt);
    tick();
    EXPECT_FALSE(panel(1).isVisible());
}

TEST_F(AppModelWindowTest, LooksAtWhoIsInFrontOfAClosedWindowsOverlayOnlyWithAnotherCause) {
    attachOverlayAt({.x = 150, .y = 120});
    showWindows({});
    bringToFront(ownerPID + 1);

    tick();
    EXPECT_TRUE(panel(1).isVisible());

    model.toggleEditMode();
    EXPECT_FALSE(panel(1).isVisible());
}

TEST_F(AppModelWindowTest, RepublishesTheListEveryTickWhileAnAttachedWindowIsThere) {
    attachOverlayAt({.x = 150, .y = 120});
    const Date before = model.overlays()[0].updatedAt;
    const NotificationLog log(model);

    tick();

    EXPECT_THAT(log.names(), ElementsAre("overlays"));
    EXPECT_NE(model.overlays()[0].updatedAt, before);
}

TEST_F(AppModelWindowTest, DoesNothingAtATickWithoutAnAttachedOverlay) {
    showWindows({windowAt({.x = 100, .y = 100})});
    addOverlays(1);
    bringToFront(ownerPID + 1);
    const NotificationLog log(model);
    const int single = platform.singleWindowQueries();
    const int whole = platform.wholeListQueries();
    platform.clearCalls();

    tick();

    EXPECT_THAT(log.names(), IsEmpty());
    EXPECT_THAT(platform.calls(), IsEmpty());
    EXPECT_EQ(platform.singleWindowQueries(), single);
    EXPECT_EQ(platform.wholeListQueries(), whole);
}

TEST_F(AppModelWindowTest, KeepsAnOverlayWhereItWasDraggedRelativeToItsWindow) {
    attachOverlayAt({.x = 150, .y = 120});

    dragPanelTo(1, {.x = 170, .y = 180});
    EXPECT_EQ(model.overlays()[0].windowAttachment->offset, (Point{.x = 70, .y = 80}));

    tick();
    EXPECT_EQ(originOf(1), (Point{.x = 170, .y = 180}));

    showWindows({windowAt({.x = 300, .y = 400})});
    tick();
    EXPECT_EQ(originOf(1), (Point{.x = 370, .y = 480}));
}

TEST_F(AppModelWindowTest, KeepsTheSizeOfAnOverlayThatWasResized) {
    attachOverlayAt({.x = 150, .y = 120});
    const Rect before = model.overlays()[0].frame;
    panel(1).press({.x = before.width - 15, .y = before.height - 15});
    panel(1).dragTo({.x = 40, .y = -30});
    panel(1).release();

    showWindows({windowAt({.x = 300, .y = 400})});
    tick();

    EXPECT_EQ(model.overlays()[0].frame,
              (Rect{.x = 350, .y = 390, .width = before.width + 40, .height = before.height + 30}));
}

TEST_F(AppModelWindowTest, KeepsTheOldOffsetOfAnOverlayDraggedWhileItsWindowIsAway) {
    attachOverlayAt({.x = 150, .y = 120});
    showWindows({});

    dragPanelTo(1, {.x = 500, .y = 500});
    EXPECT_EQ(originOf(1), (Point{.x = 500, .y = 500}));
    EXPECT_EQ(model.overlays()[0].windowAttachment->offset, (Point{.x = 50, .y = 20}));

    showWindows({windowAt({.x = 100, .y = 100})});
    tick();
    EXPECT_EQ(originOf(1), (Point{.x = 150, .y = 120}));
}

TEST_F(AppModelWindowTest, AsksForNoWindowWhenAnUnattachedOverlayIsDragged) {
    addOverlays(1);
    const int single = platform.singleWindowQueries();

    dragPanelTo(1, {.x = 500, .y = 500});

    EXPECT_EQ(platform.singleWindowQueries(), single);
}

TEST_F(AppModelWindowTest, DoesNotDisturbADragByATick) {
    attachOverlayAt({.x = 150, .y = 120});
    panel(1).press({.x = 100, .y = 60});
    panel(1).dragTo({.x = 10, .y = 20});

    tick();
    EXPECT_EQ(panel(1).frame(), model.overlays()[0].frame);
    EXPECT_EQ(originOf(1), (Point{.x = 160, .y = 140}));

    panel(1).dragTo({.x = 30, .y = 40});
    EXPECT_EQ(originOf(1), (Point{.x = 180, .y = 160})) << "the gesture goes on from where it began";
    panel(1).release();
}

TEST_F(AppModelWindowTest, TellsAPanelNothingNewAtATickThatFindsItsWindowWhereItWas) {
    attachOverlayAt({.x = 150, .y = 120});
    const Rect frame = panel(1).frame();
    tick();
    platform.clearCalls();

    tick();

    EXPECT_EQ(panel(1).frame(), frame);
    EXPECT_THAT(platform.calls(), Not(Contains(StartsWith("hide"))));
}

TEST_F(AppModelWindowTest, KeepsSelectionsOverATick) {
    attachOverlayAt({.x = 150, .y = 120});
    addOverlays(2);
    model.setSelectedOverlayID(idOf(2));

    tick();

    EXPECT_EQ(model.selectedOverlayID(), idOf(2));
    EXPECT_EQ(model.selectedWindowID(), 7U);
}

TEST_F(AppModelWindowTest, TicksByItself) {
    attachOverlayAt({.x = 150, .y = 120});
    QSignalSpy published(&model, &AppModel::overlaysChanged);

    showWindows({windowAt({.x = 300, .y = 400})});

    constexpr int brokenAfterMilliseconds = 30000;
    EXPECT_TRUE(published.wait(brokenAfterMilliseconds));
    EXPECT_EQ(originOf(1), (Point{.x = 350, .y = 420}));
}

TEST(AppModelEnd, DropsATickThatIsUnderWay) {
    FakePlatform platform;
    platform.setOnScreenWindows({{windowAt({.x = 100, .y = 100})}});
    auto model = std::make_unique<AppModel>(platform, withoutPresets);
    model->addOverlay();
    model->setSelectedWindowID(7);
    model->attachSelectedOverlayToWindow();
    const int single = platform.singleWindowQueries();
    QMetaObject::invokeMethod(model->findChild<QTimer*>(), "timeout");

    model.reset();
    QCoreApplication::sendPostedEvents();

    EXPECT_EQ(platform.singleWindowQueries(), single);
}

}  // namespace
}  // namespace pallwick
