#include <PallwickMac/Platform/X11/CompoundText.h>
#include <gtest/gtest.h>

#include <string_view>

namespace pallwick::x11 {
namespace {

using namespace std::string_view_literals;

struct TextCase {
    std::string_view what;
    std::string_view text;
    std::string_view clean;
};

void PrintTo(const TextCase& textCase, std::ostream* stream) {
    *stream << textCase.what;
}

class EveryCompoundText : public ::testing::TestWithParam<TextCase> {};

INSTANTIATE_TEST_SUITE_P(
    Texts, EveryCompoundText,
    ::testing::Values(TextCase{"nothing", ""sv, ""sv}, TextCase{"ASCII", "xterm"sv, "xterm"sv},
                      TextCase{"letters beyond ASCII", "M\xFCnchen"sv, "M\u00FCnchen"sv},
                      TextCase{"UTF-8", "a\x1B%G\u20AC\u4E16\x1B%@z"sv, "a\u20AC\u4E16z"sv},
                      TextCase{"UTF-8 without an end", "\x1B%G\u20AC"sv, "\u20AC"sv},
                      TextCase{"bad UTF-8", "\x1B%G\xFF\x1B%@z"sv, "\uFFFDz"sv},
                      TextCase{"ISO 8859-1 by name", "\x1B-A\xFC"sv, "\u00FC"sv},
                      TextCase{"another set in the right half", "a\x1B-B\xB1\xB2z\x1B-A\xFC"sv, "a\uFFFDz\u00FC"sv},
                      TextCase{"a set of two bytes a character", "a\x1B$(B\x30\x21\x30\x22\x1B(Bz"sv, "a\uFFFDz"sv},
                      TextCase{"control characters", "a\tb\nc\0d"sv, "a b c d"sv},
                      TextCase{"an escape at the end", "a\x1B"sv, "a"sv},
                      TextCase{"half an escape", "a\x1B$("sv, "a"sv}));

TEST_P(EveryCompoundText, IsCleaned) {
    EXPECT_EQ(cleanCompoundText(GetParam().text), GetParam().clean);
}

}  // namespace
}  // namespace pallwick::x11
