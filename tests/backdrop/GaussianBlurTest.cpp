#include <PallwickMac/Backdrop/GaussianBlur.h>
#include <gtest/gtest.h>

#include <cmath>

#include "Pictures.h"

namespace pallwick::backdrop {

namespace {

TEST(GaussianBlur, ChangesNothingWithoutASigma) {
    const PixelImage image = noise(17, 9);

    EXPECT_EQ(gaussianBlurred(image, 0), image);
    EXPECT_EQ(gaussianBlurred(image, -3), image);
}

TEST(GaussianBlur, LeavesEveryChannelOfAFlatColourAsItIs) {
    const PixelImage image = picture(31, 23, [](int, int) { return 0x80FE0140U; });

    EXPECT_EQ(gaussianBlurred(image, 2.5), image);
    EXPECT_EQ(gaussianBlurred(image, 0.1), image);
}

TEST(GaussianBlur, SpreadsAPointAsAGaussianDoes) {
    PixelImage image(41, 41);
    image.row(20)[20] = 0xFFFFFFFFU;
    const double sigma = 1.5;

    const PixelImage blurred = gaussianBlurred(image, sigma);

    const double peak = 255 / (2 * M_PI * sigma * sigma);
    const auto level = [&](int x, int y) { return static_cast<double>(blurred.row(y)[x] & 0xFF); };
    EXPECT_NEAR(level(20, 20), peak, 0.6);
    EXPECT_NEAR(level(21, 20), peak * std::exp(-0.5 / (sigma * sigma)), 0.6);
    EXPECT_NEAR(level(22, 21), peak * std::exp(-0.5 * 5 / (sigma * sigma)), 0.6);
    EXPECT_EQ(level(21, 20), level(20, 21));
    EXPECT_EQ(level(18, 20), level(22, 20));
}

TEST(GaussianBlur, RoundsUpOnRequestButNotWhatIsWhole) {
    const PixelImage flat = picture(9, 9, [](int, int) { return grey(77); });
    const PixelImage varied = noise(30, 30);

    EXPECT_EQ(gaussianBlurred(flat, 2, Rounding::up), flat);
    EXPECT_GE(gaussianBlurred(varied, 2, Rounding::up).row(15)[15] & 0xFF,
              gaussianBlurred(varied, 2).row(15)[15] & 0xFF);
    EXPECT_NE(gaussianBlurred(varied, 2, Rounding::up), gaussianBlurred(varied, 2));
}

TEST(GaussianBlur, GoesOnBeyondAnEdgeWithItsPixels) {
    const PixelImage image = picture(40, 30, [](int, int y) { return grey(y < 15 ? 200 : 10); });

    const PixelImage blurred = gaussianBlurred(image, 2);

    EXPECT_EQ(blurred.row(0)[0], grey(200));
    EXPECT_EQ(blurred.row(29)[39], grey(10));
}

TEST(GaussianBlur, TakesAPictureSmallerThanItsReach) {
    const PixelImage image = picture(2, 1, [](int x, int) { return grey(x == 0 ? 0 : 255); });

    const PixelImage blurred = gaussianBlurred(image, 10);

    EXPECT_NEAR(static_cast<int>(blurred.row(0)[0] & 0xFF), 127, 8);
    EXPECT_NEAR(static_cast<int>(blurred.row(0)[1] & 0xFF), 128, 8);
}

}  // namespace

}  // namespace pallwick::backdrop
