#include <PallwickMac/Platform/X11/PanelTiles.h>
#include <gmock/gmock.h>

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "Printing.h"

namespace pallwick::x11 {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr int width = 203;
constexpr int height = 117;
constexpr std::uint32_t tint = 0x80204030;

QImage drawingOf(std::uint32_t pixel) {
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(pixel);
    return image;
}

QImage maskOf(std::uint8_t coverage) {
    QImage image(width, height, QImage::Format_Alpha8);
    image.fill(coverage);
    return image;
}

void paint(QImage& image, const QRect& rect, QRgb colour) {
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect, QColor::fromRgba(colour));
}

QImage ellipse(QImage::Format format, const QColor& colour) {
    QImage image(width, height, format);
    image.fill(0);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QRectF(0, 0, width, height));
    return image;
}

PanelTiles tilesOf(const QImage& drawing, const std::optional<QImage>& mask) {
    return x11::tilesOf(width, height, summarised(drawing), mask ? std::optional(summarised(*mask)) : std::nullopt);
}

int areaOf(const std::vector<PixelRect>& tiles) {
    int area = 0;
    for (const PixelRect& tile : tiles) {
        area += tile.width * tile.height;
    }
    return area;
}

/// How often each pixel of the window lies in a tile.
std::vector<int> timesCovered(const PanelTiles& tiles) {
    std::vector<int> times(std::size_t{width} * height);
    for (const auto* list : {&tiles.opaque, &tiles.clear, &tiles.plain, &tiles.mixed}) {
        for (const PixelRect& tile : *list) {
            for (int y = tile.y; y < tile.maxY(); ++y) {
                for (int x = tile.x; x < tile.maxX(); ++x) {
                    ++times.at(static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x));
                }
            }
        }
    }
    return times;
}

TEST(PanelTiles, AreOneWhereOneColourLiesOverGlassOfOneStrength) {
    const PanelTiles tiles = tilesOf(drawingOf(tint), maskOf(90));

    EXPECT_THAT(tiles.plain, ElementsAre(PixelRect{.x = 0, .y = 0, .width = width, .height = height}));
    EXPECT_EQ(tiles.tint, tint);
    EXPECT_EQ(tiles.coverage, 90);
    EXPECT_THAT(tiles.mixed, IsEmpty());
}

TEST(PanelTiles, HideAllBeneathAnOpaqueDrawingWhateverItsColours) {
    QImage drawing = drawingOf(0xFF000000);
    paint(drawing, {3, 5, 60, 40}, 0xFFFF8000);

    const PanelTiles tiles = tilesOf(drawing, maskOf(90));

    EXPECT_THAT(tiles.opaque, ElementsAre(PixelRect{.x = 0, .y = 0, .width = width, .height = height}));
}

TEST(PanelTiles, AreMixedWhereOnePixelDiffers) {
    QImage drawing = drawingOf(tint);
    drawing.setPixel(100, 60, 0x80204031);
    QImage mask = maskOf(90);
    paint(mask, {20, 20, 1, 1}, 0x59000000);

    const PanelTiles tiles = tilesOf(drawing, mask);

    EXPECT_THAT(tiles.mixed, ::testing::UnorderedElementsAre(PixelRect{.x = 96, .y = 56, .width = 8, .height = 8},
                                                             PixelRect{.x = 16, .y = 16, .width = 8, .height = 8}));
}

TEST(PanelTiles, ShowThroughOnePixelThatIsNotQuiteOpaque) {
    QImage drawing = drawingOf(0xFF000000);
    drawing.setPixel(9, 9, 0xFE000000);

    EXPECT_THAT(tilesOf(drawing, maskOf(90)).mixed, ElementsAre(PixelRect{.x = 8, .y = 8, .width = 8, .height = 8}));
}

TEST(PanelTiles, AreClearWhereNothingIsDrawnAndNothingFrosted) {
    EXPECT_EQ(areaOf(tilesOf(drawingOf(0), maskOf(0)).clear), width * height);
    EXPECT_EQ(areaOf(tilesOf(drawingOf(0), std::nullopt).clear), width * height);
}

TEST(PanelTiles, AreMixedWhereAColourLiesOverNoGlass) {
    EXPECT_EQ(areaOf(tilesOf(drawingOf(tint), std::nullopt).mixed), width * height);
    EXPECT_EQ(areaOf(tilesOf(drawingOf(tint), maskOf(0)).mixed), width * height);
}

TEST(PanelTiles, TakeTheColourThatCoversMost) {
    QImage drawing = drawingOf(tint);
    paint(drawing, {0, 0, 80, height}, qPremultiply(0x40FF0000));

    const PanelTiles tiles = tilesOf(drawing, maskOf(90));

    EXPECT_EQ(tiles.tint, tint);
    EXPECT_EQ(areaOf(tiles.plain), (width - 80) * height);
    EXPECT_EQ(areaOf(tiles.mixed), 80 * height);
}

TEST(PanelTiles, AreMostlyPlainInAnEllipseAndFewEnoughForARequest) {
    const PanelTiles tiles = tilesOf(ellipse(QImage::Format_ARGB32_Premultiplied, QColor(10, 20, 30, 128)),
                                     ellipse(QImage::Format_Alpha8, QColor(0, 0, 0, 100)));

    EXPECT_GT(areaOf(tiles.plain), width * height / 2);
    EXPECT_THAT(tiles.clear, Not(IsEmpty()));
    EXPECT_LT(tiles.plain.size() + tiles.mixed.size(), 60U);
}

TEST(PanelTiles, CoverEachPixelOnce) {
    std::mt19937 random(20261121);
    const auto anywhere = [&random] {
        const auto below = [&random](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
        return QRect(below(width), below(height), 1 + below(width / 2), 1 + below(height / 2));
    };
    for (int round = 0; round < 40; ++round) {
        QImage drawing = drawingOf(tint);
        QImage mask = maskOf(90);
        for (const QRgb colour : {0xFF000000U, 0x00000000U, 0x20101010U}) {
            paint(drawing, anywhere(), colour);
            paint(mask, anywhere(), colour);
        }
        const PanelTiles tiles = tilesOf(drawing, mask);

        EXPECT_THAT(timesCovered(tiles), ::testing::Each(1)) << round;
        for (const PixelRect& tile : tiles.plain) {
            EXPECT_EQ(drawing.pixel(tile.x, tile.y), drawing.pixel(tile.maxX() - 1, tile.maxY() - 1));
        }
    }
}

}  // namespace
}  // namespace pallwick::x11
