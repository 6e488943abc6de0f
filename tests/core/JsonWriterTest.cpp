#include <PallwickMacCore/Models/EncodingError.h>
#include <PallwickMacCore/Models/JsonCoding.h>
#include <gtest/gtest.h>

#include <bit>
#include <limits>

namespace pallwick {
namespace {

using Numbers = std::map<std::string, std::vector<double>>;

constexpr JsonFormat pretty{.prettyPrinted = true};
constexpr JsonFormat sorted{.sortedKeys = true};

JsonObject unsortedObject() {
    return {{.key = "b", .value = {std::int64_t{1}}},
            {.key = "B", .value = {JsonObject{{.key = "z", .value = {true}}, {.key = "a", .value = {nullptr}}}}},
            {.key = "\xC3\xA9", .value = {std::int64_t{2}}},
            {.key = "a", .value = {std::int64_t{3}}}};
}

TEST(JsonWriter, KeepsTheOrderOfMembersUnlessAskedToSort) {
    EXPECT_EQ(writeJson({unsortedObject()}), "{\"b\":1,\"B\":{\"z\":true,\"a\":null},\"\xC3\xA9\":2,\"a\":3}");
}

TEST(JsonWriter, SortsTheKeysOfEveryObjectByTheirBytes) {
    EXPECT_EQ(writeJson({unsortedObject()}, sorted), "{\"B\":{\"a\":null,\"z\":true},\"a\":3,\"b\":1,\"\xC3\xA9\":2}");
}

TEST(JsonWriter, IndentsEveryLevelByTwoSpaces) {
    EXPECT_EQ(encode(Numbers{{"a", {1, 2.5}}, {"b", {}}}, pretty),
              "{\n  \"a\": [\n    1,\n    2.5\n  ],\n  \"b\": []\n}");
}

TEST(JsonWriter, WritesEmptyContainersOnOneLine) {
    EXPECT_EQ(writeJson({JsonObject()}, pretty), "{}");
    EXPECT_EQ(writeJson({JsonArray()}, pretty), "[]");
}

struct Escaping {
    std::string text;
    std::string json;
};

class JsonWriterString : public testing::TestWithParam<Escaping> {};

TEST_P(JsonWriterString, IsEscapedWhereItMustBe) {
    const std::string json = encode(GetParam().text);

    EXPECT_EQ(json, GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(Texts, JsonWriterString,
                         testing::Values(Escaping{"", R"("")"}, Escaping{"a/b", R"("a\/b")"},
                                         Escaping{R"(a"b\c)", R"("a\"b\\c")"},
                                         Escaping{"\b\f\n\r\t", R"("\b\f\n\r\t")"},
                                         Escaping{std::string("\0\x01\x1F\x7F", 4), "\"\\u0000\\u0001\\u001f\x7F\""},
                                         Escaping{"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80",
                                                  "\"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\""},
                                         Escaping{"\xEF\xBF\xBF\xF4\x8F\xBF\xBF", "\"\xEF\xBF\xBF\xF4\x8F\xBF\xBF\""}));

class JsonWriterBadUtf8 : public testing::TestWithParam<Escaping> {};

TEST_P(JsonWriterBadUtf8, IsReplacedSoThatTheTextStaysReadable) {
    const std::string json = encode(GetParam().text);

    EXPECT_EQ(decode<std::string>(json, "test"), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, JsonWriterBadUtf8,
    testing::Values(Escaping{"caf\xE9", "caf\xEF\xBF\xBD"}, Escaping{"\xE2\x82", "\xEF\xBF\xBD\xEF\xBF\xBD"},
                    Escaping{"\xE2\x82x", "\xEF\xBF\xBD\xEF\xBF\xBDx"}, Escaping{"\x80", "\xEF\xBF\xBD"},
                    Escaping{"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"}, Escaping{"\xC3", "\xEF\xBF\xBD"},
                    Escaping{"\xE0\x9F\xBF", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
                    Escaping{"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
                    Escaping{"\xF0\x8F\xBF\xBF", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
                    Escaping{"\xF4\x90\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
                    Escaping{"\xFF", "\xEF\xBF\xBD"}));

TEST(JsonWriter, RefusesAKeyThatIsNotUtf8) {
    EXPECT_THROW(static_cast<void>(encode(Numbers{{"application:\xFF", {}}})), EncodingError);
}

struct Notation {
    double value;
    const char* json;
};

class JsonWriterDouble : public testing::TestWithParam<Notation> {};

TEST_P(JsonWriterDouble, HasAsFewDigitsAsNameItAndComesBackBitForBit) {
    const std::string json = encode(GetParam().value);

    EXPECT_EQ(json, GetParam().json);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(decode<double>(json, "test")),
              std::bit_cast<std::uint64_t>(GetParam().value));
}

INSTANTIATE_TEST_SUITE_P(Values, JsonWriterDouble,
                         testing::Values(Notation{0.0, "0"}, Notation{-0.0, "-0.0"}, Notation{160, "160"},
                                         Notation{-12.5, "-12.5"}, Notation{0.1, "0.1"},
                                         Notation{0.1 + 0.2, "0.30000000000000004"}, Notation{1e22, "1e+22"},
                                         Notation{1.0 / 3.0, "0.3333333333333333"},
                                         Notation{785331931.123456, "785331931.123456"},
                                         Notation{0x1p63, "9223372036854775808"}, Notation{5e-324, "5e-324"},
                                         Notation{-2.2250738585072014e-308, "-2.2250738585072014e-308"},
                                         Notation{std::numeric_limits<double>::max(), "1.7976931348623157e+308"}));

TEST(JsonWriter, WritesTheWidestIntegers) {
    EXPECT_EQ(encode(INT64_MIN), "-9223372036854775808");
    EXPECT_EQ(encode(INT64_MAX), "9223372036854775807");
    EXPECT_EQ(encode(UINT32_MAX), "4294967295");
}

}  // namespace
}  // namespace pallwick
