#include "DecodingFailure.h"
#include "SampleRecords.h"

#include <PallwickMacCore/Models/JsonReader.h>
#include <PallwickMacCore/Models/RecordCoding.h>
#include <gtest/gtest.h>

#include <string>

namespace pallwick {
namespace {

struct Hostile {
    const char* name;
    std::string text;
};

std::string repeated(std::string_view text, std::size_t times) {
    std::string result;
    for (std::size_t i = 0; i < times; ++i) {
        result.append(text);
    }
    return result;
}

class JsonHostileInput : public testing::TestWithParam<Hostile> {};

TEST_P(JsonHostileInput, IsRefusedAsCorrupt) {
    const auto read = [] { return readJson(GetParam().text, "presets.json"); };

    try {
        static_cast<void>(read());
        ADD_FAILURE() << "accepted";
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.kind(), DecodingError::Kind::dataCorrupted);
        EXPECT_TRUE(error.codingPath().empty());
        EXPECT_EQ(error.sourceName(), "presets.json");
    }
}

INSTANTIATE_TEST_SUITE_P(Syntax, JsonHostileInput,
                         testing::Values(Hostile{"Empty", ""}, Hostile{"Blank", " \n\t"}, Hostile{"Word", "garbage"},
                                         Hostile{"OpenObject", "{"}, Hostile{"OpenArray", "[1"},
                                         Hostile{"OpenString", "\"a"}, Hostile{"OnlyAByteOrderMark", "\xEF\xBB\xBF"},
                                         Hostile{"TrailingCommaInArray", "[1,]"},
                                         Hostile{"TrailingCommaInObject", R"({"a":1,})"},
                                         Hostile{"MissingColon", R"({"a" 1})"}, Hostile{"MissingValue", R"({"a":})"},
                                         Hostile{"KeyWithoutQuotes", "{a:1}"}, Hostile{"NumberAsKey", "{1:1}"},
                                         Hostile{"SingleQuotes", "'a'"}, Hostile{"WrongBracket", "[1}"},
                                         Hostile{"LineComment", "1 // one"}, Hostile{"BlockComment", "/**/1"},
                                         Hostile{"CapitalTrue", "True"}, Hostile{"TwoValues", "1 2"},
                                         Hostile{"TextAfterwards", "[1] x"}, Hostile{"SecondDocument", "{}{}"}),
                         [](const auto& instance) { return instance.param.name; });

INSTANTIATE_TEST_SUITE_P(Numbers, JsonHostileInput,
                         testing::Values(Hostile{"LeadingZero", "01"}, Hostile{"NothingAfterThePoint", "1."},
                                         Hostile{"NothingBeforeThePoint", ".5"}, Hostile{"Plus", "+1"},
                                         Hostile{"MinusAlone", "-"}, Hostile{"EmptyExponent", "1e"},
                                         Hostile{"Hexadecimal", "0x10"}, Hostile{"CommaForAPoint", "1,5"},
                                         Hostile{"NaN", "NaN"}, Hostile{"Infinity", "Infinity"},
                                         Hostile{"MinusInfinity", "-Infinity"}, Hostile{"TooLarge", "1e999"},
                                         Hostile{"TooSmall", "[-1e999]"},
                                         Hostile{"TooManyDigits", std::string(400, '9')}),
                         [](const auto& instance) { return instance.param.name; });

INSTANTIATE_TEST_SUITE_P(Strings, JsonHostileInput,
                         testing::Values(Hostile{"ControlCharacter", "\"a\x01\""}, Hostile{"LineBreak", "\"a\nb\""},
                                         Hostile{"Tab", "\"a\tb\""}, Hostile{"UnknownEscape", R"("\x41")"},
                                         Hostile{"BadHexEscape", R"("\u12g4")"}, Hostile{"ShortHexEscape", R"("\u12")"},
                                         Hostile{"HighSurrogateAlone", R"("\ud83d")"},
                                         Hostile{"HighSurrogateAndText", R"("\ud83dx")"},
                                         Hostile{"LowSurrogateAlone", R"("\ude00")"},
                                         Hostile{"SurrogatesSwapped", R"("\ude00\ud83d")"},
                                         Hostile{"SurrogateAloneInAKey", R"({"\ud83d":1})"}),
                         [](const auto& instance) { return instance.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Bytes, JsonHostileInput,
    testing::Values(Hostile{"StrayContinuation", "\"\x80\""}, Hostile{"Overlong", "\"\xC0\xAF\""},
                    Hostile{"OverlongOfThree", "\"\xE0\x80\xAF\""}, Hostile{"EncodedSurrogate", "\"\xED\xA0\x80\""},
                    Hostile{"CutShort", "\"\xE2\x82\""}, Hostile{"BeyondUnicode", "\"\xF4\x90\x80\x80\""},
                    Hostile{"NeverAByte", "\"\xFF\""}, Hostile{"Latin1", "\"caf\xE9\""},
                    Hostile{"OutsideAString", "[\xC3\xA9]"}, Hostile{"Utf16", std::string("\xFF\xFE[\0]\0", 6)},
                    Hostile{"NulAlone", std::string("\0", 1)}, Hostile{"NulAfterwards", std::string("[]\0", 3)},
                    Hostile{"NulAndTextAfterwards", std::string("[]\0garbage", 10)},
                    Hostile{"NulInAString", std::string("\"a\0b\"", 5)}),
    [](const auto& instance) { return instance.param.name; });

INSTANTIATE_TEST_SUITE_P(Depth, JsonHostileInput,
                         testing::Values(Hostile{"OneTooDeep", std::string(513, '[') + std::string(513, ']')},
                                         Hostile{"OneTooDeepMixed", repeated(R"([{"a":)", 257)},
                                         Hostile{"AMillionArrays",
                                                 std::string(1'000'000, '[') + std::string(1'000'000, ']')},
                                         Hostile{"AMillionOpenArrays", std::string(1'000'000, '[')},
                                         Hostile{"AMillionObjects", repeated(R"({"a":)", 1'000'000)}),
                         [](const auto& instance) { return instance.param.name; });

TEST(JsonHostileInput, OfAMillionArraysInAnUnknownKeyIsRefusedToo) {
    const std::string text = R"({"unknown":)" + std::string(1'000'000, '[') + std::string(1'000'000, ']') + "}";

    EXPECT_EQ(test::decodingFailure<BlurOverlay>(text),
              (test::DecodingFailure{DecodingError::Kind::dataCorrupted, ""}));
}

// One test and not four hundred, each of which would be a process of its own.
TEST(JsonHostileInput, CutShortAnywhereIsRefused) {
    const test::DecodingFailure corrupted{DecodingError::Kind::dataCorrupted, ""};

    for (std::size_t length = 0; length < test::attachedOverlayText.size(); ++length) {
        EXPECT_EQ(test::decodingFailure<BlurOverlay>(test::attachedOverlayText.substr(0, length)), corrupted)
            << length << " bytes";
    }
}

}  // namespace
}  // namespace pallwick
