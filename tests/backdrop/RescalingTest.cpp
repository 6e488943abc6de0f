#include <PallwickMac/Backdrop/Rescaling.h>
#include <gtest/gtest.h>

#include <vector>

#include "Pictures.h"

namespace pallwick::backdrop {

namespace {

std::vector<int> levels(const PixelImage& image) {
    std::vector<int> values;
    for (const std::uint32_t pixel : image.pixels) {
        values.push_back(static_cast<int>(pixel & 0xFF));
    }
    return values;
}

std::vector<int> firstRow(const PixelImage& image) {
    std::vector<int> values = levels(image);
    values.resize(static_cast<std::size_t>(image.width));
    return values;
}

PixelImage ramp(int width) {
    return picture(width, 1, [](int x, int) { return grey(10 * (x + 1)); });
}

TEST(Halving, TakesTheMeanOfFourPixelsInEveryChannel) {
    PixelImage image(2, 2);
    image.pixels = {0xFF10A000U, 0xFF20A0FFU, 0xFF30A000U, 0xFF40A0FFU};

    const PixelImage half = halved(image);

    ASSERT_EQ(half.width, 1);
    ASSERT_EQ(half.height, 1);
    EXPECT_EQ(half.pixels[0], 0xFF28A080U);
}

TEST(Halving, RoundsAnOddSizeUpAndGoesOnWithTheLastPixels) {
    const PixelImage image = picture(3, 3, [](int x, int y) { return grey(x == 2 || y == 2 ? 90 : 30); });

    EXPECT_EQ(levels(halved(image)), (std::vector{30, 90, 90, 90}));
}

TEST(Halving, DoesNotBrightenOrDarkenNoiseAsAWhole) {
    const PixelImage image = noise(256, 256);

    const PixelImage small = halved(halved(halved(image)));

    double sum = 0;
    for (const int level : levels(small)) {
        sum += level;
    }
    double expected = 0;
    for (const int level : levels(image)) {
        expected += level;
    }
    EXPECT_NEAR(sum / 1024, expected / 65536, 0.1);
}

TEST(Mirroring, ReflectsAtTheEdgesAndFillsUpToTheMultiple) {
    const PixelImage large = mirrored(ramp(3), 2, 4);

    EXPECT_EQ(large.width, 8);
    EXPECT_EQ(large.height, 8);
    EXPECT_EQ(firstRow(large), (std::vector{20, 10, 10, 20, 30, 30, 20, 10}));
}

TEST(Mirroring, GoesToAndFroWhereTheMarginIsLargerThanThePicture) {
    const PixelImage large = mirrored(ramp(2), 5, 1);

    EXPECT_EQ(firstRow(large), (std::vector{10, 10, 20, 20, 10, 10, 20, 20, 10, 10, 20, 20}));
}

TEST(Mirroring, IsTheSameWhenThePictureIsHalvedAtOnce) {
    for (const int width : {1, 7, 64, 203}) {
        const PixelImage image = noise(width, 41);
        for (const int margin : {0, 3, 60}) {
            EXPECT_EQ(mirroredAndHalved(image, margin, 8), halved(mirrored(image, margin, 8)))
                << width << " " << margin;
        }
    }
}

TEST(Enlarging, InterpolatesBetweenTheCentresOfPixels) {
    PixelImage image(2, 1);
    image.pixels = {grey(0), grey(80)};

    const PixelImage large = enlarged(image, 4, 0, 0, 8, 4);

    EXPECT_EQ(firstRow(large), (std::vector{0, 0, 10, 30, 50, 70, 80, 80}));
}

TEST(Enlarging, TakesARegionThatBeginsAnywhere) {
    const PixelImage image = noise(9, 7);
    const PixelImage whole = enlarged(image, 8, 0, 0, 72, 56);

    const PixelImage region = enlarged(image, 8, 13, 29, 20, 11);

    EXPECT_EQ(region, picture(20, 11, [&](int x, int y) { return whole.row(y + 29)[x + 13]; }));
}

TEST(Enlarging, GoesOnBeyondTheEdgesWithTheirPixels) {
    const PixelImage large = enlarged(ramp(1), 2, -3, -3, 8, 8);

    for (const int level : levels(large)) {
        EXPECT_EQ(level, 10);
    }
}

}  // namespace

}  // namespace pallwick::backdrop
