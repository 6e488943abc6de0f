#include <PallwickMacCore/Models/DecodingError.h>
#include <PallwickMacCore/Models/JsonReader.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pallwick {
namespace {

using namespace std::string_literals;

std::string repeated(const std::string& text, std::size_t times) {
    std::string result;
    for (std::size_t i = 0; i < times; ++i) {
        result.append(text);
    }
    return result;
}

bool isAccepted(const std::string& text) {
    try {
        static_cast<void>(readJson(text, "test"));
        return true;
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.kind(), DecodingError::Kind::dataCorrupted);
        return false;
    }
}

// Tables and not parameters: five hundred tests would be five hundred processes.
void expectVerdict(const std::vector<std::string>& texts, bool accepted) {
    for (const std::string& text : texts) {
        EXPECT_EQ(isAccepted(text), accepted) << testing::PrintToString(text.substr(0, 80));
    }
}

TEST(JsonVerdict, IsYesForEveryArrayThatTheGrammarAllows) {
    expectVerdict({"[]", "[ ]", "[[]   ]", "[\"\"]", "[\"a\"]", "[false]", "[null, 1, \"1\", {}]", "[null]", "[1\n]",
                   " [1]", "[1,null,null,null,2]", "[2] ", "[1,2 , 3]", "\t[\r\n1\t]\n", "[[[[[]]]]]", "[{},[],{}]"},
                  true);
}

TEST(JsonVerdict, IsYesForEveryNumberThatTheGrammarAllows) {
    expectVerdict({"[123e65]",
                   "[0e+1]",
                   "[0e1]",
                   "[ 4]",
                   "[-0.000000000000000000000000000000000000000001]",
                   "[20e1]",
                   "[-0]",
                   "[-123]",
                   "[-1]",
                   "[1E22]",
                   "[1E-2]",
                   "[1E+2]",
                   "[123e45]",
                   "[123.456e78]",
                   "[1e-2]",
                   "[1e+2]",
                   "[123]",
                   "[123.456789]",
                   "0",
                   "-0",
                   "42",
                   "-0.1",
                   "1.5e300",
                   "[0.1]",
                   "[0.0e0]",
                   "[1e0001]",
                   "[10]",
                   "[100000000000000000000]"},
                  true);
}

TEST(JsonVerdict, IsYesForEveryObjectThatTheGrammarAllows) {
    expectVerdict({R"({"asd":"sdf", "dfg":"fgh"})", R"({"asd":"sdf"})", R"({"a":"b","a":"c"})", R"({"a":"b","a":"b"})",
                   "{}", R"({"":0})", R"({"foo\u0000bar": 42})", R"({ "min": -1.0e+28, "max": 1.0e+28 })",
                   R"({"x":[{"id": "xxxxxxxxxxxxxxxxxxxx"}], "id": "xxxxxxxxxxxxxxxxxxxx"})", R"({"a":[]})",
                   R"({"title":"\u041f\u043e\u043b\u0442\u043e\u0440\u0430"})", "{\n\"a\": \"b\"\n}", "{ }"},
                  true);
}

TEST(JsonVerdict, IsYesForEveryStringThatTheGrammarAllows) {
    expectVerdict({R"(["\u0060\u012a\u12AB"])",
                   R"(["\uD801\udc37"])",
                   R"(["\ud83d\ude39\ud83d\udc8d"])",
                   R"(["\"\\\/\b\f\n\r\t"])",
                   R"(["\\u0000"])",
                   R"(["\""])",
                   "[\"a/*b*/c/*d//e\"]",
                   R"(["\\a"])",
                   R"(["\\n"])",
                   R"(["\u0012"])",
                   R"(["\uFFFF"])",
                   "[\"asd\"]",
                   "[ \"asd\"]",
                   R"(["\uDBFF\uDFFF"])",
                   R"(["new\u00A0line"])",
                   "[\"\xF4\x8F\xBF\xBF\"]",
                   "[\"\xEF\xBF\xBF\"]",
                   R"(["\u0000"])",
                   R"(["\u002c"])",
                   "[\"\xCF\x80\"]",
                   "[\"\xF0\x9B\xBF\xBF\"]",
                   "[\"asd \"]",
                   "\" \"",
                   R"(["\uD834\uDd1e"])",
                   R"(["\u0821"])",
                   R"(["\u0123"])",
                   "[\"\xE2\x80\xA8\"]",
                   "[\"\xE2\x80\xA9\"]",
                   R"(["\u0061\u30af\u30EA\u30b9"])",
                   "[\"new\xC2\xA0line\"]",
                   R"(["\uA66D"])",
                   R"(["\u005C"])",
                   "[\"\xE2\x8D\x82\xE3\x88\xB4\xE2\x8D\x82\"]",
                   "[\"\x7F\"]",
                   R"(["\u0022"])",
                   R"(["\uDBFF\uDFFE"])",
                   R"(["\uD83F\uDFFE"])",
                   R"(["\u200B"])",
                   R"(["\u2064"])",
                   R"(["\uFDD0"])",
                   R"(["\uFFFE"])",
                   "[\"\xE2\x82\xAC\xF0\x9D\x84\x9E\"]",
                   "[\"a\x7F"
                   "a\"]",
                   "\"\"",
                   "\"asd\""},
                  true);
}

TEST(JsonVerdict, IsYesForAnyValueAsTheWholeText) {
    expectVerdict({"false", "true", "null", "42", "-0.1", "\"asd\"", "[]\n", " [] ", "\n\t\r null"}, true);
}

TEST(JsonVerdict, IsNoForEveryOtherArray) {
    expectVerdict({"[1 true]",
                   "[a\xE5]",
                   "[\"\": 1]",
                   "[\"\"],",
                   "[,1]",
                   "[1,,2]",
                   "[\"x\",,]",
                   "[\"x\"]]",
                   "[\"\",]",
                   "[\"x\"",
                   "[x",
                   "[3[4]]",
                   "[\xFF]",
                   "[1:2]",
                   "[,]",
                   "[-]",
                   "[   , \"\"]",
                   "[\"a\",\n4\n,1,",
                   "[1,]",
                   "[1,,]",
                   "[\"\x0B"
                   "a\"\\f]",
                   "[*]",
                   "[\"\"",
                   "[1,",
                   "[1,\n1\n,1",
                   "[{}",
                   "[",
                   "[[",
                   "[][]",
                   "]",
                   "[}",
                   "[\"asd]",
                   "[<null>]",
                   "[1]x",
                   "[],",
                   "[\"asd\"",
                   "[True]",
                   "[tru]",
                   "[fals]",
                   "[nul]",
                   "[\xE2\x81\xA0]",
                   "[\x0C]",
                   "[\xC2\xA0]",
                   "[\\u000A\"\"]",
                   "[1\"a\"]",
                   "[\xEF\xBB\xBF]",
                   "[truefalse]"},
                  false);
}

TEST(JsonVerdict, IsNoForEveryOtherNumber) {
    expectVerdict({"[++1234]",
                   "[+1]",
                   "[+Inf]",
                   "[-01]",
                   "[-1.0.]",
                   "[-2.]",
                   "[-NaN]",
                   "[.-1]",
                   "[.2e-3]",
                   "[0.1.2]",
                   "[0.3e+]",
                   "[0.3e]",
                   "[0.e1]",
                   "[0E+]",
                   "[0E]",
                   "[0e+]",
                   "[0e]",
                   "[1.0e+]",
                   "[1.0e-]",
                   "[1.0e]",
                   "[1 000.0]",
                   "[1eE2]",
                   "[2.e+3]",
                   "[2.e-3]",
                   "[2.e3]",
                   "[9.e+]",
                   "[Inf]",
                   "[NaN]",
                   "[\xEF\xBC\x91]",
                   "[1+2]",
                   "[0x1]",
                   "[0x42]",
                   "[Infinity]",
                   "[0e+-1]",
                   "[-123.123foo]",
                   "[123\xE5]",
                   "[1e1\xE5]",
                   "[0\xE5]",
                   "[-Infinity]",
                   "[-foo]",
                   "[- 1]",
                   "[-012]",
                   "[-.123]",
                   "[-1x]",
                   "[1ea]",
                   "[1e\xE5]",
                   "[1.]",
                   "[.123]",
                   "[1.2a-3]",
                   "[1.8011670033376514H-308]",
                   "[012]",
                   "[-2147483648x]",
                   "[1_000]",
                   "[1e]",
                   "[1e+]",
                   "[--1]",
                   "1]",
                   "2.",
                   "-",
                   "+0",
                   "0x",
                   "1e1.5"},
                  false);
}

TEST(JsonVerdict, IsNoForEveryOtherObject) {
    expectVerdict({"[\"x\", truth]",
                   R"({[: "x"})",
                   R"({"x", null})",
                   R"({"x"::"b"})",
                   "{\xF0\x9F\x87\xA8}",
                   R"({"a":"a" 123})",
                   R"({key: 'value'})",
                   "{\"\xB9\":\"0\",}",
                   R"({"a" b})",
                   R"({:"b"})",
                   R"({"a" "b"})",
                   R"({"a":)",
                   R"({"a")",
                   "{1:1}",
                   "{9999E9999:1}",
                   "{null:null,null:null}",
                   R"({"id":0,,,,,})",
                   "{'a':0}",
                   R"({"id":0,})",
                   R"({"a":"b"}/**/)",
                   R"({"a":"b"}/**//)",
                   R"({"a":"b"}//)",
                   R"({"a":"b"}/)",
                   R"({"a":"b",,"c":"d"})",
                   R"({a: "b"})",
                   R"({"a":"a)",
                   R"({ "foo" : "bar", "a" })",
                   R"({"a":"b"}#)",
                   "{",
                   "{,",
                   "{]",
                   "{\"",
                   "{}}",
                   R"({"":)",
                   R"({"a":1 "b":2})",
                   R"({"a":/*comment*/"b"})",
                   "{{}}",
                   R"({"a":true} "x")",
                   "{[]:1}",
                   R"({true:1})",
                   R"({"a":1,"b"})",
                   R"({"x":,"y":1})"},
                  false);
}

TEST(JsonVerdict, IsNoForEveryOtherString) {
    expectVerdict({" ",
                   R"(["\uD800\"])",
                   R"(["\uD800\u"])",
                   R"(["\uD800\u1"])",
                   R"(["\uD800\u1x"])",
                   "[\xC3\xA9]",
                   "[\"\\\0\"]"s,
                   R"(["\x00"])",
                   R"(["\\\"])",
                   "[\"\\\t\"]",
                   "[\"\\\xF0\x9F\x8C\x80\"]",
                   R"(["\"])",
                   R"(["\u00A"])",
                   R"(["\uD834\uDd"])",
                   R"(["\uD800\uD800\x"])",
                   "[\"\\u\xE5\"]",
                   R"(["\a"])",
                   R"(["\uqqqq"])",
                   "[\"\\\xE5\"]",
                   R"([\u0020"asd"])",
                   R"([\n])",
                   R"(")",
                   "['single quote']",
                   "abc",
                   "[\"\\",
                   "[\"a\0a\"]"s,
                   "[\"new\nline\"]",
                   "[\"\t\"]",
                   R"("\UA66D")",
                   R"(""x)",
                   "[\"\x1F\"]",
                   "[\"\r\"]",
                   "\"a",
                   R"(["\v"])",
                   R"(["\'"])",
                   R"(["\0"])",
                   R"(["\u{41}"])",
                   R"(["\101"])"},
                  false);
}

TEST(JsonVerdict, IsNoForEveryOtherText) {
    expectVerdict({"<.>",
                   "[<null>]",
                   "[1]x",
                   "[1]]",
                   "[\"asd]",
                   "a\xC3\xA5",
                   "[True]",
                   "1]",
                   R"({"x": true,)",
                   "[][]",
                   "]",
                   "\xEF\xBB{}",
                   "\xE5",
                   "[",
                   "",
                   "\0"s,
                   "[\0]"s,
                   "[]\0"s,
                   R"({"":{"":{"":)",
                   "{}[]",
                   "\xE2\x81\xA0",
                   "'",
                   "[\"",
                   "[\"a",
                   "{\"a",
                   "*",
                   R"({"a":"b"}#{})",
                   "[\\u000A\"\"]",
                   "[1",
                   "[ false, nul",
                   "[ true, fals",
                   "[ false, tru",
                   "{\"asd\":\"asd\"",
                   "\xC3\xA5",
                   "\xEF\xBB\xBF",
                   "[\xE2\x81\xA0]",
                   "[\x0C]",
                   "\x0C[]",
                   "[]\x0B",
                   "nulll",
                   "truе",
                   "\xEF\xBB\xBF\xEF\xBB\xBF[]",
                   "\xFE\xFF[]",
                   "// a\n[]",
                   "[]\x1A",
                   "undefined",
                   "\x1B[]"},
                  false);
}

TEST(JsonVerdict, IsNoForDepthWithoutEnd) {
    expectVerdict({std::string(100'000, '['), repeated("[{\"\":", 50'000), std::string(1'000'000, '['),
                   std::string(500'000, '[') + std::string(500'000, ']')},
                  false);
}

// What readers may differ in: a number that no double holds and text that is no Unicode are refused, since they could
// not be written back as they were; everything that can be read without a loss that matters is read.
TEST(JsonVerdict, IsYesForNumbersThatAreRounded) {
    expectVerdict({"[123.456e-789]", "[-123123123123123123123123123123]", "[100000000000000000000]",
                   "[-237462374673276894279832749832423479823246327846]", "[1e-400]", "[4.9e-325]",
                   "[1.7976931348623157e308]", "[-1.7976931348623157e308]", "[2.2250738585072011e-308]",
                   "[0.1000000000000000055511151231257827021181583404541015625]"},
                  true);
}

TEST(JsonVerdict, IsNoForNumbersBeyondTheLargest) {
    expectVerdict(
        {"[0.4e00669999999999999999999999999999999999999999999999999999999999999999999999999999999999999999999999"
         "999999999999999999999969999999006]",
         "[-1e+9999]", "[1.5e+9999]", "[-123123e100000]", "[123123e100000]", "[1e309]", "[1.7976931348623159e308]",
         "[" + std::string(310, '9') + "]"},
        false);
}

TEST(JsonVerdict, IsNoForHalfASurrogatePair) {
    expectVerdict(
        {R"({"\uDFAA":0})", R"(["\uDADA"])", R"(["\uD888\u1234"])", R"(["\uD800\n"])", R"(["\uDd1ea"])",
         R"(["\uD800\uD800\n"])", R"(["\ud800"])", R"(["\ud800abc"])", R"(["\uDd1e\uD834"])", R"(["\uDFAA"])"},
        false);
}

TEST(JsonVerdict, IsNoForBytesThatAreNoUtf8) {
    expectVerdict({"\xFF\xFE[\0\"\0\xE9\0\"\0]\0"s, "[\"\xE6\x97\xA5\xD1\x88\xFA\"]", "[\"\xFF\"]", "[\"\xE0\xFF\"]",
                   "[\"\xF4\xBF\xBF\xBF\"]", "[\"\xED\xA0\x80\"]", "[\"\x81\"]", "[\"\xFC\x80\x80\x80\x80\x80\"]",
                   "[\"\xFC\x83\xBF\xBF\xBF\xBF\"]", "[\"\xC0\xAF\"]", "[\"\xE9\"]", "[\0\"\0\xE9\0\"\0]\0"s,
                   "\0[\0\"\0\xE9\0\"\0]"s, "[\"\xC1\xBF\"]", "[\"\xF5\x80\x80\x80\"]"},
                  false);
}

TEST(JsonVerdict, IsYesForAByteOrderMarkOfUtf8) {
    expectVerdict({"\xEF\xBB\xBF{}"}, true);
}

TEST(JsonVerdict, IsYesForDepthUpToTheLimitOnly) {
    expectVerdict({std::string(512, '[') + std::string(512, ']')}, true);
    expectVerdict({std::string(513, '[') + std::string(513, ']')}, false);
}

TEST(JsonVerdict, IsYesForAStringOfAHundredMegabytes) {
    const std::string characters(100'000'000, 'x');

    const JsonValue value = readJson("\"" + characters + "\"", "test");

    EXPECT_TRUE(std::get<std::string>(value.content) == characters);
}

TEST(JsonVerdict, IsNoForAStringOfAMegabyteThatDoesNotEnd) {
    EXPECT_FALSE(isAccepted("\"" + std::string(1'000'000, 'x')));
}

}  // namespace
}  // namespace pallwick
