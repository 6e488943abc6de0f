#include <PallwickMac/Platform/X11/ShapeRows.h>
#include <PallwickMac/Platform/X11/X11OverlaySurface.h>
#include <support/TestClient.h>
#include <xcb/res.h>

#include <QGuiApplication>
#include <QPalette>

#include "SurfaceTest.h"
#include "WindowShape.h"

namespace pallwick::x11 {
namespace {

using support::Reply;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Rect someFrame{.x = 100, .y = 100, .width = 200, .height = 120};
constexpr PixelRect somePixels{.x = 100, .y = 580, .width = 200, .height = 120};
constexpr PixelRect wholeWindow{.x = 0, .y = 0, .width = 200, .height = 120};
const EffectLayer ellipse{.shape = EffectLayer::Shape::ellipse};
const EffectLayer roundedRectangle{.shape = EffectLayer::Shape::roundedRectangle, .cornerRadius = 16};

/// What a surface shows and where it takes the mouse.
class SurfacePicture : public SurfaceTest {
protected:
    void start(double scale = 1) {
        startDesktop();
        startPlatform(scale);
        whitenRoot();
    }

    [[nodiscard]] std::unique_ptr<OverlaySurface> showSurface(const EffectLayer& layer, bool ignoresMouse) {
        auto surface = makeSurface(content_, someFrame);
        surface->setEffectLayer(layer);
        surface->setIgnoresMouseEvents(ignoresMouse);
        surface->show();
        settle();
        return surface;
    }

    [[nodiscard]] std::vector<PixelRect> boundingShapeOf(const OverlaySurface& surface) {
        return boundingShape(x(), windowOf(surface));
    }

    [[nodiscard]] static std::vector<PixelRect> rowsOf(const EffectLayer& layer) {
        return shapeRows(layer.shape, {.x = 0, .y = 0, .width = 200, .height = 120}, layer.cornerRadius, wholeWindow);
    }

    /// A white window with red stripes beneath the surface and all around it.
    [[nodiscard]] static support::TestClient::Options stripedClient() {
        return {.rect = {.x = 0, .y = 400, .width = 600, .height = 400}, .undecorated = true};
    }

    [[nodiscard]] int pixelsThat(const support::ColourTest& test, const PixelRect& area) {
        return desktop().screenshot().count(support::PixelArea::rectangle({area.x, area.y, area.width, area.height}),
                                            test);
    }

    /// Where in the window's own pixels the alpha is less than full; what is beneath does not show in those.
    [[nodiscard]] std::vector<std::size_t> translucentPixelsOf(const OverlaySurface& surface) {
        const Reply<xcb_get_image_reply_t> image(
            xcb_get_image_reply(x().get(),
                                xcb_get_image(x().get(), XCB_IMAGE_FORMAT_Z_PIXMAP, windowOf(surface), 0, 0,
                                              wholeWindow.width, wholeWindow.height, 0xFFFFFFFF),
                                nullptr));
        std::vector<std::size_t> found;
        const std::size_t count = wholeWindow.width * wholeWindow.height;
        if (!image || image->depth != 32 || image->length != count) {
            ADD_FAILURE() << "no picture of the surface's window";
            return found;
        }
        const std::uint8_t* bytes = xcb_get_image_data(image.get());
        for (std::size_t i = 0; i < count; ++i) {
            if (bytes[4 * i + 3] != 0xFF) {
                found.push_back(i);
            }
        }
        return found;
    }

    [[nodiscard]] static int differentPixels(const support::Screenshot& a, const support::Screenshot& b,
                                             const PixelRect& area) {
        int count = 0;
        for (int y = area.y; y < area.maxY(); ++y) {
            for (int x = area.x; x < area.maxX(); ++x) {
                count += a.at({.x = x, .y = y}) == b.at({.x = x, .y = y}) ? 0 : 1;
            }
        }
        return count;
    }

    /// A compositing manager that does nothing, but says that it is there.
    void startCompositor() {
        compositor_ = makeWindow({.x = -10, .y = -10, .width = 1, .height = 1}, true);
        setCompositor(compositor_);
        settle();
    }

    /// Returns once what lies beneath the surface is left to the compositing manager.
    void awaitTrustInCompositor(const OverlaySurface& surface) {
        await("a surface without a bounding shape",
              [&] { return boundingShapeOf(surface) == std::vector<PixelRect>{wholeWindow}; });
        settle();
    }

    void stopCompositor() {
        setCompositor(support::noWindow);
        settle();
    }

    xcb_window_t compositor_ = support::noWindow;
};

TEST_F(SurfacePicture, TakesTheMouseEverywhereAtFirst) {
    start();

    const auto surface = showSurface(ellipse, false);

    EXPECT_THAT(inputShape(x(), windowOf(*surface)), ElementsAre(wholeWindow));
}

TEST_F(SurfacePicture, TakesTheMouseNowhereWhenItIgnoresIt) {
    start();
    const auto surface = showSurface(ellipse, false);

    surface->setIgnoresMouseEvents(true);
    settle();

    EXPECT_THAT(inputShape(x(), windowOf(*surface)), IsEmpty());
}

TEST_F(SurfacePicture, KeepsIgnoringTheMouseThroughHidingShowingAndGrowing) {
    start();
    const auto surface = showSurface(roundedRectangle, true);

    surface->hide();
    surface->show();
    surface->setFrame({.x = 100, .y = 100, .width = 300, .height = 200});
    settle();

    EXPECT_THAT(inputShape(x(), windowOf(*surface)), IsEmpty());
}

TEST_F(SurfacePicture, TakesTheMouseAgainOverAllItHasGrownTo) {
    start();
    const auto surface = showSurface(roundedRectangle, true);

    surface->setFrame({.x = 100, .y = 100, .width = 300, .height = 200});
    surface->setIgnoresMouseEvents(false);
    settle();

    EXPECT_THAT(inputShape(x(), windowOf(*surface)),
                ElementsAre(PixelRect{.x = 0, .y = 0, .width = 300, .height = 200}));
}

TEST_F(SurfacePicture, LetsClicksThroughToTheWindowBeneathWhileItIgnoresTheMouse) {
    start();
    support::TestClient beneath(desktop(), {.rect = {.x = 0, .y = 400, .width = 600, .height = 400}});
    const auto surface = showSurface(roundedRectangle, true);

    desktop().pointer().click({.x = 150, .y = 620});
    settle();

    EXPECT_EQ(beneath.count("press 1 150 220"), 1);
    EXPECT_THAT(content_.events, IsEmpty());
}

TEST_F(SurfacePicture, KeepsClicksFromTheWindowBeneathWhileItTakesTheMouse) {
    start();
    support::TestClient beneath(desktop(), {.rect = {.x = 0, .y = 400, .width = 600, .height = 400}});
    // The corner of its frame, outside the ellipse.
    const auto surface = showSurface(ellipse, false);

    desktop().pointer().click({.x = 101, .y = 581});
    settle();

    EXPECT_EQ(beneath.count("press"), 0);
    EXPECT_THAT(content_.events, ElementsAre("entered", "down 1,1", "up"));
}

class EveryLayerShape : public SurfacePicture, public ::testing::WithParamInterface<EffectLayer> {};

INSTANTIATE_TEST_SUITE_P(Shapes, EveryLayerShape, ::testing::Values(ellipse, roundedRectangle));

TEST_P(EveryLayerShape, CutsAnOpaqueSurfaceOutWhereNothingComposites) {
    start();

    const auto surface = showSurface(GetParam(), true);

    EXPECT_EQ(boundingShapeOf(*surface), rowsOf(GetParam()));
    EXPECT_EQ(pixelsOf(white, {.x = 100, .y = 580, .width = 1, .height = 1}), 1);
    EXPECT_EQ(pixelsOf(blue, {.x = 200, .y = 640, .width = 1, .height = 1}), 1);
}

TEST_P(EveryLayerShape, LeavesTheWholeRectangleWhileItTakesTheMouse) {
    start();

    const auto surface = showSurface(GetParam(), false);

    EXPECT_THAT(boundingShapeOf(*surface), ElementsAre(wholeWindow));
    EXPECT_EQ(pixelsOf(blue, somePixels), 200 * 120);
}

TEST_P(EveryLayerShape, LeavesTheWholeRectangleUnderACompositor) {
    start();
    startCompositor();

    const auto surface = showSurface(GetParam(), true);
    awaitTrustInCompositor(*surface);

    EXPECT_THAT(boundingShapeOf(*surface), ElementsAre(wholeWindow));
}

TEST_P(EveryLayerShape, IsCutOutAnewWhenEditingEnds) {
    start();
    const auto surface = showSurface(GetParam(), false);

    surface->setIgnoresMouseEvents(true);
    settle();

    EXPECT_EQ(boundingShapeOf(*surface), rowsOf(GetParam()));
}

TEST_P(EveryLayerShape, IsCutOutWhenTheCompositorStops) {
    start();
    startCompositor();
    const auto surface = showSurface(GetParam(), true);
    awaitTrustInCompositor(*surface);

    stopCompositor();

    EXPECT_EQ(boundingShapeOf(*surface), rowsOf(GetParam()));
    EXPECT_FALSE(platform().capabilities().compositing);
}

TEST_P(EveryLayerShape, IsWholeAgainAWhileAfterACompositorHasStarted) {
    start();
    const auto surface = showSurface(GetParam(), true);

    startCompositor();
    EXPECT_EQ(boundingShapeOf(*surface), rowsOf(GetParam()));

    awaitTrustInCompositor(*surface);
    EXPECT_THAT(boundingShapeOf(*surface), ElementsAre(wholeWindow));
    EXPECT_TRUE(platform().capabilities().compositing);
}

TEST_F(SurfacePicture, FollowsALayerThatChangesItsShape) {
    start();
    const auto surface = showSurface(roundedRectangle, true);

    surface->setEffectLayer(ellipse);
    settle();

    EXPECT_EQ(boundingShapeOf(*surface), rowsOf(ellipse));
}

TEST_F(SurfacePicture, IsCutOutInPixelsOfTheScale) {
    start(2);

    const auto surface = showSurface(roundedRectangle, true);

    EXPECT_EQ(boundingShapeOf(*surface),
              shapeRows(roundedRectangle.shape, {.x = 0, .y = 0, .width = 400, .height = 240}, 32,
                        {.x = 0, .y = 0, .width = 400, .height = 240}));
}

TEST_F(SurfacePicture, CoversNothingWhereAHugeEllipseDoesNotReach) {
    start();
    const auto surface = makeSurface(content_, {.x = -100000, .y = -100000, .width = 101280, .height = 100800});
    surface->setEffectLayer(ellipse);
    surface->setIgnoresMouseEvents(true);

    surface->show();
    settle();

    // The screen lies in the frame's corner, thousands of pixels outside the ellipse.
    EXPECT_EQ(pixelsOf(white), 1280 * 800);
}

TEST_F(SurfacePicture, MixesInWhatLiesBeneathItselfOnlyWhileNothingComposites) {
    start();
    const support::TestClient beneath(desktop(), stripedClient());
    content_.state = DrawingState{.size = {.width = 200, .height = 120}};
    content_.colour = QColor(0, 128, 255, 128);
    const auto surface = showSurface({.hidden = true}, true);
    const PixelRect betweenStripes{.x = 106, .y = 600, .width = 4, .height = 40};
    const support::ColourTest isMixedWithWhite = support::isNear({.red = 127, .green = 191, .blue = 255}, 2);
    // A compositing manager that draws nothing leaves translucent pixels as they are: over black.
    const support::ColourTest isTranslucent = support::isNear({.red = 0, .green = 64, .blue = 128}, 2);
    EXPECT_EQ(pixelsThat(isMixedWithWhite, betweenStripes), 4 * 40);

    startCompositor();
    EXPECT_EQ(pixelsThat(isMixedWithWhite, betweenStripes), 4 * 40);
    await("a translucent surface", [&] { return pixelsThat(isTranslucent, betweenStripes) == 4 * 40; });

    stopCompositor();
    EXPECT_EQ(pixelsThat(isMixedWithWhite, betweenStripes), 4 * 40);
}

TEST_F(SurfacePicture, IsOpaqueAndShowsWhatLiesBeneathWhereNothingComposites) {
    start();
    const support::TestClient beneath(desktop(), stripedClient());
    const support::Screenshot before = desktop().screenshot();
    content_.colour = QColor(0, 0, 0, 0);

    const auto surface = showSurface({.hidden = true, .cover = QColor(10, 20, 30, 40)}, false);

    EXPECT_THAT(translucentPixelsOf(*surface), IsEmpty());
    EXPECT_EQ(differentPixels(before, desktop().screenshot(), somePixels), 0);
}

TEST_F(SurfacePicture, IsOpaqueWithFrostedGlassWhereNothingComposites) {
    start();
    const support::TestClient beneath(desktop(), stripedClient());
    content_.colour = QColor(0, 0, 0, 0);

    const auto surface = showSurface({.alpha = 0.5, .shape = EffectLayer::Shape::ellipse}, false);

    EXPECT_THAT(translucentPixelsOf(*surface), IsEmpty());
}

TEST_F(SurfacePicture, CoversInTheTintsColourWhileWhatLiesBeneathCannotBeCaptured) {
    start();
    const support::TestClient beneath(desktop(), stripedClient());
    content_.colour = QColor(0, 0, 0, 0);
    const auto surface = showSurface({.alpha = 0.5, .cover = QColor(10, 20, 30, 40)}, false);
    const support::Colour cover{.red = 10, .green = 20, .blue = 30};
    const support::Screenshot glass = desktop().screenshot();
    ASSERT_EQ(pixelsOf(cover, somePixels), 0);
    // Inside another window it has no place among those of the screen: nothing says what lies beneath it.
    const xcb_window_t container = makeWindow(somePixels, true);

    xcb_reparent_window(x().get(), windowOf(*surface), container, 0, 0);
    x().roundTrip();
    await("the cover", [&] { return pixelsOf(cover, somePixels) == 200 * 120; });

    xcb_reparent_window(x().get(), windowOf(*surface), x().root(), somePixels.x, somePixels.y);
    destroy(container);
    await("the glass", [&] { return differentPixels(glass, desktop().screenshot(), somePixels) == 0; });
}

TEST_F(SurfacePicture, IsShownByTwoWindowsAlikeWhileACompositorMayFadeOneIn) {
    start();
    const support::TestClient beneath(desktop(), stripedClient());
    content_.colour = QColor(0, 128, 255, 128);
    const auto surface = showSurface(roundedRectangle, true);
    const auto shownBy = [this](const support::PixelRect& rect) {
        std::vector<xcb_window_t> windows = desktop().windows().stacking();
        std::erase_if(windows, [&](xcb_window_t window) { return desktop().windows().rect(window) != rect; });
        return windows;
    };
    const auto expectAlike = [&](const PixelRect& at) {
        const std::vector<xcb_window_t> windows =
            shownBy({.x = at.x, .y = at.y, .width = at.width, .height = at.height});
        ASSERT_THAT(windows, ::testing::SizeIs(2));
        EXPECT_EQ(windows.front(), windowOf(*surface));
        EXPECT_EQ(boundingShape(x(), windows.front()), boundingShape(x(), windows.back()));
        const support::Screenshot both = desktop().screenshot();
        xcb_unmap_window(x().get(), windows.back());
        x().roundTrip();
        EXPECT_EQ(differentPixels(both, desktop().screenshot(), at), 0);
        xcb_map_window(x().get(), windows.back());
        x().roundTrip();
    };

    startCompositor();
    expectAlike(somePixels);
    content_.colour = QColor(255, 0, 0, 90);
    surface->setNeedsDisplay();
    settle();
    expectAlike(somePixels);
    surface->setFrame({.x = 160, .y = 130, .width = 200, .height = 120});
    settle();
    expectAlike({.x = 160, .y = 550, .width = 200, .height = 120});
    stopCompositor();

    EXPECT_THAT(shownBy({.x = 160, .y = 550, .width = 200, .height = 120}), ::testing::ElementsAre(windowOf(*surface)));
}

TEST_F(SurfacePicture, IsOpaqueInANewWindowWhileACompositorTakesThePlaceOfAnother) {
    start();
    const support::TestClient beneath(desktop(), stripedClient());
    content_.colour = QColor(0, 128, 255, 128);
    startCompositor();
    EffectLayer clear = roundedRectangle;
    clear.hidden = true;
    const auto surface = showSurface(clear, true);
    awaitTrustInCompositor(*surface);
    ASSERT_FALSE(translucentPixelsOf(*surface).empty());
    // Clear of the corners, which are cut off.
    const std::size_t middle = 60 * wholeWindow.width + 100;
    const xcb_window_t former = windowOf(*surface);

    startCompositor();

    EXPECT_NE(windowOf(*surface), former);
    EXPECT_EQ(boundingShapeOf(*surface), rowsOf(roundedRectangle));
    EXPECT_EQ(boundingShape(x(), former), rowsOf(roundedRectangle));
    EXPECT_THAT(translucentPixelsOf(*surface), ::testing::Not(::testing::Contains(middle)));
    awaitTrustInCompositor(*surface);
    EXPECT_THAT(translucentPixelsOf(*surface), ::testing::Contains(middle));
}

TEST_F(SurfacePicture, LeavesNoFormerWindowWhereItIsHidden) {
    start();
    const auto surface = showSurface(roundedRectangle, false);
    startCompositor();

    surface->hide();
    settle();

    EXPECT_EQ(pixelsOf(white), 1280 * 800);
}

TEST_F(SurfacePicture, TakesTheMouseWhileItsFormerWindowIsInFront) {
    start();
    const auto surface = showSurface(roundedRectangle, false);
    startCompositor();

    desktop().pointer().click({.x = 200, .y = 640});
    settle();

    EXPECT_THAT(content_.events, ElementsAre("entered", "down 100,60", "up"));
}

TEST_F(SurfacePicture, ShowsWhatIsBeneathUnderARealCompositor) {
    start();
    desktop().startCompositor();
    const support::TestClient beneath(desktop(), {.rect = {.x = 0, .y = 400, .width = 600, .height = 400}});
    content_.colour = QColor(0, 128, 255, 128);

    const auto surface = showSurface({.hidden = true}, true);

    const support::ColourTest isHalfOfItOverWhite = support::isNear({.red = 127, .green = 191, .blue = 255}, 2);
    await("half of it over the client's white ground",
          [&] { return isHalfOfItOverWhite(desktop().screenshot().at({.x = 110, .y = 600})); });
}

TEST_F(SurfacePicture, IsDrawnAgainWhenThePaletteChanges) {
    start();
    const auto surface = showSurface(roundedRectangle, false);
    const int before = content_.drawings;

    content_.colour = QColor(255, 0, 0);
    QGuiApplication::setPalette(QPalette(Qt::darkGreen));
    settle();

    EXPECT_EQ(content_.drawings, before + 1);
    EXPECT_EQ(pixelsOf({.red = 255, .green = 0, .blue = 0}, somePixels), 200 * 120);
}

TEST_F(SurfacePicture, IsDrawnOnceForManyRequests) {
    start();
    const auto surface = showSurface(roundedRectangle, false);
    const int before = content_.drawings;

    surface->setNeedsDisplay();
    surface->setNeedsDisplay();
    surface->setNeedsDisplay();
    settle();

    EXPECT_EQ(content_.drawings, before + 1);
}

TEST_F(SurfacePicture, IsNotDrawnWhileItIsHidden) {
    start();
    const auto surface = showSurface(roundedRectangle, false);
    surface->hide();
    const int before = content_.drawings;

    surface->setNeedsDisplay();
    surface->setFrame({.x = 0, .y = 0, .width = 50, .height = 50});
    settle();

    EXPECT_EQ(content_.drawings, before);
}

TEST_F(SurfacePicture, IsDrawnAgainWhenItsStateDiffersAndOnlyThen) {
    start();
    content_.state = DrawingState{.size = {.width = 200, .height = 120}, .tint = QColor(1, 2, 3)};
    const auto surface = showSurface(roundedRectangle, false);
    const int before = content_.drawings;

    surface->setNeedsDisplay();
    settle();
    EXPECT_EQ(content_.drawings, before);

    content_.state->tint = QColor(3, 2, 1);
    surface->setNeedsDisplay();
    settle();
    EXPECT_EQ(content_.drawings, before + 1);
}

TEST_F(SurfacePicture, StaysWholeWithoutBeingDrawnAfterSomethingWasAboveIt) {
    start();
    const auto surface = showSurface(roundedRectangle, false);
    const int before = content_.drawings;

    const xcb_window_t menu = makeWindow({.x = 50, .y = 550, .width = 400, .height = 200}, true);
    ASSERT_EQ(pixelsOf(blue), 0);
    destroy(menu);
    settle();

    EXPECT_EQ(pixelsOf(blue, somePixels), 200 * 120);
    EXPECT_EQ(content_.drawings, before);
}

TEST_F(SurfacePicture, ShowsAPictureLargerThanOneRequest) {
    startDesktop({.server = {.width = 4000, .height = 2200}});
    startPlatform();
    whitenRoot();
    const auto surface = makeSurface(content_, {.x = 0, .y = 0, .width = 4000, .height = 2200});

    surface->show();
    settle();

    EXPECT_EQ(pixelsOf(blue), 4000 * 2200);
}

TEST_F(SurfacePicture, LeavesNoPictureOnTheServerOnceItIsDestroyed) {
    start();
    const auto pixmapBytes = [this](xcb_window_t window) {
        const Reply<xcb_res_query_client_pixmap_bytes_reply_t> reply(xcb_res_query_client_pixmap_bytes_reply(
            x().get(), xcb_res_query_client_pixmap_bytes(x().get(), window), nullptr));
        return reply ? reply->bytes : 0xFFFFFFFFU;
    };
    auto surface = showSurface(roundedRectangle, false);
    const xcb_window_t window = windowOf(*surface);
    const std::uint32_t shown = pixmapBytes(window);
    ASSERT_GE(shown, 200U * 120U * 4U);

    surface.reset();
    settle();

    EXPECT_LE(pixmapBytes(window), shown - 200U * 120U * 4U);
}

}  // namespace
}  // namespace pallwick::x11
