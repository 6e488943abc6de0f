#include <PallwickMac/Platform/X11/SurfaceWindow.h>
#include <PallwickMac/Platform/X11/SurfaceWindowPool.h>

#include "SurfaceTest.h"
#include "WindowShape.h"

namespace pallwick::x11 {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The native window by itself.
class SurfaceWindowTest : public SurfaceTest {
protected:
    void start() {
        startDesktop();
        connection_.emplace();
    }

    /// Where the server has it, once it has done all that was asked of it.
    [[nodiscard]] PixelRect rectOf(const SurfaceWindow& window) {
        connection_->flush();
        static_cast<void>(internAtom(connection_->xcb(), "_PALLWICK_TEST"));
        const auto rect = desktop().windows().rect(window.id()).value_or(support::PixelRect{});
        return {.x = rect.x, .y = rect.y, .width = rect.width, .height = rect.height};
    }

    std::optional<Connection> connection_;
};

constexpr PixelRect someArea{.x = 30, .y = 40, .width = 200, .height = 100};

TEST_F(SurfaceWindowTest, ComesToItsPlaceThoughTheWindowBelowItIsGone) {
    start();
    SurfaceWindow window(*connection_);
    const xcb_window_t below = makeWindow({.x = 0, .y = 0, .width = 100, .height = 100});
    destroy(below);

    window.place(someArea, below);

    EXPECT_EQ(rectOf(window), someArea);
}

TEST_F(SurfaceWindowTest, ComesDirectlyAboveTheWindowBelowIt) {
    start();
    SurfaceWindow window(*connection_);
    const xcb_window_t below = makeWindow({.x = 0, .y = 0, .width = 100, .height = 100});
    const xcb_window_t above = makeWindow({.x = 0, .y = 0, .width = 100, .height = 100}, true);

    window.place(someArea, below);

    ASSERT_EQ(rectOf(window), someArea);
    EXPECT_TRUE(areStacked({below, window.id(), above}));
}

TEST_F(SurfaceWindowTest, ParksOutsideTheRootWhateverItsSize) {
    start();
    SurfaceWindow window(*connection_);
    window.place(someArea);

    window.park(32000, 32000);

    const PixelRect parked = rectOf(window);
    EXPECT_LE(parked.maxX(), 0);
    EXPECT_LE(parked.maxY(), 0);
}

TEST_F(SurfaceWindowTest, CannotBePlacedWhereXHasNoCoordinates) {
    EXPECT_TRUE(SurfaceWindow::isPlaceable({.x = -32768, .y = 32767, .width = 1, .height = 32511}));
    EXPECT_FALSE(SurfaceWindow::isPlaceable({.x = -32769, .y = 0, .width = 1, .height = 1}));
    EXPECT_FALSE(SurfaceWindow::isPlaceable({.x = 0, .y = 32768, .width = 1, .height = 1}));
    EXPECT_FALSE(SurfaceWindow::isPlaceable({.x = 0, .y = 0, .width = 40000, .height = 1}));
    EXPECT_FALSE(SurfaceWindow::isPlaceable({.x = 0, .y = 0, .width = 0, .height = 1}));
    EXPECT_FALSE(SurfaceWindow::isPlaceable({.x = 0, .y = 0, .width = 1, .height = -1}));
}

TEST_F(SurfaceWindowTest, IsSeenNowhereWithAShapeOfNoPixel) {
    start();
    whitenRoot();
    SurfaceWindow window(*connection_);
    window.place(someArea);

    window.setBoundingShape(std::vector<PixelRect>());

    ASSERT_EQ(rectOf(window), someArea);
    EXPECT_THAT(boundingShape(x(), window.id()), IsEmpty());
    EXPECT_EQ(pixelsOf(white), 1280 * 800);
}

TEST_F(SurfaceWindowTest, IsWholeAgainWithoutAShape) {
    start();
    SurfaceWindow window(*connection_);
    window.place(someArea);
    window.setBoundingShape(std::vector<PixelRect>{{.x = 0, .y = 0, .width = 1, .height = 1}});

    window.setBoundingShape(std::nullopt);

    ASSERT_EQ(rectOf(window), someArea);
    EXPECT_THAT(boundingShape(x(), window.id()), ElementsAre(PixelRect{.x = 0, .y = 0, .width = 200, .height = 100}));
}

TEST_F(SurfaceWindowTest, AsksCompositorsForNoShadowAndNoTranslucency) {
    start();
    const SurfaceWindow window(*connection_);

    ASSERT_FALSE(rectOf(window).isEmpty());
    EXPECT_THAT(desktop().windows().cardinals(window.id(), "_COMPTON_SHADOW"), ElementsAre(0U));
    EXPECT_THAT(desktop().windows().cardinals(window.id(), "_NET_WM_WINDOW_OPACITY"), ElementsAre(0xFFFFFFFFU));
}

TEST_F(SurfaceWindowTest, IsMappedBeforeAnybodyNeedsIt) {
    start();
    startPlatform();

    // The stock of windows that the platform keeps, off the screen.
    std::vector<xcb_window_t> spares = desktop().windows().stacking();
    std::erase_if(spares, [this](xcb_window_t window) {
        return desktop().windows().title(window) != "Pallwick overlay" || !desktop().windows().isViewable(window);
    });

    EXPECT_THAT(spares, ::testing::Not(IsEmpty()));
}

TEST_F(SurfaceWindowTest, ComesFromTheStockAsIfItWereNew) {
    start();
    startPlatform();
    SurfaceWindowPool pool(*connection_);
    std::unique_ptr<SurfaceWindow> window = pool.take();
    const xcb_window_t id = window->id();
    window->place(someArea);
    window->setTakesMouse(false);
    window->setBoundingShape(std::vector<PixelRect>{{.x = 5, .y = 5, .width = 1, .height = 1}});

    pool.giveBack(std::move(window));
    window = pool.take();
    std::vector<std::unique_ptr<SurfaceWindow>> others;
    while (window->id() != id) {
        others.push_back(std::exchange(window, pool.take()));
    }

    EXPECT_TRUE(window->isParked());
    const PixelRect parked = rectOf(*window);
    EXPECT_LE(parked.maxX(), 0);
    EXPECT_THAT(inputShape(x(), id),
                ElementsAre(PixelRect{.x = 0, .y = 0, .width = parked.width, .height = parked.height}));
    EXPECT_THAT(boundingShape(x(), id),
                ElementsAre(PixelRect{.x = 0, .y = 0, .width = parked.width, .height = parked.height}));
}

}  // namespace
}  // namespace pallwick::x11
