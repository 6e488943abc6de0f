#include <PallwickMac/Platform/Fake/FakePlatform.h>

#include <QPainter>

#include <gmock/gmock.h>

namespace pallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Remembers what it is told and fills itself with one colour.
class RecordingContent final : public OverlaySurfaceContent {
public:
    void draw(QPainter& painter) override { painter.fillRect(QRectF(1, 1, 2, 2), Qt::green); }
    void mouseEntered() override { events.emplace_back("entered"); }
    void mouseExited() override { events.emplace_back("exited"); }
    void mouseDown(const PointerEvent& event) override {
        events.emplace_back("down");
        lastEvent = event;
    }
    void mouseDragged(const PointerEvent& event) override {
        events.emplace_back("dragged");
        lastEvent = event;
    }
    void mouseUp() override { events.emplace_back("up"); }
    void gestureCancelled() override { events.emplace_back("cancelled"); }

    std::vector<std::string> events;
    PointerEvent lastEvent;
};

class FakeOverlaySurfaceTest : public ::testing::Test {
protected:
    FakeOverlaySurfaceTest() {
        surface->setFrame({.x = 100, .y = 200, .width = 300, .height = 150});
        surface->show();
        platform.clearCalls();
    }

    FakePlatform platform;
    RecordingContent content;
    FakeOverlaySurface* surface = nullptr;

private:
    std::unique_ptr<OverlaySurface> owner_ = make();

    std::unique_ptr<OverlaySurface> make() {
        std::unique_ptr<OverlaySurface> made = platform.makeOverlaySurface(content);
        surface = platform.surfaces().back();
        return made;
    }
};

TEST(FakePlatform, StartsWithOneScreenAndNothingInFront) {
    const FakePlatform platform;

    ASSERT_EQ(platform.screens().size(), 1U);
    EXPECT_EQ(platform.screens()[0].frame, (Rect{.x = 0, .y = 0, .width = 1440, .height = 900}));
    EXPECT_EQ(platform.screens()[0].visibleFrame, (Rect{.x = 0, .y = 25, .width = 1440, .height = 875}));
    EXPECT_EQ(platform.screens()[0].displayID, 1U);
    EXPECT_EQ(platform.frontmostProcessID(), std::nullopt);
    EXPECT_EQ(platform.frontmostBundleID(), std::nullopt);
    EXPECT_THAT(platform.surfaces(), IsEmpty());
}

TEST(FakePlatform, AnnouncesItsNewScreensOnceTheyCanBeAskedFor) {
    FakePlatform platform;
    std::vector<Screen> seen;
    QObject::connect(&platform, &DesktopPlatform::screensChanged, [&] { seen = platform.screens(); });
    const Screen screen{.frame = {.x = 0, .y = 0, .width = 800, .height = 600}, .displayID = 9};

    platform.setScreens({screen});

    EXPECT_THAT(seen, ElementsAre(screen));
}

TEST(FakePlatform, AnnouncesTheLossOfItsConnectionWithTheReason) {
    FakePlatform platform;
    QString heard;
    QObject::connect(&platform, &DesktopPlatform::disconnected, [&](const QString& reason) { heard = reason; });

    platform.loseConnection(QStringLiteral("The display is gone."));

    EXPECT_EQ(heard, QStringLiteral("The display is gone."));
}

TEST(FakePlatform, KeepsEverySurfaceThatExistsOldestFirst) {
    FakePlatform platform;
    RecordingContent content;
    std::unique_ptr<OverlaySurface> first = platform.makeOverlaySurface(content);
    const std::unique_ptr<OverlaySurface> second = platform.makeOverlaySurface(content);
    const std::unique_ptr<OverlaySurface> third = platform.makeOverlaySurface(content);

    first.reset();

    EXPECT_THAT(platform.surfaces(), ElementsAre(second.get(), third.get()));
}

TEST(FakePlatform, RecordsTheCallsOfAllSurfacesInOneOrder) {
    FakePlatform platform;
    RecordingContent content;
    const std::unique_ptr<OverlaySurface> first = platform.makeOverlaySurface(content);
    const std::unique_ptr<OverlaySurface> second = platform.makeOverlaySurface(content);

    second->setFrame({.x = 1, .y = -2.5, .width = 30, .height = 40});
    second->setIgnoresMouseEvents(false);
    second->setEffectLayer({.alpha = 0.5});
    second->setCursorRegions({CursorRegion{}});
    second->setAccessibleName(QStringLiteral("Name"));
    second->setNeedsDisplay();
    second->show();
    first->show();
    second->hide();

    EXPECT_THAT(platform.calls(), ElementsAre("setFrame 2 (1, -2.5, 30, 40)", "setIgnoresMouseEvents 2 false",
                                              "setEffectLayer 2", "setCursorRegions 2 1", "setAccessibleName 2 Name",
                                              "setNeedsDisplay 2", "show 2", "show 1", "hide 2"));
}

TEST_F(FakeOverlaySurfaceTest, DerivesTheGlobalPositionOfAPressFromItsFrame) {
    surface->press({.x = 10, .y = 20});

    EXPECT_THAT(content.events, ElementsAre("down"));
    EXPECT_EQ(content.lastEvent.locationInView, (Point{.x = 10, .y = 20}));
    EXPECT_EQ(content.lastEvent.mouseLocation, (Point{.x = 110, .y = 330}));
    EXPECT_EQ(platform.pointerLocation(), (Point{.x = 110, .y = 330}));
}

TEST_F(FakeOverlaySurfaceTest, MeasuresADragFromThePressHoweverTheFrameMoves) {
    surface->press({.x = 10, .y = 20});
    surface->setFrame({.x = 105, .y = 207, .width = 300, .height = 150});

    surface->dragTo({.x = 5, .y = 7});

    EXPECT_EQ(content.lastEvent.mouseLocation, (Point{.x = 115, .y = 337}));
    EXPECT_EQ(content.lastEvent.locationInView, (Point{.x = 10, .y = 20}));
}

TEST_F(FakeOverlaySurfaceTest, DeliversNothingWhileHidden) {
    surface->hide();

    surface->enter();
    surface->press({.x = 10, .y = 20});
    surface->dragTo({.x = 1, .y = 1});
    surface->release();

    EXPECT_THAT(content.events, IsEmpty());
}

TEST_F(FakeOverlaySurfaceTest, DeliversNothingButLeavingWhileItIgnoresTheMouse) {
    surface->enter();
    surface->setIgnoresMouseEvents(true);

    surface->enter();
    surface->press({.x = 10, .y = 20});
    surface->dragTo({.x = 1, .y = 1});
    surface->release();
    surface->leave();

    EXPECT_THAT(content.events, ElementsAre("entered", "exited"));
}

TEST_F(FakeOverlaySurfaceTest, CancelsTheGestureWhenItIsHiddenUnderThePress) {
    surface->press({.x = 10, .y = 20});

    surface->hide();
    surface->dragTo({.x = 1, .y = 1});
    surface->release();

    EXPECT_THAT(content.events, ElementsAre("down", "cancelled"));
}

TEST_F(FakeOverlaySurfaceTest, CancelsTheGestureWhenItStartsToIgnoreTheMouseUnderThePress) {
    surface->press({.x = 10, .y = 20});

    surface->setIgnoresMouseEvents(true);
    surface->setIgnoresMouseEvents(false);
    surface->release();

    EXPECT_THAT(content.events, ElementsAre("down", "cancelled"));
}

TEST_F(FakeOverlaySurfaceTest, DrawsItsContentAtAnyScale) {
    const QImage image = surface->render(1.5);

    EXPECT_EQ(image.size(), QSize(450, 225));
    EXPECT_EQ(image.pixelColor(3, 3), QColor(Qt::green));
    EXPECT_EQ(image.pixelColor(6, 6).alpha(), 0);
}

}  // namespace
}  // namespace pallwick
