#include <PallwickMac/Platform/X11/X11OverlaySurface.h>

#include <QAccessible>
#include <QGuiApplication>
#include <QWindow>

#include <limits>

#include "SurfaceTest.h"

namespace pallwick::x11 {
namespace {

using support::Reply;

class SurfaceGeometry : public SurfaceTest {};

struct ScaledFrame {
    double scale;
    Rect frame;
    PixelRect pixels;
};

class SurfaceAtEveryScale : public SurfaceGeometry, public ::testing::WithParamInterface<ScaledFrame> {};

// The primary screen is the 1280 x 800 pixels at 640,800 of the root.
INSTANTIATE_TEST_SUITE_P(
    Frames, SurfaceAtEveryScale,
    ::testing::Values(ScaledFrame{1, {33, 35, 101, 75}, {673, 1490, 101, 75}},
                      ScaledFrame{1, {33.25, 35.25, 100.5, 74.5}, {673, 1490, 101, 75}},
                      ScaledFrame{1.5, {33, 35, 101, 75}, {689, 1435, 152, 113}},
                      ScaledFrame{2, {33, 35, 101, 75}, {706, 1380, 202, 150}},
                      // Above the primary screen, left of it, and partly off the root on two sides.
                      ScaledFrame{1, {100, 900, 200, 100}, {740, 600, 200, 100}},
                      ScaledFrame{2, {100, 450, 200, 100}, {840, 500, 400, 200}},
                      ScaledFrame{1.5, {-300, 100, 100, 100}, {190, 1300, 150, 150}},
                      ScaledFrame{1, {-700, 1550, 200, 100}, {-60, -50, 200, 100}},
                      ScaledFrame{2, {900, -50, 100, 100}, {2440, 1500, 200, 200}},
                      ScaledFrame{1, {300, 300, -100, -50}, {840, 1300, 100, 50}}));

TEST_P(SurfaceAtEveryScale, CoversExactlyThePixelsOfItsFrame) {
    startTwoScreens();
    startPlatform(GetParam().scale);
    const auto surface = makeSurface(content_, GetParam().frame);

    surface->show();
    settle();

    EXPECT_EQ(rectOf(*surface), GetParam().pixels);
    EXPECT_EQ(surface->frame(), GetParam().frame);
}

TEST_P(SurfaceAtEveryScale, IsSeenWhereItIs) {
    startTwoScreens();
    startPlatform(GetParam().scale);
    whitenRoot();
    const auto surface = makeSurface(content_, GetParam().frame);

    surface->show();
    settle();

    const PixelRect seen = GetParam().pixels.intersected({.x = 0, .y = 0, .width = 2560, .height = 1600});
    EXPECT_EQ(pixelsOf(white, seen), 0);
    EXPECT_EQ(pixelsOf(white), 2560 * 1600 - seen.width * seen.height);
}

TEST_F(SurfaceGeometry, FollowsItsFrameAtOnceWhileItIsShown) {
    startTwoScreens();
    startPlatform(1.5);
    const auto surface = makeSurface(content_, {.x = 0, .y = 0, .width = 100, .height = 100});
    surface->show();

    surface->setFrame({.x = 33, .y = 35, .width = 101, .height = 75});
    static_cast<void>(platform().pointerLocation());

    EXPECT_EQ(rectOf(*surface), (PixelRect{.x = 689, .y = 1435, .width = 152, .height = 113}));
}

TEST_F(SurfaceGeometry, IsDrawnInItsNewSizeBeforeItIsSeenInIt) {
    startDesktop();
    startPlatform();
    const auto surface = makeSurface(content_, {.x = 0, .y = 0, .width = 100, .height = 100});
    surface->show();
    const int before = content_.drawings;

    surface->setFrame({.x = 0, .y = 0, .width = 200, .height = 100});

    EXPECT_EQ(content_.drawings, before + 1);
}

TEST_F(SurfaceGeometry, IsMovedWithoutBeingDrawnAgain) {
    startDesktop();
    startPlatform();
    const auto surface = makeSurface(content_, {.x = 0, .y = 0, .width = 100, .height = 100});
    surface->show();
    settle();
    const int before = content_.drawings;

    surface->setFrame({.x = 50, .y = 60, .width = 100, .height = 100});
    settle();

    EXPECT_EQ(content_.drawings, before);
    EXPECT_EQ(rectOf(*surface), (PixelRect{.x = 50, .y = 640, .width = 100, .height = 100}));
}

TEST_F(SurfaceGeometry, IsHiddenAtFirst) {
    startDesktop();
    startPlatform();
    const auto surface = makeSurface(content_, {.x = 100, .y = 100, .width = 200, .height = 100});

    settle();

    EXPECT_FALSE(surface->isVisible());
    EXPECT_FALSE(isOnRoot(*surface));
}

TEST_F(SurfaceGeometry, StaysMappedOffTheRootWhileItIsHidden) {
    startDesktop();
    startPlatform();
    const auto surface = makeSurface(content_, {.x = 100, .y = 100, .width = 200, .height = 100});
    surface->show();
    settle();
    ASSERT_TRUE(isOnRoot(*surface));

    surface->hide();
    settle();

    EXPECT_FALSE(surface->isVisible());
    EXPECT_FALSE(isOnRoot(*surface));
    EXPECT_TRUE(desktop().windows().isViewable(windowOf(*surface)));
}

TEST_F(SurfaceGeometry, ComesBackInTheSameWindowWithTheFrameItWasGivenMeanwhile) {
    startDesktop();
    startPlatform();
    const auto surface = makeSurface(content_, {.x = 100, .y = 100, .width = 200, .height = 100});
    surface->show();
    const xcb_window_t window = windowOf(*surface);
    surface->hide();

    surface->setFrame({.x = 10, .y = 20, .width = 30, .height = 40});
    settle();
    ASSERT_FALSE(isOnRoot(*surface));
    surface->show();
    settle();

    EXPECT_EQ(windowOf(*surface), window);
    EXPECT_EQ(rectOf(*surface), (PixelRect{.x = 10, .y = 740, .width = 30, .height = 40}));
}

TEST_F(SurfaceGeometry, LeavesTheScreenWhenItIsDestroyed) {
    startDesktop();
    startPlatform();
    whitenRoot();
    auto surface = makeSurface(content_, {.x = 100, .y = 100, .width = 200, .height = 100});
    surface->show();
    settle();
    ASSERT_EQ(pixelsOf(blue), 200 * 100);

    surface.reset();
    settle();

    EXPECT_EQ(pixelsOf(white), 1280 * 800);
}

TEST_F(SurfaceGeometry, LiesWhollyOffTheScreenWithoutHarm) {
    startDesktop();
    startPlatform();
    whitenRoot();
    const auto surface = makeSurface(content_, {.x = 2000, .y = 2000, .width = 200, .height = 100});

    surface->show();
    settle();

    EXPECT_TRUE(surface->isVisible());
    EXPECT_EQ(pixelsOf(white), 1280 * 800);
    EXPECT_EQ(rectOf(*surface), (PixelRect{.x = 2000, .y = -1300, .width = 200, .height = 100}));
}

constexpr double endless = std::numeric_limits<double>::infinity();

class SurfaceOfEveryWildFrame : public SurfaceGeometry, public ::testing::WithParamInterface<Rect> {};

class SurfaceOverTheWholeScreen : public SurfaceOfEveryWildFrame {};

INSTANTIATE_TEST_SUITE_P(Frames, SurfaceOverTheWholeScreen,
                         ::testing::Values(Rect{.x = -100, .y = -100, .width = 3000, .height = 2000},
                                           Rect{.x = -1e7, .y = -1e7, .width = 2e7, .height = 2e7},
                                           Rect{.x = -1e12, .y = -1e12, .width = 2e12, .height = 2e12},
                                           Rect{.x = -8e307, .y = -8e307, .width = 1.6e308, .height = 1.6e308},
                                           Rect{.x = -20000, .y = 0, .width = 40000, .height = 800}));

TEST_P(SurfaceOverTheWholeScreen, LeavesNoPixelUncovered) {
    startDesktop();
    startPlatform(1);
    whitenRoot();
    const auto surface = makeSurface(content_, GetParam());

    surface->show();
    settle();

    EXPECT_EQ(pixelsOf(white), 0);
    EXPECT_EQ(surface->frame(), GetParam());
}

TEST_P(SurfaceOverTheWholeScreen, LeavesNoPixelUncoveredWhileItLetsTheMouseThrough) {
    startDesktop();
    startPlatform(2);
    whitenRoot();
    const auto surface = makeSurface(content_, GetParam());
    surface->setIgnoresMouseEvents(true);

    surface->show();
    settle();

    EXPECT_EQ(pixelsOf(white), 0);
}

class SurfaceOffTheScreen : public SurfaceOfEveryWildFrame {};

INSTANTIATE_TEST_SUITE_P(Frames, SurfaceOffTheScreen,
                         ::testing::Values(Rect{.x = 1e7, .y = 1e7, .width = 1e7, .height = 1e7},
                                           Rect{.x = -1e7, .y = 0, .width = 100, .height = 100},
                                           Rect{.x = 40000, .y = 0, .width = 100, .height = 100},
                                           Rect{.x = endless, .y = endless, .width = 100, .height = 100},
                                           Rect{.x = 100, .y = 100, .width = 0, .height = 0},
                                           Rect{.x = 100, .y = 100, .width = 50, .height = 0},
                                           Rect{.x = 0, .y = 0, .width = 0, .height = 0}));

TEST_P(SurfaceOffTheScreen, CoversNothingAndComesBack) {
    startDesktop();
    startPlatform();
    whitenRoot();
    const auto surface = makeSurface(content_, GetParam());

    surface->show();
    settle();
    EXPECT_EQ(pixelsOf(white), 1280 * 800);

    surface->setFrame({.x = 100, .y = 100, .width = 200, .height = 100});
    settle();
    EXPECT_EQ(pixelsOf(blue), 200 * 100);
}

TEST_F(SurfaceGeometry, SurvivesAFrameOfNoNumbers) {
    startDesktop();
    startPlatform();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    const auto surface = makeSurface(content_, {.x = notANumber, .y = 0, .width = notANumber, .height = 100});

    surface->show();
    surface->setIgnoresMouseEvents(true);
    surface->setFrame({.x = 100, .y = 100, .width = 200, .height = 100});
    settle();

    EXPECT_EQ(pixelsOf(blue), 200 * 100);
}

TEST_F(SurfaceGeometry, IsPlacedAnewFromTheSameFrameWhenThePrimaryScreenMoves) {
    startTwoScreens();
    startPlatform();
    const auto surface = makeSurface(content_, {.x = 100, .y = 100, .width = 200, .height = 100});
    surface->show();
    settle();
    ASSERT_EQ(rectOf(*surface), (PixelRect{.x = 740, .y = 1400, .width = 200, .height = 100}));

    desktop().removeMonitor("P");
    desktop().addMonitor("P", {.x = 1280, .y = 800, .width = 1280, .height = 800}, true);

    await("the surface at its place on the moved screen",
          [&] { return rectOf(*surface) == PixelRect{.x = 1380, .y = 1400, .width = 200, .height = 100}; });
    EXPECT_EQ(surface->frame(), (Rect{.x = 100, .y = 100, .width = 200, .height = 100}));
}

TEST_F(SurfaceGeometry, HasMovedWhenTheChangeOfScreensIsAnnounced) {
    startTwoScreens();
    startPlatform();
    const auto surface = makeSurface(content_, {.x = 100, .y = 100, .width = 200, .height = 100});
    surface->show();
    settle();
    PixelRect whenAnnounced;
    QObject::connect(&platform(), &DesktopPlatform::screensChanged, &platform(), [&] {
        static_cast<void>(platform().pointerLocation());
        whenAnnounced = rectOf(*surface);
    });

    desktop().removeMonitor("P");

    // The other monitor is the first one now.
    await("an announcement", [&] { return platform().screens().front().name == "U" && !whenAnnounced.isEmpty(); });
    EXPECT_EQ(whenAnnounced, (PixelRect{.x = 740, .y = 600, .width = 200, .height = 100}));
}

TEST_F(SurfaceGeometry, TakesNoFocusAndIsManagedByNobody) {
    startDesktop({.windowManager = support::WindowManager::openbox});
    startPlatform();
    const auto surface = makeSurface(content_, {.x = 100, .y = 100, .width = 200, .height = 100});
    const xcb_window_t focus = desktop().windows().focus();

    surface->show();
    settle();

    EXPECT_EQ(desktop().windows().focus(), focus);
    EXPECT_TRUE(desktop().windows().isOverrideRedirect(windowOf(*surface)));
    EXPECT_EQ(desktop().windows().depth(windowOf(*surface)), 32);
}

TEST_F(SurfaceGeometry, IsKnownToScreenReadersByItsName) {
    startDesktop();
    startPlatform();
    const auto surface = makeSurface(content_, {.x = 100, .y = 100, .width = 200, .height = 100});
    surface->show();

    surface->setAccessibleName(QStringLiteral("Overlay, Circle"));

    const QWindowList windows = QGuiApplication::topLevelWindows();
    ASSERT_EQ(windows.size(), 1);
    const QAccessibleInterface* accessible = windows.first()->accessibleRoot();
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Overlay, Circle"));
    EXPECT_FALSE(accessible->state().invisible);
    EXPECT_EQ(accessible->rect(), QRect(100, 600, 200, 100));
}

TEST_F(SurfaceGeometry, TellsScreenReadersThatItIsHiddenAndGone) {
    startDesktop();
    startPlatform();
    auto surface = makeSurface(content_, {.x = 100, .y = 100, .width = 200, .height = 100});
    surface->setAccessibleName(QStringLiteral("Overlay, Rectangle"));

    EXPECT_TRUE(QGuiApplication::topLevelWindows().first()->accessibleRoot()->state().invisible);
    surface.reset();
    EXPECT_TRUE(QGuiApplication::topLevelWindows().isEmpty());
}

}  // namespace
}  // namespace pallwick::x11
