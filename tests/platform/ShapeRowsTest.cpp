#include <PallwickMac/Platform/X11/ShapeRows.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "Printing.h"

namespace pallwick::x11 {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Shape = EffectLayer::Shape;

struct Figure {
    std::string name;
    Shape shape = Shape::roundedRectangle;
    Rect bounds;
    double cornerRadius = 0;
    PixelRect window;
};

void PrintTo(const Figure& figure, std::ostream* stream) {
    *stream << figure.name;
}

/// Whether a point lies inside the shape itself, edges excluded; written from the shapes' equations alone.
bool isInside(const Figure& figure, double x, double y) {
    const Rect& bounds = figure.bounds;
    if (!(x > bounds.minX() && x < bounds.maxX() && y > bounds.minY() && y < bounds.maxY())) {
        return false;
    }
    if (figure.shape == Shape::ellipse) {
        const double dx = (x - bounds.midX()) / (bounds.width / 2);
        const double dy = (y - bounds.midY()) / (bounds.height / 2);
        return dx * dx + dy * dy < 1;
    }
    const double radius = std::clamp(figure.cornerRadius, 0.0, std::min(bounds.width, bounds.height) / 2);
    const double beyondX = std::max({bounds.minX() + radius - x, x - (bounds.maxX() - radius), 0.0});
    const double beyondY = std::max({bounds.minY() + radius - y, y - (bounds.maxY() - radius), 0.0});
    return beyondX * beyondX + beyondY * beyondY < radius * radius || beyondX == 0 || beyondY == 0;
}

using Pixels = std::vector<PixelPoint>;

constexpr int samples = 12;

/// The pixels of the window in which one of many sample points lies inside the shape.
bool isTouched(const Figure& figure, int x, int y) {
    for (int i = 0; i < samples * samples; ++i) {
        // Between the pixel's edges, and near to all four of them.
        const double sampleX = x + (0.002 + (i % samples) * 0.996 / (samples - 1));
        const double sampleY = y + (0.002 + (i / samples) * 0.996 / (samples - 1));
        if (isInside(figure, sampleX, sampleY)) {
            return true;
        }
    }
    return false;
}

bool isTouchedNearby(const Figure& figure, int x, int y) {
    for (int i = 0; i < 9; ++i) {
        if (isTouched(figure, x + i % 3 - 1, y + i / 3 - 1)) {
            return true;
        }
    }
    return false;
}

bool contains(const std::vector<PixelRect>& rows, int x, int y) {
    return std::ranges::any_of(
        rows, [&](const PixelRect& row) { return x >= row.x && x < row.maxX() && y >= row.y && y < row.maxY(); });
}

template <typename Test>
std::vector<std::string> pixelsWhere(const PixelRect& window, const Test& test) {
    std::vector<std::string> found;
    for (int y = window.y; y < window.maxY(); ++y) {
        for (int x = window.x; x < window.maxX(); ++x) {
            if (test(x, y)) {
                found.push_back(std::to_string(x) + "," + std::to_string(y));
            }
        }
    }
    return found;
}

class EveryFigure : public ::testing::TestWithParam<Figure> {
protected:
    const Figure& figure() const { return GetParam(); }
    std::vector<PixelRect> rows() const {
        return shapeRows(figure().shape, figure().bounds, figure().cornerRadius, figure().window);
    }
};

constexpr PixelRect window{.x = 0, .y = 0, .width = 64, .height = 48};
constexpr Rect wholeWindow{.x = 0, .y = 0, .width = 64, .height = 48};

INSTANTIATE_TEST_SUITE_P(
    Figures, EveryFigure,
    ::testing::Values(
        Figure{"a rectangle", Shape::roundedRectangle, wholeWindow, 0, window},
        Figure{"a rectangle between pixels", Shape::roundedRectangle, {3.4, 5.7, 40.2, 20.9}, 0, window},
        Figure{"a rounded rectangle", Shape::roundedRectangle, wholeWindow, 12, window},
        Figure{"a rounded rectangle between pixels", Shape::roundedRectangle, {0.37, 0.83, 62.9, 46.4}, 12.5, window},
        Figure{"a radius below one pixel", Shape::roundedRectangle, {0.5, 0.5, 62, 46}, 0.6, window},
        Figure{"a radius of half the shorter side", Shape::roundedRectangle, wholeWindow, 24, window},
        Figure{"a radius larger than half", Shape::roundedRectangle, wholeWindow, 400, window},
        Figure{
            "a radius larger than half, between pixels", Shape::roundedRectangle, {0.1, 0.3, 63.7, 47.1}, 90, window},
        Figure{"a negative radius", Shape::roundedRectangle, {2, 2, 30, 30}, -5, window},
        Figure{"a pill of one pixel", Shape::roundedRectangle, {4, 4, 1, 1}, 8, window},
        Figure{"a pill lower than a pixel", Shape::roundedRectangle, {4.2, 4.3, 40, 0.4}, 8, window},
        Figure{"a pill narrower than a pixel", Shape::roundedRectangle, {4.2, 4.3, 0.4, 40}, 8, window},
        Figure{"an ellipse", Shape::ellipse, wholeWindow, 0, window},
        Figure{"an ellipse with a radius that does not count", Shape::ellipse, wholeWindow, 8, window},
        Figure{"an ellipse between pixels", Shape::ellipse, {0.37, 0.83, 62.9, 46.4}, 0, window},
        Figure{"a flat ellipse", Shape::ellipse, {0, 20.5, 64, 1.7}, 0, window},
        Figure{"a narrow ellipse", Shape::ellipse, {30.5, 0, 0.7, 48}, 0, window},
        Figure{"an ellipse of one pixel", Shape::ellipse, {5, 5, 1, 1}, 0, window},
        Figure{"a rectangle cut by the window", Shape::roundedRectangle, {-10.5, -10.5, 60, 40}, 15, window},
        Figure{"an ellipse cut by the window's right and bottom", Shape::ellipse, {30.2, 20.1, 90, 70}, 0, window},
        Figure{"an ellipse cut by the window's left and top", Shape::ellipse, {-41.7, -33.3, 80, 60}, 0, window},
        Figure{"a shape larger than the window", Shape::ellipse, {-500, -400, 1100, 900}, 0, window}));

TEST_P(EveryFigure, ContainsEveryPixelThatTheShapeTouches) {
    const std::vector<PixelRect> cover = rows();

    EXPECT_THAT(
        pixelsWhere(figure().window, [&](int x, int y) { return isTouched(figure(), x, y) && !contains(cover, x, y); }),
        IsEmpty());
}

TEST_P(EveryFigure, ContainsNothingThatIsNotNextToTheShape) {
    const std::vector<PixelRect> cover = rows();

    EXPECT_THAT(pixelsWhere(figure().window,
                            [&](int x, int y) { return contains(cover, x, y) && !isTouchedNearby(figure(), x, y); }),
                IsEmpty());
}

TEST_P(EveryFigure, IsGivenAsBandsFromTopToBottomThatDoNotOverlap) {
    const std::vector<PixelRect> cover = rows();

    const auto firstOutOfOrder = std::ranges::adjacent_find(
        cover, [](const PixelRect& upper, const PixelRect& lower) { return lower.y < upper.maxY(); });

    EXPECT_TRUE(firstOutOfOrder == cover.end());
    EXPECT_TRUE(std::ranges::none_of(cover, &PixelRect::isEmpty));
}

TEST_P(EveryFigure, StaysWithinTheWindow) {
    std::vector<PixelRect> outside = rows();
    std::erase_if(outside, [&](const PixelRect& row) { return row.intersected(figure().window) == row; });

    EXPECT_THAT(outside, IsEmpty());
}

TEST(ShapeRows, GivesARectangleAsOneBand) {
    EXPECT_THAT(shapeRows(Shape::roundedRectangle, {.x = 2, .y = 3, .width = 20, .height = 10}, 0, window),
                ElementsAre(PixelRect{.x = 2, .y = 3, .width = 20, .height = 10}));
}

TEST(ShapeRows, GivesNothingForAnEmptyShape) {
    EXPECT_THAT(shapeRows(Shape::roundedRectangle, {.x = 5, .y = 5, .width = 0, .height = 0}, 8, window), IsEmpty());
    EXPECT_THAT(shapeRows(Shape::ellipse, {.x = 5, .y = 5, .width = 0, .height = 0}, 0, window), IsEmpty());
}

TEST(ShapeRows, GivesNothingForAShapeBesideTheWindow) {
    EXPECT_THAT(shapeRows(Shape::ellipse, {.x = 100, .y = 0, .width = 20, .height = 20}, 0, window), IsEmpty());
    EXPECT_THAT(shapeRows(Shape::ellipse, {.x = 0, .y = -100, .width = 20, .height = 20}, 0, window), IsEmpty());
}

TEST(ShapeRows, CoversTheWholeWindowInTheMiddleOfAnEndlessShape) {
    EXPECT_THAT(shapeRows(Shape::ellipse, {.x = -1e12, .y = -1e12, .width = 2e12, .height = 2e12}, 0, window),
                ElementsAre(window));
    EXPECT_THAT(shapeRows(Shape::roundedRectangle, {.x = -1e12, .y = -1e12, .width = 2e12, .height = 2e12}, 8, window),
                ElementsAre(window));
}

TEST(ShapeRows, CoversTheWholeWindowWhereAnEllipseIsTooLargeForNumbers) {
    constexpr double endless = std::numeric_limits<double>::infinity();

    EXPECT_THAT(shapeRows(Shape::ellipse, {.x = -1e308, .y = -1e308, .width = endless, .height = endless}, 0, window),
                ElementsAre(window));
}

/// Every place between two pixels at which a small shape with rounded ends may begin.
std::vector<Figure> smallFigures() {
    std::vector<Figure> figures;
    for (int i = 0; i < 20 * 20 * 20; ++i) {
        const double x = 0.05 * (i % 20);
        const double y = 0.1 * (i / 20 % 20);
        const double size = 0.15 * (1 + i / 400);
        figures.push_back({"small", Shape::roundedRectangle, {x, y, size * 1.3, size}, 100, {0, 0, 8, 8}});
    }
    return figures;
}

bool isCovered(const Figure& figure) {
    const std::vector<PixelRect> cover = shapeRows(figure.shape, figure.bounds, figure.cornerRadius, figure.window);
    return pixelsWhere(figure.window, [&](int x, int y) { return isTouched(figure, x, y) && !contains(cover, x, y); })
        .empty();
}

TEST(ShapeRows, CoversRoundEndsWhereverTheyBegin) {
    std::vector<Figure> uncovered = smallFigures();
    std::erase_if(uncovered, isCovered);

    EXPECT_THAT(uncovered, IsEmpty());
}

}  // namespace
}  // namespace pallwick::x11
