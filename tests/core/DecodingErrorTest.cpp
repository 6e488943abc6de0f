#include "DecodingFailure.h"
#include "JsonEditing.h"
#include "SampleRecords.h"

#include <PallwickMacCore/Models/RecordCoding.h>
#include <gmock/gmock.h>

namespace pallwick {
namespace {

using Presets = std::map<std::string, std::vector<BlurOverlay>>;

std::string presetsWith(std::string_view overlay) {
    return R"({"screen:1":[)" + std::string(overlay) + "]}";
}

struct Sentence {
    const char* name;
    std::string text;
    const char* what;
};

class DecodingErrorSentence : public testing::TestWithParam<Sentence> {};

TEST_P(DecodingErrorSentence, NamesTheSourceThePlaceAndWhatWasExpected) {
    const DecodingError error = test::decodingError<Presets>(GetParam().text);

    EXPECT_STREQ(error.what(), GetParam().what);
}

const std::string overlay(test::attachedOverlayText);

INSTANTIATE_TEST_SUITE_P(
    Kinds, DecodingErrorSentence,
    testing::Values(
        Sentence{"MissingKey", presetsWith(test::withoutMember(overlay, {"updatedAt"})),
                 "presets.json: screen:1[0].updatedAt: this key is required"},
        Sentence{"Null", presetsWith(test::withValue(overlay, {"displayID"}, "null")),
                 "presets.json: screen:1[0].displayID: expected a number but found null"},
        Sentence{"WrongType", presetsWith(test::withValue(overlay, {"style", "glassBlur"}, "1")),
                 "presets.json: screen:1[0].style.glassBlur: expected true or false but found a number"},
        Sentence{"ShortRectangle", presetsWith(test::withValue(overlay, {"frame"}, "[[1,2]]")),
                 "presets.json: screen:1[0].frame: expected two arrays of two numbers"},
        Sentence{"ShortSize", presetsWith(test::withValue(overlay, {"frame"}, "[[1,2],[3]]")),
                 "presets.json: screen:1[0].frame[1]: expected two numbers"},
        Sentence{"OutOfRange", presetsWith(test::withValue(overlay, {"displayID"}, "4294967296")),
                 "presets.json: screen:1[0].displayID: expected a whole number from 0 to 4294967295"},
        Sentence{"UnknownShape", presetsWith(test::withValue(overlay, {"shape"}, R"("Circle")")),
                 "presets.json: screen:1[0].shape: expected \"rectangle\" or \"circle\""},
        Sentence{"UnknownAnchor", presetsWith(test::withValue(overlay, {"anchor"}, R"("desk")")),
                 "presets.json: screen:1[0].anchor: expected \"screen\", \"application\" or \"window\""},
        Sentence{"NoUUID", presetsWith(test::withValue(overlay, {"id"}, R"("6F96")")),
                 "presets.json: screen:1[0].id: expected a UUID"},
        Sentence{"RepeatedKey", presetsWith(test::withRepeatedMember(overlay, {"frame"})),
                 "presets.json: screen:1[0].frame: this key is given twice"},
        Sentence{"NoObject", "[]", "presets.json: expected an object but found an array"},
        Sentence{"NoJson", "garbage", "presets.json: not valid JSON at line 1, byte 1"},
        Sentence{"BrokenLater", "{\n  \"a\": [],\n  \"b\": nil\n}", "presets.json: not valid JSON at line 3, byte 9"},
        Sentence{"HugeNumber", "[1e999]", "presets.json: a number is too large at line 1, byte 6"},
        Sentence{"NulByte", std::string("{}\0", 3), "presets.json: not valid JSON: the text has a NUL byte in it"},
        Sentence{"Nesting", std::string(513, '['), "presets.json: arrays and objects are nested more than 512 deep"}),
    [](const auto& instance) { return instance.param.name; });

TEST(DecodingError, IsACoreErrorThatKeepsItsParts) {
    const DecodingError error(DecodingError::Kind::typeMismatch, {std::string("a"), std::size_t{2}}, "expected more",
                              "file");

    const CoreError& base = error;

    EXPECT_STREQ(base.what(), "file: a[2]: expected more");
    EXPECT_EQ(error.kind(), DecodingError::Kind::typeMismatch);
    EXPECT_EQ(error.codingPath(), (CodingPath{std::string("a"), std::size_t{2}}));
    EXPECT_EQ(error.description(), "expected more");
    EXPECT_EQ(error.sourceName(), "file");
}

TEST(DecodingError, LeavesOutWhatIsNotKnown) {
    EXPECT_STREQ(DecodingError(DecodingError::Kind::dataCorrupted, {}, "expected more", "").what(), "expected more");
    EXPECT_STREQ(DecodingError(DecodingError::Kind::dataCorrupted, {std::string("a")}, "expected more", "").what(),
                 "a: expected more");
}

TEST(DecodingError, DoesNotShowAWindowsTitleOnTheScreen) {
    const std::string text = test::withValue(overlay, {"shape"}, R"("Secret title")");

    EXPECT_THAT(test::decodingError<BlurOverlay>(text).what(), testing::Not(testing::HasSubstr("Secret")));
    EXPECT_THAT(test::decodingError<BlurOverlay>(R"({"id": "Secret title)").what(),
                testing::Not(testing::HasSubstr("Secret")));
}

}  // namespace
}  // namespace pallwick
