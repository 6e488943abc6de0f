#include "OverlayContentViewFixture.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

#include <cmath>
#include <functional>
#include <numbers>
#include <ostream>
#include <string>
#include <vector>

namespace pallwick {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Gt;
using ::testing::Lt;

const QColor accent(20, 40, 230);
const QColor windowBackground(240, 240, 180);
const QColor systemRed(222, 49, 45);

/// Every channel, alpha too, within `tolerance` of `expected`.
MATCHER_P2(IsCloseTo, expected, tolerance, "is close to " + expected.name(QColor::HexArgb).toStdString()) {
    *result_listener << "which is " << arg.name(QColor::HexArgb).toStdString();
    return std::abs(arg.red() - expected.red()) <= tolerance && std::abs(arg.green() - expected.green()) <= tolerance &&
           std::abs(arg.blue() - expected.blue()) <= tolerance && std::abs(arg.alpha() - expected.alpha()) <= tolerance;
}

/// One drawing of the view, read by points.
class Drawing {
public:
    Drawing(const FakeOverlaySurface& surface, double scale) : image_(surface.render(scale)), scale_(scale) {}

    [[nodiscard]] QColor at(double x, double y) const {
        return image_.pixelColor(static_cast<int>(x * scale_), static_cast<int>(y * scale_));
    }

    [[nodiscard]] std::vector<int> alphasInRow(double y, double fromX, double toX) const {
        std::vector<int> alphas;
        for (int pixel = static_cast<int>(fromX * scale_); pixel < static_cast<int>(toX * scale_); ++pixel) {
            alphas.push_back(image_.pixelColor(pixel, static_cast<int>(y * scale_)).alpha());
        }
        return alphas;
    }

    friend bool operator==(const Drawing&, const Drawing&) = default;

private:
    QImage image_;
    double scale_;
};

class OverlayContentViewDrawing : public OverlayContentViewFixture, public ::testing::WithParamInterface<double> {
protected:
    OverlayContentViewDrawing() { setColors(accent, windowBackground); }
    ~OverlayContentViewDrawing() override { QGuiApplication::setPalette(previousPalette_); }

    static void setColors(const QColor& highlight, const QColor& window) {
        QPalette palette;
        palette.setColor(QPalette::Highlight, highlight);
        palette.setColor(QPalette::Window, window);
        QGuiApplication::setPalette(palette);
    }

    /// Orange at `opacity` percent.
    void tint(std::int64_t opacity, bool editMode) {
        overlay.style = BlurStyle(50, "#FF8000", opacity);
        view.update(overlay, editMode);
    }

    [[nodiscard]] Drawing drawing() const { return {surface, GetParam()}; }

private:
    QPalette previousPalette_ = QGuiApplication::palette();
};

TEST_P(OverlayContentViewDrawing, FillsWithTheTintAtItsOpacity) {
    tint(50, false);

    const Drawing drawn = drawing();

    EXPECT_THAT(drawn.at(150, 100), IsCloseTo(QColor(255, 128, 0, 128), 2));
    EXPECT_THAT(drawn.at(3, 100), IsCloseTo(QColor(255, 128, 0, 128), 2));
    EXPECT_THAT(drawn.at(150, 196), IsCloseTo(QColor(255, 128, 0, 128), 2));
}

TEST_P(OverlayContentViewDrawing, DrawsBlackForAMisspeltColour) {
    overlay.style = BlurStyle(50, "#FF8000", 100);
    overlay.style.colorHex = "#GG0000";
    view.update(overlay, false);

    EXPECT_EQ(drawing().at(150, 100), QColor(0, 0, 0, 255));
}

TEST_P(OverlayContentViewDrawing, HoldsAnExtremeOpacityWithinItsRange) {
    overlay.style = BlurStyle(50, "#FF8000", 100);
    overlay.style.opacity = 250;
    view.update(overlay, false);
    const QColor strong = drawing().at(150, 100);
    overlay.style.opacity = -250;
    view.update(overlay, false);

    EXPECT_EQ(strong, QColor(255, 128, 0, 255));
    EXPECT_EQ(drawing().at(150, 100).alpha(), 0);
}

TEST_P(OverlayContentViewDrawing, LeavesARimOfOnePointAroundTheTint) {
    tint(100, false);

    const Drawing drawn = drawing();

    EXPECT_EQ(drawn.at(150, 0).alpha(), 0);
    EXPECT_EQ(drawn.at(0, 100).alpha(), 0);
    EXPECT_EQ(drawn.at(150, 2).alpha(), 255);
    EXPECT_EQ(drawn.at(2, 100).alpha(), 255);
}

TEST_P(OverlayContentViewDrawing, LeavesWhatLiesOutsideTheRoundedCornersUntouched) {
    tint(100, true);

    const Drawing drawn = drawing();

    EXPECT_EQ(drawn.at(0, 0).alpha(), 0);
    EXPECT_EQ(drawn.at(2, 2).alpha(), 0);
    EXPECT_EQ(drawn.at(299, 0).alpha(), 0);
    EXPECT_EQ(drawn.at(0, 199).alpha(), 0);
    EXPECT_EQ(drawn.at(299, 199).alpha(), 0);
    EXPECT_EQ(drawn.at(7, 7).alpha(), 255);
}

TEST_P(OverlayContentViewDrawing, RoundsItsCornersByTwelvePoints) {
    tint(100, false);
    // On the diagonal the arc passes at 1 + 12 * (1 - 1 / sqrt 2) = 4.5 points from both edges.

    const Drawing drawn = drawing();

    EXPECT_EQ(drawn.at(3.4, 3.4).alpha(), 0);
    EXPECT_EQ(drawn.at(5.8, 5.8).alpha(), 255);
}

TEST_P(OverlayContentViewDrawing, SmoothsTheEdgeOfItsShape) {
    tint(100, false);

    const Drawing drawn = drawing();

    // Between the outside of the corner and its inside there is a pixel that the arc covers in part.
    EXPECT_THAT(drawn.alphasInRow(3, 2, 10), Contains(AllOf(Gt(20), Lt(235))));
}

TEST_P(OverlayContentViewDrawing, HasABorderOfTwoPointsInEditMode) {
    tint(50, true);

    const Drawing drawn = drawing();

    EXPECT_EQ(drawn.at(150, 1), accent);
    EXPECT_EQ(drawn.at(1, 100), accent);
    EXPECT_EQ(drawn.at(298.5, 100), accent);
    EXPECT_EQ(drawn.at(150, 198.5), accent);
    EXPECT_THAT(drawn.at(150, 3), IsCloseTo(QColor(255, 128, 0, 128), 2));
}

TEST_P(OverlayContentViewDrawing, DrawsNothingButTheTintWhileLocked) {
    tint(50, false);
    const Drawing unhovered = drawing();

    surface.enter();
    view.update(overlay, false);
    const Drawing hovered = drawing();

    EXPECT_EQ(hovered, unhovered);
    EXPECT_THAT(hovered.at(150, 2), IsCloseTo(QColor(255, 128, 0, 128), 2));
    EXPECT_THAT(hovered.at(21, 21), IsCloseTo(QColor(255, 128, 0, 128), 2));
    EXPECT_THAT(hovered.at(280, 180), IsCloseTo(QColor(255, 128, 0, 128), 2));
}

TEST_P(OverlayContentViewDrawing, ShowsNoControlsUntilThePointerComes) {
    tint(50, true);

    const Drawing drawn = drawing();

    EXPECT_THAT(drawn.at(21, 21), IsCloseTo(QColor(255, 128, 0, 128), 2));
    EXPECT_THAT(drawn.at(280, 180), IsCloseTo(QColor(255, 128, 0, 128), 2));
}

TEST_P(OverlayContentViewDrawing, DrawsTheTintAndTheBorderOfACircleAsEllipses) {
    overlay.shape = OverlayShape::circle;
    tint(100, true);
    const double diagonal = 1 / std::numbers::sqrt2;

    const Drawing drawn = drawing();

    EXPECT_EQ(drawn.at(150, 1), accent);
    EXPECT_EQ(drawn.at(1, 100), accent);
    EXPECT_THAT(drawn.at(150 + 149 * diagonal, 100 + 99 * diagonal), IsCloseTo(accent, 25));
    EXPECT_THAT(drawn.at(150 - 149 * diagonal, 100 - 99 * diagonal), IsCloseTo(accent, 25));
    EXPECT_EQ(drawn.at(150 + 143 * diagonal, 100 + 94 * diagonal), QColor(255, 128, 0));
    EXPECT_EQ(drawn.at(150 + 155 * diagonal, 100 + 105 * diagonal).alpha(), 0);
    EXPECT_EQ(drawn.at(20, 20).alpha(), 0);
}

TEST_P(OverlayContentViewDrawing, DrawsARedDiscInsideTheDeleteControl) {
    tint(0, true);
    surface.enter();

    const Drawing drawn = drawing();

    EXPECT_THAT(drawn.at(21, 11), IsCloseTo(systemRed, 12));
    EXPECT_THAT(drawn.at(10, 21), IsCloseTo(systemRed, 12));
    EXPECT_THAT(drawn.at(31.5, 21), IsCloseTo(systemRed, 12));
    EXPECT_THAT(drawn.at(21, 31.5), IsCloseTo(systemRed, 12));
    EXPECT_LT(drawn.at(6, 21).red(), 20);
    EXPECT_LT(drawn.at(35, 21).red(), 20);
    EXPECT_LT(drawn.at(9, 9).red(), 20);
}

TEST_P(OverlayContentViewDrawing, LetsALittleShowThroughTheDeleteControl) {
    overlay.style = BlurStyle(50, "#FFFFFF", 100);
    view.update(overlay, true);
    surface.enter();

    // 4 % of white, itself darkened by the shadow of a third, shows beneath 96 % of the disc's colour.
    EXPECT_THAT(drawing().at(21, 12), IsCloseTo(QColor(220, 54, 50), 2));
}

TEST_P(OverlayContentViewDrawing, StrokesAWhiteCrossOnTheDeleteControl) {
    tint(100, true);
    surface.enter();

    const Drawing drawn = drawing();

    EXPECT_THAT(drawn.at(21, 21), IsCloseTo(QColor(Qt::white), 2));
    EXPECT_THAT(drawn.at(17.3, 17.3), IsCloseTo(QColor(Qt::white), 25));
    EXPECT_THAT(drawn.at(24.3, 24.3), IsCloseTo(QColor(Qt::white), 25));
    EXPECT_THAT(drawn.at(24.3, 17.3), IsCloseTo(QColor(Qt::white), 25));
    EXPECT_THAT(drawn.at(17.3, 24.3), IsCloseTo(QColor(Qt::white), 25));
    EXPECT_THAT(drawn.at(21, 16), IsCloseTo(systemRed, 12));
    EXPECT_THAT(drawn.at(14, 14), IsCloseTo(systemRed, 12));
    EXPECT_THAT(drawn.at(27.5, 27.5), IsCloseTo(systemRed, 12));
}

TEST_P(OverlayContentViewDrawing, OutlinesTheHandleInTheAccentColour) {
    tint(0, true);
    surface.enter();

    const Drawing drawn = drawing();

    EXPECT_THAT(drawn.at(266, 180), IsCloseTo(accent, 2));
    EXPECT_THAT(drawn.at(280, 166), IsCloseTo(accent, 2));
    EXPECT_THAT(drawn.at(294, 180), IsCloseTo(accent, 2));
    EXPECT_THAT(drawn.at(280, 194), IsCloseTo(accent, 2));
    EXPECT_THAT(drawn.at(272, 172), IsCloseTo(windowBackground, 12));
}

TEST_P(OverlayContentViewDrawing, RoundsTheHandlesCorners) {
    tint(0, true);
    surface.enter();

    const Drawing drawn = drawing();

    // Nothing but shadow lies in the corner of its square.
    EXPECT_LT(drawn.at(266, 166).blue(), 60);
    EXPECT_LT(drawn.at(266, 166).alpha(), 90);
    EXPECT_GT(drawn.at(268.05, 168.05).blue(), 120);
}

TEST_P(OverlayContentViewDrawing, HasThreeGripsInTheHandle) {
    tint(0, true);
    surface.enter();

    const Drawing drawn = drawing();

    EXPECT_THAT(drawn.at(287.5, 187.5), IsCloseTo(accent, 60));
    EXPECT_THAT(drawn.at(284.5, 184.5), IsCloseTo(accent, 60));
    EXPECT_THAT(drawn.at(281.5, 181.5), IsCloseTo(accent, 60));
    EXPECT_THAT(drawn.at(275.5, 187.5), IsCloseTo(accent, 60));
    EXPECT_THAT(drawn.at(287.5, 175.5), IsCloseTo(accent, 60));
    EXPECT_THAT(drawn.at(286.5, 185.5), IsCloseTo(windowBackground, 40));
    EXPECT_THAT(drawn.at(283.5, 182.5), IsCloseTo(windowBackground, 40));
    EXPECT_THAT(drawn.at(279, 178), IsCloseTo(windowBackground, 12));
    EXPECT_THAT(drawn.at(290.2, 190.2), IsCloseTo(windowBackground, 40));
}

TEST_P(OverlayContentViewDrawing, CastsTheControlsShadowsDownward) {
    tint(0, true);
    surface.enter();

    const Drawing drawn = drawing();

    // Two points above and below the disc, and ten away from it; the same for the handle.
    EXPECT_GT(drawn.at(21, 5.6).alpha(), 0);
    EXPECT_GT(drawn.at(21, 36).alpha(), drawn.at(21, 5.6).alpha() + 5);
    EXPECT_EQ(drawn.at(21, 44.5).alpha(), 0);
    EXPECT_GT(drawn.at(280, 162.4).alpha(), 0);
    EXPECT_GT(drawn.at(280, 196.4).alpha(), drawn.at(280, 162.4).alpha() + 5);
    EXPECT_EQ(drawn.at(255, 180).alpha(), 0);
}

TEST_P(OverlayContentViewDrawing, KeepsBothControlsDuringAResizeThatLeavesTheView) {
    tint(0, true);
    surface.enter();
    surface.press({.x = 280, .y = 180});

    surface.leave();
    const Drawing during = drawing();
    surface.release();
    const Drawing after = drawing();

    EXPECT_THAT(during.at(21, 11), IsCloseTo(systemRed, 12));
    EXPECT_THAT(during.at(272, 172), IsCloseTo(windowBackground, 12));
    EXPECT_EQ(after.at(21, 11).alpha(), 0);
    EXPECT_EQ(after.at(272, 172).alpha(), 0);
}

TEST_P(OverlayContentViewDrawing, KeepsTheHandleInTheCornerThatIsDragged) {
    tint(0, true);
    surface.enter();
    surface.press({.x = 280, .y = 180});

    surface.dragTo({.x = 60, .y = -40});

    const Drawing drawn = drawing();
    EXPECT_THAT(drawn.at(332, 212), IsCloseTo(windowBackground, 12));
    EXPECT_EQ(drawn.at(358.5, 100), accent);
    EXPECT_EQ(drawn.at(280, 180).alpha(), 0);
}

TEST_P(OverlayContentViewDrawing, FollowsThePaletteFromOneDrawingToTheNext) {
    tint(0, true);
    surface.enter();
    ASSERT_EQ(drawing().at(150, 1), accent);

    setColors(QColor(250, 10, 200), QColor(30, 32, 34));

    const Drawing drawn = drawing();
    EXPECT_EQ(drawn.at(150, 1), QColor(250, 10, 200));
    EXPECT_THAT(drawn.at(280, 166), IsCloseTo(QColor(250, 10, 200), 2));
    EXPECT_THAT(drawn.at(272, 172), IsCloseTo(QColor(30, 32, 34), 12));
    EXPECT_THAT(drawn.at(21, 11), IsCloseTo(systemRed, 12));
}

TEST_P(OverlayContentViewDrawing, HidesWhatACoverFarLargerThanAnyScreenHides) {
    overlay.frame = {.x = -1e6, .y = -1e6, .width = 2e6, .height = 2e6};
    overlay.style = BlurStyle(50, "#FF8000", 100);
    OverlayContentView large(overlay, {}, {});
    large.update(overlay, true);
    QImage image(60, 60, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);

    {
        QPainter painter(&image);
        painter.scale(GetParam(), GetParam());
        painter.translate(-1e6, -1e6);
        large.draw(painter);
    }

    EXPECT_EQ(image.pixelColor(0, 0), QColor(255, 128, 0));
    EXPECT_EQ(image.pixelColor(30, 30), QColor(255, 128, 0));
    EXPECT_EQ(image.pixelColor(59, 59), QColor(255, 128, 0));
}

INSTANTIATE_TEST_SUITE_P(, OverlayContentViewDrawing, ::testing::Values(1.0, 1.25, 1.5, 2.0),
                         [](const ::testing::TestParamInfo<double>& test) {
                             return "Percent" + std::to_string(static_cast<int>(test.param * 100));
                         });

struct StateCase {
    std::function<void(BlurOverlay& overlay, bool& editMode)> change;
    bool isDrawn;
    std::string name;

    friend void PrintTo(const StateCase& state, std::ostream* stream) { *stream << state.name; }
};

class OverlayContentViewDrawingState : public OverlayContentViewFixture,
                                       public ::testing::WithParamInterface<StateCase> {};

TEST_P(OverlayContentViewDrawingState, ChangesExactlyWithWhatIsDrawn) {
    surface.enter();
    const std::optional<DrawingState> stateBefore = view.drawingState();
    const QImage imageBefore = surface.render();
    bool editMode = true;

    GetParam().change(overlay, editMode);
    surface.setFrame(overlay.frame);
    view.update(overlay, editMode);

    EXPECT_EQ(view.drawingState() != stateBefore, GetParam().isDrawn);
    EXPECT_EQ(surface.render() != imageBefore, GetParam().isDrawn);
}

INSTANTIATE_TEST_SUITE_P(
    , OverlayContentViewDrawingState,
    ::testing::Values(
        StateCase{[](BlurOverlay& overlay, bool&) { overlay.style.colorHex = "#334455"; }, true, "Color"},
        StateCase{[](BlurOverlay& overlay, bool&) { overlay.style.opacity = 40; }, true, "Opacity"},
        StateCase{[](BlurOverlay& overlay, bool&) { overlay.shape = OverlayShape::circle; }, true, "Shape"},
        StateCase{[](BlurOverlay& overlay, bool&) { overlay.frame.width += 4; }, true, "Size"},
        StateCase{[](BlurOverlay&, bool& editMode) { editMode = false; }, true, "Locking"},
        StateCase{[](BlurOverlay& overlay, bool&) { overlay.frame.x += 4; }, false, "Position"},
        StateCase{[](BlurOverlay& overlay, bool&) { overlay.style.intensity = 10; }, false, "Intensity"},
        StateCase{[](BlurOverlay& overlay, bool&) { overlay.style.glassBlur = false; }, false, "GlassBlur"},
        StateCase{[](BlurOverlay&, bool&) {}, false, "Nothing"}),
    [](const ::testing::TestParamInfo<StateCase>& test) { return test.param.name; });

TEST_P(OverlayContentViewDrawing, TellsApartThePalettesAndTheHovers) {
    const std::optional<DrawingState> before = view.drawingState();

    surface.enter();
    const std::optional<DrawingState> hovered = view.drawingState();
    setColors(accent, QColor(30, 32, 34));
    const std::optional<DrawingState> darkWindow = view.drawingState();
    setColors(QColor(250, 10, 200), QColor(30, 32, 34));
    const std::optional<DrawingState> pinkAccent = view.drawingState();

    EXPECT_NE(before, hovered);
    EXPECT_NE(hovered, darkWindow);
    EXPECT_NE(darkWindow, pinkAccent);
}

struct TinyCase {
    Size size;
    OverlayShape shape;

    friend void PrintTo(const TinyCase& tiny, std::ostream* stream) {
        *stream << tiny.size.width << " by " << tiny.size.height;
    }
};

class OverlayContentViewOfTinyFrame : public OverlayContentViewFixture,
                                      public ::testing::WithParamInterface<TinyCase> {};

TEST_P(OverlayContentViewOfTinyFrame, IsDrawnWithItsControls) {
    overlay.frame = {.x = 5, .y = 5, .width = GetParam().size.width, .height = GetParam().size.height};
    overlay.shape = GetParam().shape;
    surface.setFrame(overlay.frame);
    view.update(overlay, true);
    surface.enter();

    const QImage image = surface.render(2);
    const bool hasTint = !view.overlayPath(1).isEmpty();

    EXPECT_EQ(image.width(), std::max(1, static_cast<int>(2 * GetParam().size.width)));
    EXPECT_EQ(hasTint, GetParam().size.width > 2 && GetParam().size.height > 2);
}

INSTANTIATE_TEST_SUITE_P(
    , OverlayContentViewOfTinyFrame,
    ::testing::Values(TinyCase{{0, 0}, OverlayShape::rectangle}, TinyCase{{0, 0}, OverlayShape::circle},
                      TinyCase{{0, 80}, OverlayShape::rectangle}, TinyCase{{1, 1}, OverlayShape::circle},
                      TinyCase{{2, 2}, OverlayShape::rectangle}, TinyCase{{3, 3}, OverlayShape::rectangle},
                      TinyCase{{3, 3}, OverlayShape::circle}, TinyCase{{20, 20}, OverlayShape::rectangle},
                      TinyCase{{40, 30}, OverlayShape::circle}));

}  // namespace
}  // namespace pallwick
