#include "ViewTestSupport.h"

#include <PallwickMac/Views/SymbolIcon.h>

#include <QImage>
#include <QPixmap>
#include <QPushButton>

#include <algorithm>
#include <memory>

namespace pallwick {
namespace {

/// The colour of the most opaque pixel.
QColor inkColor(const QImage& image) {
    QColor ink(Qt::transparent);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() > ink.alpha()) {
                ink = pixel;
            }
        }
    }
    return ink;
}

int opaquePixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixelColor(x, y).alpha() == 255 ? 1 : 0;
        }
    }
    return count;
}

QImage imageOf(const QIcon& icon, int side, QIcon::Mode mode = QIcon::Normal) {
    return icon.pixmap(QSize(side, side), 1.0, mode).toImage();
}

class SymbolTest : public ::testing::TestWithParam<Symbol> {};

TEST_P(SymbolTest, IsDrawn) {
    const QImage image = imageOf(SymbolIcon(GetParam()), 48);

    EXPECT_GT(opaquePixels(image), 20);
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
}

INSTANTIATE_TEST_SUITE_P(Symbols, SymbolTest,
                         ::testing::Values(Symbol::arrowClockwise, Symbol::eyeSlash, Symbol::link, Symbol::linkSlash,
                                           Symbol::lock, Symbol::minus, Symbol::plus, Symbol::plusRectangleOnRectangle,
                                           Symbol::rectangleDashed, Symbol::sliderHorizontal3, Symbol::trash));

TEST(SymbolIcon, HasOneDrawingPerSymbol) {
    EXPECT_NE(imageOf(SymbolIcon(Symbol::plus), 48), imageOf(SymbolIcon(Symbol::minus), 48));
    EXPECT_NE(imageOf(SymbolIcon(Symbol::lock), 48), imageOf(SymbolIcon(Symbol::trash), 48));
    EXPECT_NE(imageOf(SymbolIcon(Symbol::link), 48), imageOf(SymbolIcon(Symbol::linkSlash), 48));
}

TEST(SymbolIcon, IsDrawnAtTheDevicesResolution) {
    const SymbolIcon icon(Symbol::minus);

    const QPixmap pixmap = icon.pixmap(QSize(16, 16), 3.0);

    EXPECT_EQ(pixmap.size(), QSize(48, 48));
    EXPECT_EQ(pixmap.devicePixelRatio(), 3.0);
    EXPECT_EQ(pixmap.toImage().pixelColor(22, 22).alpha(), 255) << "a 3 pixels thick line, not a blurred one";
    EXPECT_EQ(pixmap.toImage().pixelColor(22, 18).alpha(), 0);
}

TEST(SymbolIcon, HasLinesOfWholePixelsAtItsUsualSize) {
    const QImage image = imageOf(SymbolIcon(Symbol::minus), 16);

    EXPECT_EQ(image.pixelColor(7, 7).alpha(), 255);
    EXPECT_EQ(image.pixelColor(7, 6).alpha(), 0);
    EXPECT_EQ(image.pixelColor(7, 8).alpha(), 0);
}

TEST(SymbolIcon, HasTheColourOfItsHostsText) {
    QPushButton host;
    QPalette palette = host.palette();
    palette.setColor(QPalette::ButtonText, QColor(0x12, 0x34, 0x56));
    host.setPalette(palette);

    const SymbolIcon icon(Symbol::plus, &host);

    EXPECT_EQ(inkColor(imageOf(icon, 48)), QColor(0x12, 0x34, 0x56));
}

TEST(SymbolIcon, ChangesColourWithThePalette) {
    QPushButton host;
    const SymbolIcon icon(Symbol::plus, &host);
    const QColor before = inkColor(imageOf(icon, 48));

    const ApplicationPalette dark(darkPalette());

    EXPECT_NE(inkColor(imageOf(icon, 48)), before);
    EXPECT_EQ(inkColor(imageOf(icon, 48)), darkPalette().color(QPalette::ButtonText));
}

TEST(SymbolIcon, FollowsTheApplicationsPaletteWithoutAHost) {
    const SymbolIcon icon(Symbol::plus);

    const ApplicationPalette dark(darkPalette());

    EXPECT_EQ(inkColor(imageOf(icon, 48)), darkPalette().color(QPalette::WindowText));
}

TEST(SymbolIcon, OutlivesItsHost) {
    auto host = std::make_unique<QPushButton>();
    const SymbolIcon icon(Symbol::plus, host.get());

    host.reset();

    EXPECT_GT(opaquePixels(imageOf(icon, 48)), 20);
}

TEST(SymbolIcon, HasTheDisabledAndTheSelectedTextsColour) {
    const ApplicationPalette dark(darkPalette());
    const QPushButton host;
    const SymbolIcon icon(Symbol::trash, &host, TextColor::destructive);

    EXPECT_EQ(inkColor(imageOf(icon, 48, QIcon::Disabled)).rgb(), disabledTextColor(darkPalette()).rgb());
    EXPECT_EQ(inkColor(imageOf(icon, 48, QIcon::Selected)), darkPalette().color(QPalette::HighlightedText));
    EXPECT_EQ(inkColor(imageOf(icon, 48, QIcon::Normal)).rgb(), textColor(TextColor::destructive, darkPalette()).rgb());
}

TEST(SymbolIcon, StaysSquareInTheMiddleOfAnOblongArea) {
    const SymbolIcon icon(Symbol::minus);

    const QImage image = icon.pixmap(QSize(48, 16), 1.0).toImage();

    EXPECT_EQ(image.pixelColor(23, 7).alpha(), 255);
    EXPECT_EQ(image.pixelColor(10, 7).alpha(), 0);
}

TEST(ProgramIcon, KeepsItsOwnColours) {
    const QImage light = imageOf(programIcon(), 48);

    const ApplicationPalette dark(darkPalette());

    EXPECT_GT(opaquePixels(light), 1000);
    EXPECT_EQ(imageOf(programIcon(), 48), light);
}

}  // namespace
}  // namespace pallwick
