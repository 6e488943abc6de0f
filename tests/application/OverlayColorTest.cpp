#include <PallwickMac/Services/OverlayColor.h>

#include <QtGlobal>

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace pallwick {
namespace {

struct HexCase {
    std::string hex;
    QColor color;
    std::string name;

    friend void PrintTo(const HexCase& hexCase, std::ostream* stream) { *stream << '"' << hexCase.hex << '"'; }
};

class OverlayColorOfHex : public ::testing::TestWithParam<HexCase> {};

TEST_P(OverlayColorOfHex, IsTheColourItStandsFor) {
    const QColor color = overlayColor(GetParam().hex, 1);

    EXPECT_EQ(color, GetParam().color) << color.name().toStdString();
}

const QColor orange(255, 128, 0);
const QColor black(0, 0, 0);

INSTANTIATE_TEST_SUITE_P(
    , OverlayColorOfHex,
    ::testing::Values(HexCase{"#FF8000", orange, "HashAndSixDigits"}, HexCase{"FF8000", orange, "SixDigitsAlone"},
                      HexCase{"##FF8000##", orange, "HashesAtBothEnds"}, HexCase{"FF8000#", orange, "HashAtTheEndOnly"},
                      HexCase{"#ff8000", orange, "LowerCase"}, HexCase{"#fF8000", orange, "MixedCase"},
                      HexCase{"+FF8000", orange, "LeadingPlus"}, HexCase{"#+FF8000", orange, "PlusBehindTheHash"},
                      HexCase{"#80FF8000", orange, "EightDigitsLoseTheirFirstByte"},
                      HexCase{"#0000000000FF8000", orange, "ManyLeadingZeros"},
                      HexCase{"#F80", QColor(0, 0x0F, 0x80), "ThreeDigitsAreOneNumber"},
                      HexCase{"#100FF8000", black, "BeyondThirtyTwoBits"}, HexCase{"#GG0000", black, "NotHexadecimal"},
                      HexCase{"#FF80G0", black, "DigitsThenALetter"}, HexCase{"", black, "Empty"},
                      HexCase{"####", black, "HashesOnly"}, HexCase{"#+", black, "PlusOnly"},
                      HexCase{"++FF8000", black, "TwoPluses"}, HexCase{"-FF8000", black, "Minus"},
                      HexCase{"FF#8000", black, "HashInTheMiddle"}, HexCase{"0xFF8000", black, "Prefix"},
                      HexCase{" FF8000", black, "LeadingSpace"}, HexCase{"FF8000 ", black, "TrailingSpace"},
                      HexCase{"FF80\xC3\xA9", black, "NotAscii"}),
    [](const ::testing::TestParamInfo<HexCase>& test) { return test.param.name; });

TEST(OverlayColor, TakesItsAlphaFromTheCaller) {
    EXPECT_NEAR(overlayColor("#FF8000", 0.5).alphaF(), 0.5, 1.0 / 65535);
    EXPECT_EQ(overlayColor("not a colour", 0.25).alpha(), 64);
}

TEST(OverlayColor, HoldsAnAlphaOutsideItsRangeWithoutAWord) {
    static int messages;
    messages = 0;
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++messages; });

    const int above = overlayColor("#FF8000", 4).alpha();
    const int below = overlayColor("#FF8000", -0.5).alpha();
    qInstallMessageHandler(previous);

    EXPECT_EQ(above, 255);
    EXPECT_EQ(below, 0);
    EXPECT_EQ(messages, 0);
}

}  // namespace
}  // namespace pallwick
