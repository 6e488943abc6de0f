#include <PallwickMacCore/Models/JsonReader.h>
#include <PallwickMacCore/Models/JsonWriter.h>
#include <gtest/gtest.h>

#include <cmath>

namespace pallwick {
namespace {

JsonValue::Content contentOf(std::string_view text) {
    return readJson(text, "test").content;
}

TEST(JsonReader, KeepsTheOrderOfMembersAndRepeatedKeys) {
    const std::string text = R"({"z":1,"a":{"c":2,"b":3},"z":[4,null,true,false,"x"]})";

    EXPECT_EQ(writeJson(readJson(text, "test")), text);
}

TEST(JsonReader, SkipsWhiteSpaceAndAByteOrderMark) {
    EXPECT_EQ(writeJson(readJson("\xEF\xBB\xBF \t\r\n{ \"a\" :\n[ 1 , 2 ] }\n", "test")), R"({"a":[1,2]})");
}

TEST(JsonReader, ReadsEveryEscape) {
    EXPECT_EQ(std::get<std::string>(contentOf(R"("\"\\\/\b\f\n\r\t\u00e9\u20AC\ud83d\ude00")")),
              "\"\\/\b\f\n\r\t\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(JsonReader, ReadsAnEscapedNulCharacter) {
    EXPECT_EQ(std::get<std::string>(contentOf(R"("a\u0000b")")), std::string("a\0b", 3));
}

TEST(JsonReader, ReadsASlashWithAndWithoutAnEscape) {
    EXPECT_EQ(std::get<std::string>(contentOf(R"("a/b\/c")")), "a/b/c");
}

TEST(JsonReader, ReadsAsDeepAsItPromises) {
    const std::string text = std::string(512, '[') + std::string(512, ']');

    EXPECT_EQ(writeJson(readJson(text, "test")), text);
}

TEST(JsonReader, CountsOnlyWhatIsOpenAsDepth) {
    const std::string text =
        "[" + std::string(511, '[') + std::string(511, ']') + "," + std::string(511, '[') + std::string(511, ']') + "]";

    EXPECT_EQ(writeJson(readJson(text, "test")), text);
}

TEST(JsonReader, KeepsIntegersExact) {
    EXPECT_EQ(std::get<std::int64_t>(contentOf("9223372036854775807")), INT64_MAX);
    EXPECT_EQ(std::get<std::int64_t>(contentOf("-9223372036854775808")), INT64_MIN);
    EXPECT_EQ(std::get<std::int64_t>(contentOf("0")), 0);
}

TEST(JsonReader, HoldsAnIntegerOf64UnsignedBitsAsTheNearestDouble) {
    EXPECT_EQ(std::get<double>(contentOf("9223372036854775808")), 0x1p63);
    EXPECT_EQ(std::get<double>(contentOf("18446744073709551615")), 0x1p64);
    EXPECT_EQ(std::get<double>(contentOf("-9223372036854775809")), -0x1p63);
}

TEST(JsonReader, KeepsTheSignOfZeroHoweverItIsWritten) {
    EXPECT_TRUE(std::signbit(std::get<double>(contentOf("-0"))));
    EXPECT_TRUE(std::signbit(std::get<double>(contentOf("-0.0"))));
    EXPECT_TRUE(std::signbit(std::get<double>(contentOf("-0e5"))));
    EXPECT_FALSE(std::signbit(std::get<double>(contentOf("0.0"))));
}

TEST(JsonReader, ReadsANumberBelowTheSmallestDoubleAsZero) {
    EXPECT_EQ(std::get<double>(contentOf("1e-999")), 0);
    EXPECT_EQ(std::get<double>(contentOf("5e-324")), 5e-324);
}

}  // namespace
}  // namespace pallwick
