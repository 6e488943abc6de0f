#include <PallwickMac/Platform/X11/DisplayNumber.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace pallwick::x11 {
namespace {

using Edid = std::array<std::uint8_t, 128>;

constexpr std::array<std::uint8_t, 4> someSerial{0x4C, 0x32, 0x39, 0x30};
constexpr std::array<std::uint8_t, 4> noSerial{};

/// The base block of a display of maker DEL and model A064 (VESA E-EDID 1.4, section 3).
Edid edid(const std::array<std::uint8_t, 4>& serial) {
    constexpr std::array<std::uint8_t, 8> header{0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
    constexpr std::array<std::uint8_t, 4> makerAndModel{0x10, 0xAC, 0x64, 0xA0};
    Edid bytes{};
    std::ranges::copy(header, bytes.begin());
    std::ranges::copy(makerAndModel, bytes.begin() + 8);
    std::ranges::copy(serial, bytes.begin() + 12);
    return bytes;
}

/// With a display descriptor of that tag and text as number `index` of four.
Edid withDescriptor(Edid bytes, std::size_t index, std::uint8_t tag, std::string_view text) {
    const auto descriptor = std::span(bytes).subspan(54 + 18 * index, 18);
    std::ranges::fill(descriptor, std::uint8_t{0});
    descriptor[3] = tag;
    std::ranges::copy(text, descriptor.begin() + 5);
    return bytes;
}

constexpr std::uint8_t serialTag = 0xFF;
constexpr std::uint8_t nameTag = 0xFC;

// The fixed numbers of this file are what presets have been saved under. They must never change.

TEST(DisplayNumber, OfANumericSerialIsTheSameForEver) {
    EXPECT_EQ(displayNumber(edid(someSerial), "DP-1"), 0x3EFEF422U);
}

TEST(DisplayNumber, OfATextSerialIsTheSameForEver) {
    EXPECT_EQ(displayNumber(withDescriptor(edid(noSerial), 1, serialTag, "CN0F2XJ\n     "), "DP-1"), 0x39EB710AU);
}

TEST(DisplayNumber, OfBothSerialsIsTheSameForEver) {
    EXPECT_EQ(displayNumber(withDescriptor(edid(someSerial), 1, serialTag, "CN0F2XJ\n     "), "DP-1"), 0x15CEF443U);
}

TEST(DisplayNumber, WithoutASerialIsTheSameForEver) {
    EXPECT_EQ(displayNumber(edid(noSerial), "DP-1"), 0x8A4ED8E7U);
}

TEST(DisplayNumber, WithoutAnEdidIsTheSameForEver) {
    EXPECT_EQ(displayNumber({}, "DP-1"), 0x1DBAD777U);
    EXPECT_EQ(displayNumber({}, "screen"), 0x55C54C11U);
}

TEST(DisplayNumber, FollowsADisplayWithASerialToAnotherConnector) {
    EXPECT_EQ(displayNumber(edid(someSerial), "HDMI-2"), displayNumber(edid(someSerial), "DP-1"));
}

TEST(DisplayNumber, FollowsADisplayWithATextSerialToAnotherConnector) {
    const Edid display = withDescriptor(edid(noSerial), 3, serialTag, "CN0F2XJ\n     ");

    EXPECT_EQ(displayNumber(display, "HDMI-2"), displayNumber(display, "DP-1"));
}

TEST(DisplayNumber, TellsTwinsWithoutASerialApartByTheirConnectors) {
    EXPECT_NE(displayNumber(edid(noSerial), "DP-1"), displayNumber(edid(noSerial), "DP-2"));
}

TEST(DisplayNumber, TellsTwinsApartByTheirSerials) {
    EXPECT_NE(displayNumber(edid(someSerial), "DP-1"), displayNumber(edid({1, 2, 3, 4}), "DP-1"));
    EXPECT_NE(displayNumber(withDescriptor(edid(noSerial), 1, serialTag, "A\n"), "DP-1"),
              displayNumber(withDescriptor(edid(noSerial), 1, serialTag, "B\n"), "DP-1"));
}

TEST(DisplayNumber, FindsTheTextSerialInWhicheverDescriptorHoldsIt) {
    const Edid plain = edid(noSerial);

    EXPECT_EQ(displayNumber(withDescriptor(plain, 0, serialTag, "CN0F2XJ\n"), "DP-1"), 0x39EB710AU);
    EXPECT_EQ(displayNumber(withDescriptor(plain, 3, serialTag, "CN0F2XJ\n"), "DP-1"), 0x39EB710AU);
}

TEST(DisplayNumber, TakesATextSerialThatFillsItsDescriptor) {
    const Edid display = withDescriptor(edid(noSerial), 1, serialTag, "1234567890ABC");

    EXPECT_EQ(displayNumber(display, "DP-1"), displayNumber(display, "DP-2"));
}

TEST(DisplayNumber, TakesABlankTextSerialForNone) {
    EXPECT_EQ(displayNumber(withDescriptor(edid(noSerial), 1, serialTag, "\n            "), "DP-1"), 0x8A4ED8E7U);
    EXPECT_EQ(displayNumber(withDescriptor(edid(noSerial), 1, serialTag, "    \n        "), "DP-1"), 0x8A4ED8E7U);
}

TEST(DisplayNumber, TakesADisplaysNameForNoSerial) {
    EXPECT_EQ(displayNumber(withDescriptor(edid(noSerial), 1, nameTag, "CN0F2XJ\n"), "DP-1"), 0x8A4ED8E7U);
}

TEST(DisplayNumber, TakesATimingForNoSerial) {
    // A detailed timing begins with a pixel clock, which is never 0; the rest may look like anything.
    Edid display = withDescriptor(edid(noSerial), 0, serialTag, "CN0F2XJ\n");
    display[54] = 0x02;
    display[55] = 0x3A;

    EXPECT_EQ(displayNumber(display, "DP-1"), 0x8A4ED8E7U);
}

TEST(DisplayNumber, DoesNotDependOnWhatElseTheEdidSays) {
    // Brightness, timings, checksum: firmware and cables change them.
    Edid display = edid(someSerial);
    display[20] = 0xA5;
    display[127] = 0x5A;

    EXPECT_EQ(displayNumber(display, "DP-1"), 0x3EFEF422U);
}

TEST(DisplayNumber, DoesNotDependOnExtensionBlocks) {
    const Edid base = edid(someSerial);
    std::vector<std::uint8_t> display(base.begin(), base.end());
    display.resize(256, 0x77);

    EXPECT_EQ(displayNumber(display, "DP-1"), 0x3EFEF422U);
}

TEST(DisplayNumber, TakesATruncatedEdidForNone) {
    const Edid display = edid(someSerial);

    EXPECT_EQ(displayNumber(std::span(display).first(127), "DP-1"), displayNumber({}, "DP-1"));
}

TEST(DisplayNumber, TakesAnEdidWithAGarbledHeaderForNone) {
    Edid display = edid(someSerial);
    display[3] = 0xFE;

    EXPECT_EQ(displayNumber(display, "DP-1"), displayNumber({}, "DP-1"));
}

TEST(DisplayNumber, IsNotZeroWhereTheHashWouldBe) {
    // The hash of this text is 0, which names no display.
    EXPECT_EQ(displayNumber({}, "BEDJW?"), 1U);
}

TEST(DisplayNumber, OfAnEmptyNameIsNotZero) {
    EXPECT_EQ(displayNumber({}, ""), 0x811C9DC5U);
}

}  // namespace
}  // namespace pallwick::x11
