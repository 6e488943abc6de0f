#include <PallwickMac/Platform/X11/PixelMapping.h>
#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "Printing.h"

namespace pallwick::x11 {
namespace {

using ::testing::AllOf;
using ::testing::Field;
using ::testing::Ge;
using ::testing::IsEmpty;
using ::testing::Le;

constexpr PixelRect atTheOrigin{.x = 0, .y = 0, .width = 1280, .height = 800};
/// A second screen lies above this one, a third to its left.
constexpr PixelRect belowAndRight{.x = 640, .y = 800, .width = 1280, .height = 800};

TEST(PixelMapping, PutsTheOriginAtThePrimaryScreensBottomLeftCorner) {
    const PixelMapping mapping(belowAndRight, 1);

    EXPECT_EQ(mapping.points(belowAndRight), (Rect{.x = 0, .y = 0, .width = 1280, .height = 800}));
}

TEST(PixelMapping, CountsAScreenAboveThePrimaryUpwardFromItsTopEdge) {
    const PixelMapping mapping(belowAndRight, 1);

    EXPECT_EQ(mapping.points({.x = 640, .y = 0, .width = 1280, .height = 800}),
              (Rect{.x = 0, .y = 800, .width = 1280, .height = 800}));
}

TEST(PixelMapping, CountsAScreenLeftOfThePrimaryInNegativePoints) {
    const PixelMapping mapping(belowAndRight, 2);

    EXPECT_EQ(mapping.points({.x = 0, .y = 1000, .width = 640, .height = 600}),
              (Rect{.x = -320, .y = 0, .width = 320, .height = 300}));
}

TEST(PixelMapping, CountsAScreenBelowThePrimaryInNegativePoints) {
    const PixelMapping mapping(atTheOrigin, 1.25);

    EXPECT_EQ(mapping.points({.x = 0, .y = 800, .width = 1000, .height = 500}),
              (Rect{.x = 0, .y = -400, .width = 800, .height = 400}));
}

TEST(PixelMapping, UsesThePrimaryScreensScaleForTheWholeRoot) {
    const PixelMapping mapping(belowAndRight, 2);

    EXPECT_EQ(mapping.pixels({.x = -320, .y = 400, .width = 100, .height = 50}),
              (PixelRect{.x = 0, .y = 700, .width = 200, .height = 100}));
}

TEST(PixelMapping, CoversAFrameThatEndsBetweenTwoPixels) {
    const PixelMapping mapping(belowAndRight, 1.5);

    const PixelRect pixels = mapping.pixels({.x = 33, .y = 35, .width = 101, .height = 75});

    // 689.5 to 841 across, 1435 to 1547.5 down.
    EXPECT_EQ(pixels, (PixelRect{.x = 689, .y = 1435, .width = 152, .height = 113}));
}

TEST(PixelMapping, CoversASliverInsideOnePixelWithThatPixel) {
    const PixelMapping mapping(atTheOrigin, 1);

    EXPECT_EQ(mapping.pixels({.x = 10.25, .y = 20.25, .width = 0.5, .height = 0.5}),
              (PixelRect{.x = 10, .y = 779, .width = 1, .height = 1}));
}

TEST(PixelMapping, RoundsOutwardOnTheNegativeSideOfTheRootToo) {
    const PixelMapping mapping(atTheOrigin, 1);

    EXPECT_EQ(mapping.pixels({.x = -10.5, .y = 810.5, .width = 5, .height = 5}),
              (PixelRect{.x = -11, .y = -16, .width = 6, .height = 6}));
}

TEST(PixelMapping, TakesAFrameOfNegativeSizeForTheAreaItCovers) {
    const PixelMapping mapping(atTheOrigin, 1.5);

    EXPECT_EQ(mapping.pixels({.x = 300, .y = 200, .width = -100, .height = -50}),
              mapping.pixels({.x = 200, .y = 150, .width = 100, .height = 50}));
}

TEST(PixelMapping, GivesAnEmptyFrameNoPixel) {
    const PixelMapping mapping(atTheOrigin, 1);

    EXPECT_TRUE(mapping.pixels({.x = 10, .y = 20, .width = 0, .height = 0}).isEmpty());
}

TEST(PixelMapping, NeverLetsTheFarEdgeCreepWhileAFrameMovesByFractions) {
    const PixelMapping mapping(atTheOrigin, 1.5);

    const PixelRect before = mapping.pixels({.x = 10, .y = 10, .width = 100, .height = 50});
    const PixelRect after = mapping.pixels({.x = 10 + 1e-9, .y = 10 - 1e-9, .width = 100, .height = 50});

    EXPECT_EQ(before, after);
}

TEST(PixelMapping, PutsAPixelAtItsTopLeftCorner) {
    const PixelMapping mapping(belowAndRight, 2);

    EXPECT_EQ(mapping.point({.x = 640, .y = 1600}), (Point{.x = 0, .y = 0}));
    EXPECT_EQ(mapping.point({.x = 641, .y = 1599}), (Point{.x = 0.5, .y = 0.5}));
    EXPECT_EQ(mapping.point({.x = 640, .y = 800}), (Point{.x = 0, .y = 400}));
    EXPECT_EQ(mapping.point({.x = 639, .y = 1601}), (Point{.x = -0.5, .y = -0.5}));
}

TEST(PixelMapping, TellsWhereAFramesTopLeftCornerExactlyLies) {
    const PixelMapping mapping(belowAndRight, 1.5);

    EXPECT_EQ(mapping.exactTopLeft({.x = 33, .y = 35, .width = 101, .height = 75}), (Point{.x = 689.5, .y = 1435}));
}

TEST(PixelMapping, TellsTheSameTopLeftCornerForANegativeSize) {
    const PixelMapping mapping(belowAndRight, 1.5);

    EXPECT_EQ(mapping.exactTopLeft({.x = 134, .y = 110, .width = -101, .height = -75}), (Point{.x = 689.5, .y = 1435}));
}

TEST(PixelRect, IntersectsHalfOpenSoThatNeighboursShareNothing) {
    const PixelRect left{.x = 0, .y = 0, .width = 10, .height = 10};

    EXPECT_TRUE(left.intersected({.x = 10, .y = 0, .width = 10, .height = 10}).isEmpty());
    EXPECT_EQ(left.intersected({.x = 9, .y = -5, .width = 10, .height = 6}),
              (PixelRect{.x = 9, .y = 0, .width = 1, .height = 1}));
}

struct Arrangement {
    std::string name;
    PixelRect primary;
    double scale;
};

void PrintTo(const Arrangement& arrangement, std::ostream* stream) {
    *stream << arrangement.name << " at scale " << arrangement.scale;
}

class EveryArrangement : public ::testing::TestWithParam<Arrangement> {};

INSTANTIATE_TEST_SUITE_P(Screens, EveryArrangement,
                         ::testing::Values(Arrangement{"primary at the root's origin", atTheOrigin, 1},
                                           Arrangement{"primary at the root's origin", atTheOrigin, 1.25},
                                           Arrangement{"primary at the root's origin", atTheOrigin, 1.5},
                                           Arrangement{"primary at the root's origin", atTheOrigin, 2},
                                           Arrangement{"primary below and right", belowAndRight, 1},
                                           Arrangement{"primary below and right", belowAndRight, 1.25},
                                           Arrangement{"primary below and right", belowAndRight, 1.5},
                                           Arrangement{"primary below and right", belowAndRight, 2},
                                           Arrangement{"a scale that no binary fraction is", belowAndRight, 1.1},
                                           Arrangement{"a scale of thirds", belowAndRight, 4.0 / 3}));

std::vector<PixelRect> pixelRectangles() {
    std::vector<PixelRect> rectangles;
    for (int x = -3001; x <= 4000; x += 137) {
        for (int y = -2003; y <= 3000; y += 139) {
            for (const int width : {1, 2, 3, 7, 100, 101, 1279, 1280, 7680}) {
                for (const int height : {1, 5, 799, 800}) {
                    rectangles.push_back({.x = x, .y = y, .width = width, .height = height});
                }
            }
        }
    }
    return rectangles;
}

TEST_P(EveryArrangement, GivesEveryPixelRectangleBackFromItsPoints) {
    const PixelMapping mapping(GetParam().primary, GetParam().scale);

    std::vector<PixelRect> changed = pixelRectangles();
    std::erase_if(changed, [&](const PixelRect& rect) { return mapping.pixels(mapping.points(rect)) == rect; });

    EXPECT_THAT(changed, IsEmpty());
}

std::vector<Rect> fractionalFrames() {
    std::vector<Rect> frames;
    for (double x = -1000; x < 2000; x += 41.37) {
        for (double y = -1000; y < 2000; y += 53.19) {
            frames.push_back({.x = x, .y = y, .width = 10.01 + x / 7, .height = 20.3 - y / 9});
        }
    }
    return frames;
}

/// Whether the pixels cover all of the frame, and none of their outermost rows and columns is needless.
bool coversTightly(const PixelRect& pixels, const Rect& frame, const PixelMapping& mapping) {
    constexpr double rounding = 1e-5;
    const Rect covered = mapping.points(pixels);
    const double pixel = 1 / mapping.scale();
    const auto isTight = [&](double excess) { return excess >= -rounding && excess < pixel + rounding; };
    return isTight(frame.minX() - covered.minX()) && isTight(frame.minY() - covered.minY()) &&
           isTight(covered.maxX() - frame.maxX()) && isTight(covered.maxY() - frame.maxY());
}

TEST_P(EveryArrangement, CoversEveryFrameWholeAndByLessThanOnePixelMore) {
    const PixelMapping mapping(GetParam().primary, GetParam().scale);

    std::vector<Rect> badlyCovered = fractionalFrames();
    std::erase_if(badlyCovered,
                  [&](const Rect& frame) { return coversTightly(mapping.pixels(frame), frame, mapping); });

    EXPECT_THAT(badlyCovered, IsEmpty());
}

class EveryWildFrame : public ::testing::TestWithParam<Rect> {};

constexpr double huge = 1.7e308;
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

INSTANTIATE_TEST_SUITE_P(
    Frames, EveryWildFrame,
    ::testing::Values(Rect{.x = -huge, .y = -huge, .width = huge, .height = huge},
                      Rect{.x = huge, .y = huge, .width = huge, .height = huge},
                      Rect{.x = huge, .y = huge, .width = -huge, .height = -huge},
                      Rect{.x = -1e10, .y = -1e10, .width = 2e10, .height = 2e10},
                      Rect{.x = 1e7, .y = 1e7, .width = 1e7, .height = 1e7},
                      Rect{.x = -infinite, .y = -infinite, .width = infinite, .height = infinite},
                      Rect{.x = infinite, .y = infinite, .width = -infinite, .height = -infinite},
                      Rect{.x = 0, .y = 0, .width = infinite, .height = infinite},
                      Rect{.x = notANumber, .y = 0, .width = 10, .height = 10},
                      Rect{.x = 0, .y = 0, .width = notANumber, .height = notANumber},
                      Rect{.x = notANumber, .y = notANumber, .width = notANumber, .height = notANumber}));

TEST_P(EveryWildFrame, StaysAPixelRectangleWithinABillionPixels) {
    const PixelMapping mapping(belowAndRight, 2);
    constexpr int farthest = 1'000'000'000;

    const PixelRect pixels = mapping.pixels(GetParam());

    EXPECT_THAT(pixels, AllOf(Field("x", &PixelRect::x, AllOf(Ge(-farthest), Le(farthest))),
                              Field("y", &PixelRect::y, AllOf(Ge(-farthest), Le(farthest))),
                              Field("width", &PixelRect::width, AllOf(Ge(0), Le(2 * farthest))),
                              Field("height", &PixelRect::height, AllOf(Ge(0), Le(2 * farthest)))));
    EXPECT_THAT(pixels.maxX(), AllOf(Ge(-farthest), Le(farthest)));
    EXPECT_THAT(pixels.maxY(), AllOf(Ge(-farthest), Le(farthest)));
}

TEST(PixelMapping, CoversTheWholeRootWithAFrameThatReachesBeyondItEverywhere) {
    const PixelMapping mapping(belowAndRight, 2);

    const PixelRect pixels = mapping.pixels({.x = -huge / 2, .y = -huge / 2, .width = huge, .height = huge});

    const PixelRect root{.x = 0, .y = 0, .width = 2560, .height = 1600};
    EXPECT_EQ(pixels.intersected(root), root);
}

TEST(PixelMapping, MeasuresServerBoundsDownFromTheTopOfAllScreens) {
    const PixelMapping mapping({.x = 640, .y = 800, .width = 1280, .height = 800}, 2);

    const Rect bounds = mapping.serverBounds({.x = 740, .y = 900, .width = 300, .height = 200}, 800);

    EXPECT_EQ(bounds, (Rect{.x = 50, .y = 450, .width = 150, .height = 100}));
}

}  // namespace
}  // namespace pallwick::x11
