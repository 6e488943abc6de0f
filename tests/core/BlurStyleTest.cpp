#include <PallwickMacCore/Models/BlurStyle.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace pallwick {
namespace {

TEST(BlurStyle, IsHalfBlurredOpaqueBlackGlassByDefault) {
    const BlurStyle style;

    EXPECT_EQ(style.intensity, 50);
    EXPECT_EQ(style.colorHex, "#000000");
    EXPECT_EQ(style.opacity, 100);
    EXPECT_TRUE(style.glassBlur);
}

TEST(BlurStyle, NormalisesWhatItIsBuiltFrom) {
    const BlurStyle style(-1, "  #abc ", 101, false);

    EXPECT_EQ(style.intensity, 0);
    EXPECT_EQ(style.colorHex, "#AABBCC");
    EXPECT_EQ(style.opacity, 100);
    EXPECT_FALSE(style.glassBlur);
}

struct Clamping {
    std::int64_t given;
    std::int64_t stored;
};

class BlurStylePercentage : public testing::TestWithParam<Clamping> {};

TEST_P(BlurStylePercentage, IsKeptBetween0And100) {
    const BlurStyle style(GetParam().given, "#000000", GetParam().given);

    EXPECT_EQ(style.intensity, GetParam().stored);
    EXPECT_EQ(style.opacity, GetParam().stored);
}

INSTANTIATE_TEST_SUITE_P(Values, BlurStylePercentage,
                         testing::Values(Clamping{-5, 0}, Clamping{0, 0}, Clamping{1, 1}, Clamping{100, 100},
                                         Clamping{101, 100}, Clamping{250, 100},
                                         Clamping{std::numeric_limits<std::int64_t>::min(), 0},
                                         Clamping{std::numeric_limits<std::int64_t>::max(), 100}));

struct Normalisation {
    std::string given;
    std::string stored;
};

class BlurStyleColor : public testing::TestWithParam<Normalisation> {};

TEST_P(BlurStyleColor, IsAHashSignAndSixDigits) {
    const BlurStyle style(50, GetParam().given);

    EXPECT_EQ(style.colorHex, GetParam().stored);
}

INSTANTIATE_TEST_SUITE_P(Texts, BlurStyleColor,
                         testing::Values(Normalisation{" #1a2b3c\n", "#1A2B3C"}, Normalisation{"fff", "#FFFFFF"},
                                         Normalisation{"abcdef", "#ABCDEF"}, Normalisation{"#12345", "#000000"},
                                         Normalisation{"12345G", "#000000"}, Normalisation{"", "#000000"},
                                         Normalisation{"#", "#000000"}, Normalisation{"#ABCDEF0", "#000000"},
                                         Normalisation{"##abc", "#000000"}, Normalisation{"##abcde", "#000000"},
                                         Normalisation{"# abc", "#000000"}, Normalisation{"12 456", "#000000"},
                                         Normalisation{"xyz", "#000000"}, Normalisation{"\t\r\n#09aF5e\v\f", "#09AF5E"},
                                         // A no-break space, an ideographic space and a line separator.
                                         Normalisation{"\xC2\xA0#123\xE3\x80\x80\xE2\x80\xA8", "#112233"},
                                         // One character of three bytes, and one of six in full-width digits.
                                         Normalisation{"\xE2\x82\xAC", "#000000"},
                                         Normalisation{"\xEF\xBC\x91\xEF\xBC\x92", "#000000"}));

TEST(BlurStyle, KeepsAColourAssignedLaterAsItIs) {
    BlurStyle style;

    style.colorHex = "blue";
    style.intensity = 400;

    EXPECT_EQ(style.colorHex, "blue");
    EXPECT_EQ(style.intensity, 400);
    EXPECT_NE(style, BlurStyle());
}

TEST(BlurStyle, ComparesTheColourAsText) {
    BlurStyle lower;
    lower.colorHex = "#abcdef";

    EXPECT_NE(lower, BlurStyle(50, "#abcdef"));
}

class BlurStyleDifference : public testing::TestWithParam<BlurStyle> {};

TEST_P(BlurStyleDifference, InOneFieldIsSeen) {
    EXPECT_NE(GetParam(), BlurStyle());
}

INSTANTIATE_TEST_SUITE_P(Fields, BlurStyleDifference,
                         testing::Values(BlurStyle(51), BlurStyle(50, "#000001"), BlurStyle(50, "#000000", 99),
                                         BlurStyle(50, "#000000", 100, false)));

}  // namespace
}  // namespace pallwick
