#include <PallwickMac/Platform/X11/WindowProperties.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace pallwick::x11 {
namespace {

using namespace std::string_view_literals;

#define REPLACED "\xEF\xBF\xBD"

struct TextCase {
    std::string_view what;
    std::string_view text;
    std::string_view clean;
};

void PrintTo(const TextCase& textCase, std::ostream* stream) {
    *stream << textCase.what;
}

class EveryUtf8Text : public ::testing::TestWithParam<TextCase> {};

INSTANTIATE_TEST_SUITE_P(
    Texts, EveryUtf8Text,
    ::testing::Values(
        TextCase{"nothing", ""sv, ""sv},  //
        TextCase{"ASCII", "org.pallwick.Pallwick"sv, "org.pallwick.Pallwick"sv},
        TextCase{"two, three and four bytes", "\u00FC\u20AC\U0001F600"sv, "\u00FC\u20AC\U0001F600"sv},
        TextCase{"the first and last of each length", "\u0080|\u07FF|\u0800|\uFFFF|\U00010000|\U0010FFFF"sv.substr(2),
                 "|\u07FF|\u0800|\uFFFF|\U00010000|\U0010FFFF"sv},
        TextCase{"around the surrogates", "\uD7FF\uE000"sv, "\uD7FF\uE000"sv},
        TextCase{"a stray tail byte", "a\x80z"sv, "a" REPLACED "z"sv},
        TextCase{"a head byte without its tail", "a\xC3z"sv, "a" REPLACED "z"sv},
        TextCase{"three bytes of which one is missing", "a\xE2\x82z"sv, "a" REPLACED REPLACED "z"sv},
        TextCase{"an overlong slash of two bytes", "\xC0\xAFz"sv, REPLACED REPLACED "z"sv},
        TextCase{"an overlong slash of three bytes", "\xE0\x80\xAFz"sv, REPLACED REPLACED REPLACED "z"sv},
        TextCase{"an overlong slash of four bytes", "\xF0\x80\x80\xAFz"sv, REPLACED REPLACED REPLACED REPLACED "z"sv},
        TextCase{"an overlong NUL", "\xC0\x80z"sv, REPLACED REPLACED "z"sv},
        TextCase{"a surrogate", "\xED\xA0\x80z"sv, REPLACED REPLACED REPLACED "z"sv},
        TextCase{"beyond the last code point", "\xF4\x90\x80\x80z"sv, REPLACED REPLACED REPLACED REPLACED "z"sv},
        TextCase{"bytes that UTF-8 never has", "\xF5\xFE\xFFz"sv, REPLACED REPLACED REPLACED "z"sv},
        TextCase{"ISO 8859-1", "M\xFCnchen"sv, "M" REPLACED "nchen"sv},
        TextCase{"two bytes cut in half", "a\xC3"sv, "a"sv},  //
        TextCase{"three bytes cut after one", "a\xE2"sv, "a"sv},
        TextCase{"three bytes cut after two", "a\xE2\x82"sv, "a"sv},
        TextCase{"four bytes cut after three", "a\xF0\x9F\x98"sv, "a"sv},
        TextCase{"a stray tail byte at the end", "a\x80"sv, "a" REPLACED ""sv},
        TextCase{"a byte that UTF-8 never has at the end", "a\xFF"sv, "a" REPLACED ""sv},
        TextCase{"an overlong beginning at the end", "a\xC0"sv, "a" REPLACED ""sv},
        TextCase{"a beginning beyond the last code point at the end", "a\xF5\x80"sv, "a" REPLACED REPLACED ""sv},
        TextCase{"a surrogate cut in half", "a\xED\xA0"sv, "a" REPLACED REPLACED ""sv},
        TextCase{"control characters", "a\x01\x1F\x7Fz"sv, "a   z"sv},
        TextCase{"lines and tabs", "one\r\ntwo\tthree"sv, "one  two three"sv},
        TextCase{"NULs", "a\0z\0"sv, "a z "sv},  //
        TextCase{"control characters beyond ASCII", "a\u0080\u0085\u009Fz"sv, "a   z"sv},
        TextCase{"what comes after them", "\u00A0"sv, "\u00A0"sv},
        TextCase{"line and paragraph separators", "a\u2028\u2029z"sv, "a  z"sv}));

TEST_P(EveryUtf8Text, IsCleaned) {
    EXPECT_EQ(cleanUtf8(GetParam().text), GetParam().clean);
}

TEST_P(EveryUtf8Text, IsLeftAloneOnceClean) {
    EXPECT_EQ(cleanUtf8(GetParam().clean), GetParam().clean);
}

class EveryLatin1Text : public ::testing::TestWithParam<TextCase> {};

INSTANTIATE_TEST_SUITE_P(Texts, EveryLatin1Text,
                         ::testing::Values(TextCase{"nothing", ""sv, ""sv}, TextCase{"ASCII", "xterm"sv, "xterm"sv},
                                           TextCase{"letters beyond ASCII", "M\xFCnchen\xFF"sv, "M\u00FCnchen\u00FF"sv},
                                           TextCase{"the first one", "\xA0"sv, "\u00A0"sv},
                                           TextCase{"control characters", "a\x01\x7F\x80\x9F\0z"sv, "a     z"sv},
                                           TextCase{"UTF-8, which it is not", "\xC3\xBC"sv, "\u00C3\u00BC"sv}));

TEST_P(EveryLatin1Text, IsCleaned) {
    EXPECT_EQ(cleanLatin1(GetParam().text), GetParam().clean);
}

constexpr std::size_t megabyte = 1U << 20U;

TEST(WindowText, OfAMegabyteStaysWhole) {
    const std::string letters(megabyte, 'x');

    EXPECT_EQ(cleanUtf8(letters), letters);
    EXPECT_EQ(cleanLatin1(letters), letters);
}

TEST(WindowText, OfAMegabyteOfRubbishIsReplacedByteByByte) {
    const std::string cleaned = cleanUtf8(std::string(megabyte, '\xBF'));

    EXPECT_EQ(cleaned.size(), 3 * megabyte);
    EXPECT_EQ(cleaned.substr(cleaned.size() - 3), REPLACED);
}

TEST(WindowText, OfAMegabyteOfHeadBytesLosesOnlyTheLast) {
    EXPECT_EQ(cleanUtf8(std::string(megabyte, '\xC3')).size(), 3 * (megabyte - 1));
}

}  // namespace
}  // namespace pallwick::x11
