#include <PallwickMac/Platform/Fake/FakePlatform.h>
#include <PallwickMac/Services/AppOverlayPanel.h>
#include <PallwickMacCore/Services/OverlayWindowController.h>

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <vector>

namespace pallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MockFunction;

/// Runs what waits for the event loop.
void runEventLoopOnce() {
    QCoreApplication::sendPostedEvents();
}

BlurOverlay overlayAt(const Rect& frame) {
    return BlurOverlay({.frame = frame});
}

class AppOverlayPanelTest : public ::testing::Test {
protected:
    ~AppOverlayPanelTest() override { runEventLoopOnce(); }

    std::shared_ptr<AppOverlayPanel> makePanel(const BlurOverlay& shown) {
        std::shared_ptr<AppOverlayPanel> made = AppOverlayPanel::make(
            platform, shown, [this](const UUID& id, const Rect& frame) { onFrameChanged(id, frame); },
            [this](const UUID& id) { onDeleteRequested(id); });
        surface = platform.surfaces().back();
        return made;
    }

    FakePlatform platform;
    std::function<void(const UUID&, const Rect&)> onFrameChanged = [](const UUID&, const Rect&) {};
    std::function<void(const UUID&)> onDeleteRequested = [](const UUID&) {};
    BlurOverlay overlay = overlayAt({.x = 100, .y = 100, .width = 300, .height = 200});
    /// Of the panel made last.
    FakeOverlaySurface* surface = nullptr;
};

TEST_F(AppOverlayPanelTest, HasExactlyTheFrameOfItsOverlay) {
    const Rect frame{.x = -20.25, .y = 33.5, .width = 101.75, .height = 75.125};

    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlayAt(frame));

    EXPECT_EQ(surface->frame(), frame);
}

TEST_F(AppOverlayPanelTest, IsBornHiddenAndTakingTheMouse) {
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);

    EXPECT_FALSE(surface->isVisible());
    EXPECT_FALSE(surface->ignoresMouseEvents());
}

TEST_F(AppOverlayPanelTest, UpdatesFirstItsFrameThenTheMouseThenItsContent) {
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    platform.clearCalls();
    overlay.frame = {.x = 1, .y = 2, .width = 310, .height = 210};

    panel->update(overlay, false);

    EXPECT_THAT(platform.calls(),
                ElementsAre("setFrame 1 (1, 2, 310, 210)", "setIgnoresMouseEvents 1 true", "setEffectLayer 1",
                            "setCursorRegions 1 0", "setAccessibleName 1 Overlay, Rectangle", "setNeedsDisplay 1"));
}

TEST_F(AppOverlayPanelTest, LetsTheMouseThroughWhileLocked) {
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);

    panel->update(overlay, false);
    const bool ignoresWhileLocked = surface->ignoresMouseEvents();
    panel->update(overlay, true);

    EXPECT_TRUE(ignoresWhileLocked);
    EXPECT_FALSE(surface->ignoresMouseEvents());
}

TEST_F(AppOverlayPanelTest, ReportsADragInEditMode) {
    MockFunction<void(const UUID&, const Rect&)> frameChanged;
    onFrameChanged = frameChanged.AsStdFunction();
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    panel->update(overlay, true);
    panel->show();

    EXPECT_CALL(frameChanged, Call(overlay.id(), Rect{.x = 107, .y = 95, .width = 300, .height = 200}));
    surface->press({.x = 150, .y = 100});
    surface->dragTo({.x = 7, .y = -5});
    surface->release();

    EXPECT_EQ(surface->frame(), (Rect{.x = 107, .y = 95, .width = 300, .height = 200}));
}

TEST_F(AppOverlayPanelTest, ReportsAClickOnItsDeleteControl) {
    MockFunction<void(const UUID&)> deleteRequested;
    onDeleteRequested = deleteRequested.AsStdFunction();
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    panel->show();

    EXPECT_CALL(deleteRequested, Call(overlay.id()));
    surface->press({.x = 10, .y = 10});
    surface->release();
}

TEST_F(AppOverlayPanelTest, ComesToTheFrontAtEveryShow) {
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    platform.clearCalls();

    panel->show();
    panel->show();

    EXPECT_THAT(platform.calls(), ElementsAre("show 1", "show 1"));
    EXPECT_TRUE(surface->isVisible());
}

TEST_F(AppOverlayPanelTest, ComesBackFromHidingAsItWas) {
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    overlay.frame = {.x = 5, .y = 6, .width = 200, .height = 100};
    overlay.style = BlurStyle(50, "#336699", 70);
    panel->update(overlay, false);
    panel->show();
    const QImage before = surface->render();

    panel->hide();
    const bool visibleWhileHidden = surface->isVisible();
    panel->show();

    EXPECT_FALSE(visibleWhileHidden);
    EXPECT_TRUE(surface->isVisible());
    EXPECT_EQ(platform.surfaces().size(), 1U);
    EXPECT_EQ(surface->frame(), overlay.frame);
    EXPECT_EQ(surface->render(), before);
}

TEST_F(AppOverlayPanelTest, ForgetsADragDuringWhichItIsHidden) {
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    panel->show();
    surface->press({.x = 150, .y = 100});

    panel->hide();
    panel->show();
    surface->dragTo({.x = 50, .y = 50});

    EXPECT_EQ(surface->frame(), overlay.frame);
}

TEST_F(AppOverlayPanelTest, ForgetsADragDuringWhichItIsLocked) {
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    panel->show();
    surface->press({.x = 150, .y = 100});

    panel->update(overlay, false);
    panel->update(overlay, true);
    surface->dragTo({.x = 50, .y = 50});

    EXPECT_EQ(surface->frame(), overlay.frame);
}

TEST_F(AppOverlayPanelTest, LeavesTheScreenAtOnceWhenClosed) {
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    panel->show();

    panel->close();

    EXPECT_FALSE(surface->isVisible());
}

TEST_F(AppOverlayPanelTest, GivesItsSurfaceUpOnceTheEventLoopRunsAfterClosing) {
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    panel->show();
    panel->close();
    const std::size_t surfacesAtOnce = platform.surfaces().size();

    runEventLoopOnce();

    EXPECT_EQ(surfacesAtOnce, 1U);
    EXPECT_THAT(platform.surfaces(), IsEmpty());
}

TEST_F(AppOverlayPanelTest, DoesNothingMoreOnceClosed) {
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    panel->show();
    surface->enter();
    panel->close();
    platform.clearCalls();

    surface->leave();
    panel->update(overlay, true);
    panel->show();
    panel->hide();
    panel->close();
    runEventLoopOnce();
    panel->update(overlay, true);
    panel->show();
    panel->hide();
    panel->close();

    EXPECT_THAT(platform.calls(), IsEmpty());
}

TEST_F(AppOverlayPanelTest, ForgetsADragDuringWhichItIsClosed) {
    bool reported = false;
    onFrameChanged = [&](const UUID&, const Rect&) { reported = true; };
    const std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    panel->show();
    surface->press({.x = 280, .y = 180});

    panel->close();
    surface->dragTo({.x = 50, .y = 50});
    surface->release();

    EXPECT_FALSE(reported);
    EXPECT_EQ(surface->frame(), overlay.frame);
}

TEST_F(AppOverlayPanelTest, SurvivesItsOwnDeleteControl) {
    std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    const std::weak_ptr<AppOverlayPanel> observed = panel;
    onDeleteRequested = [&](const UUID&) {
        panel->close();
        panel.reset();
    };
    panel->show();

    surface->enter();
    surface->press({.x = 10, .y = 10});
    surface->dragTo({.x = 20, .y = 20});
    surface->release();
    surface->leave();
    const bool aliveUntilTheLoopRuns = !observed.expired();
    runEventLoopOnce();

    EXPECT_TRUE(aliveUntilTheLoopRuns);
    EXPECT_TRUE(observed.expired());
    EXPECT_THAT(platform.surfaces(), IsEmpty());
}

TEST_F(AppOverlayPanelTest, SurvivesBeingClosedByAStepOfItsOwnDrag) {
    std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    const std::weak_ptr<AppOverlayPanel> observed = panel;
    onFrameChanged = [&](const UUID&, const Rect&) {
        panel->close();
        panel.reset();
    };
    panel->show();

    surface->press({.x = 280, .y = 180});
    surface->dragTo({.x = 20, .y = 20});
    surface->dragTo({.x = 40, .y = 40});
    surface->release();
    runEventLoopOnce();

    EXPECT_TRUE(observed.expired());
    EXPECT_THAT(platform.surfaces(), IsEmpty());
}

TEST_F(AppOverlayPanelTest, TakesItsSurfaceWithItWhenDroppedUnclosed) {
    std::shared_ptr<AppOverlayPanel> panel = makePanel(overlay);
    panel->show();

    panel.reset();

    EXPECT_THAT(platform.surfaces(), IsEmpty());
}

TEST_F(AppOverlayPanelTest, ComesAndGoesWithTheListOfItsController) {
    std::vector<BlurOverlay> overlays{overlay, overlayAt({.x = 500, .y = 500, .width = 200, .height = 100})};
    std::unique_ptr<OverlayWindowController> controller;
    controller = std::make_unique<OverlayWindowController>(
        [this](const BlurOverlay& shown, FrameChangedCallback frameChanged, DeleteRequestedCallback deleteRequested) {
            return AppOverlayPanel::make(platform, shown, std::move(frameChanged), std::move(deleteRequested));
        },
        [&](const UUID&, const Rect& frame) {
            overlays.front().frame = frame;
            controller->sync(overlays, true, std::nullopt);
        },
        [&](const UUID& id) {
            std::erase_if(overlays, [&](const BlurOverlay& candidate) { return candidate.id() == id; });
            controller->sync(overlays, true, std::nullopt);
        });
    controller->sync(overlays, true, std::nullopt);
    FakeOverlaySurface* const first = platform.surfaces()[0];
    FakeOverlaySurface* const second = platform.surfaces()[1];

    first->press({.x = 280, .y = 180});
    first->dragTo({.x = 10, .y = -10});
    first->dragTo({.x = 30, .y = -20});
    first->release();
    const Rect resized = overlays.front().frame;
    first->press({.x = 10, .y = 10});
    first->release();
    runEventLoopOnce();

    EXPECT_EQ(resized, (Rect{.x = 100, .y = 80, .width = 330, .height = 220}));
    EXPECT_THAT(platform.surfaces(), ElementsAre(second));
    EXPECT_TRUE(second->isVisible());
}

}  // namespace
}  // namespace pallwick
