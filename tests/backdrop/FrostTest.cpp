#include <PallwickMac/Backdrop/Frost.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Pictures.h"
#include "TrueGaussian.h"

namespace pallwick::backdrop {

namespace {

constexpr Material clearGlass{.saturation = 1, .wash = 0, .washAlpha = 0};

struct Case {
    std::string name;
    PixelImage (*make)(int width, int height);
    double sigma;
    int width;
    int height;
};

class FrostAccuracy : public testing::TestWithParam<Case> {};

TEST_P(FrostAccuracy, StaysWithinThreeLevelsOfATrueGaussianAtTheEdgesToo) {
    const PixelImage image = GetParam().make(GetParam().width, GetParam().height);
    const std::vector<double> expected = trueGaussian(image, GetParam().sigma);

    const PixelImage actual = frosted(image, GetParam().sigma, clearGlass);

    const Deviation error = deviation(actual, expected, image.width, 0, 0);
    EXPECT_LE(error.largest, 3.0);
    EXPECT_LE(error.mean, 0.5 + halfLevelSlack);
}

PixelImage smallChecks(int width, int height) {
    return checkerboard(width, height, 5);
}
PixelImage edge(int width, int height) {
    return picture(width, height, [width](int x, int) { return grey(x < width / 2 ? 255 : 0); });
}

INSTANTIATE_TEST_SUITE_P(Pictures, FrostAccuracy,
                         testing::Values(Case{"checksAt20", smallChecks, 20, 200, 144},
                                         Case{"noiseAt20", noise, 20, 203, 141}, Case{"textAt20", text, 20, 203, 141},
                                         Case{"edgeAt20", edge, 20, 200, 141}, Case{"textAt25", text, 25, 203, 141},
                                         Case{"textAt30", text, 30, 200, 144}, Case{"noiseAt40", noise, 40, 203, 141},
                                         Case{"edgeAt40", edge, 40, 203, 141}, Case{"textAt10", text, 10, 203, 141},
                                         Case{"textAt4", text, 4, 203, 141}),
                         [](const testing::TestParamInfo<Case>& instance) { return instance.param.name; });

TEST(Frost, TurnsACheckerboardIntoFlatGrey) {
    const PixelImage image = checkerboard(240, 160, 8);

    const PixelImage glass = frosted(image, 20, clearGlass);

    // At the edges the mirrored squares are twice as wide.
    const PixelImage inner = picture(120, 40, [&glass](int x, int y) { return glass.row(y + 60)[x + 60] & 0xFF; });
    EXPECT_GE(*std::ranges::min_element(inner.pixels), 126U);
    EXPECT_LE(*std::ranges::max_element(inner.pixels), 129U);
}

TEST(Frost, LeavesAFlatColourAsItIs) {
    const PixelImage image = picture(90, 70, [](int, int) { return 0xFF3A7BC4U; });

    const PixelImage glass = frosted(image, 20, clearGlass);

    EXPECT_EQ(glass, image);
}

TEST(Frost, TakesAPictureOfOnePixel) {
    const PixelImage image = picture(1, 1, [](int, int) { return 0xFF102030U; });

    EXPECT_EQ(frosted(image, 20, clearGlass), image);
}

TEST(Frost, TakesAnEmptyPicture) {
    EXPECT_TRUE(frosted(PixelImage(), 20, clearGlass).isEmpty());
}

TEST(Frost, IsOpaqueWhateverTheAlphaOfThePicture) {
    const PixelImage image = picture(40, 40, [](int x, int y) { return static_cast<std::uint32_t>(x * y); });

    const PixelImage glass = frosted(image, 20, materialFor(true));

    EXPECT_TRUE(std::ranges::all_of(glass.pixels, [](std::uint32_t pixel) { return pixel >> 24 == 0xFF; }));
}

TEST(FrostMaterial, DarkensInADarkSchemeAndLightensInALightOne) {
    PixelImage dark = picture(1, 1, [](int, int) { return grey(128); });
    PixelImage light = dark;

    apply(materialFor(true), dark);
    apply(materialFor(false), light);

    EXPECT_LT(dark.pixels[0] & 0xFF, 128U);
    EXPECT_GT(light.pixels[0] & 0xFF, 128U);
}

TEST(FrostMaterial, MakesColoursLivelierAndLeavesGreyGrey) {
    const Material lively{.saturation = 1.5, .wash = 0, .washAlpha = 0};
    PixelImage image(2, 1);
    image.pixels = {0xFF806040U, grey(90)};

    apply(lively, image);

    EXPECT_GT((image.pixels[0] >> 16) & 0xFF, 0x80U);
    EXPECT_LT(image.pixels[0] & 0xFF, 0x40U);
    EXPECT_EQ(image.pixels[1], grey(90));
}

TEST(FrostMaterial, KeepsSaturatedColoursWithinTheirRange) {
    const Material lively{.saturation = 3, .wash = 255, .washAlpha = 0.1};
    PixelImage image(2, 1);
    image.pixels = {0xFFFF0000U, 0xFF0000FFU};

    apply(lively, image);

    EXPECT_EQ((image.pixels[0] >> 16) & 0xFF, 0xFFU);
    EXPECT_EQ((image.pixels[0] >> 8) & 0xFF, 26U);
    EXPECT_EQ(image.pixels[1] & 0xFF, 0xFFU);
}

TEST(FrostTint, IsLaidOverTheGlassAsIfEachWereDrawnInTurn) {
    const PixelImage glass = picture(256, 1, [](int x, int) { return 0xFF000000U | static_cast<unsigned>(x) << 8; });
    for (const std::uint32_t tint : {0x00000000U, 0x80402010U, 0xC0008000U, 0xFF123456U}) {
        for (const int coverage : {0, 1, 90, 128, 254, 255}) {
            const PixelImage mixed = tinted(glass, static_cast<std::uint8_t>(coverage), tint);
            for (int x = 0; x < 256; ++x) {
                const double share = coverage / 255.0 * (255 - (tint >> 24)) / 255.0;
                const auto channel = [](std::uint32_t pixel, int shift) {
                    return static_cast<double>((pixel >> shift) & 0xFF);
                };
                for (const int shift : {0, 8, 16, 24}) {
                    EXPECT_NEAR(
                        channel(mixed.pixels[static_cast<std::size_t>(x)], shift),
                        channel(glass.pixels[static_cast<std::size_t>(x)], shift) * share + channel(tint, shift), 0.51);
                }
            }
        }
    }
}

TEST(FrostScale, NeverLeavesLessThanTwoAndAHalfPixelsOfSigma) {
    EXPECT_EQ(downscaling(4.9), 1);
    EXPECT_EQ(downscaling(5), 2);
    EXPECT_EQ(downscaling(10), 4);
    EXPECT_EQ(downscaling(20), 8);
    EXPECT_EQ(downscaling(200), 8);
}

TEST(FrostScale, LooksThreeStandardDeviationsFar) {
    EXPECT_EQ(blurMargin(20), 60);
    EXPECT_EQ(blurMargin(7.1), 22);
}

}  // namespace

}  // namespace pallwick::backdrop
