#include "DecodingFailure.h"
#include "JsonEditing.h"
#include "SampleRecords.h"

#include <PallwickMacCore/Models/RecordCoding.h>
#include <gtest/gtest.h>

namespace pallwick {
namespace {

using Kind = DecodingError::Kind;
using test::attachedOverlayText;
using test::DecodingFailure;
using test::decodingFailure;

TEST(RecordDecoding, ReadsAnAttachedOverlay) {
    EXPECT_EQ(decode<BlurOverlay>(attachedOverlayText, "test"), test::attachedOverlay());
}

TEST(RecordDecoding, ReadsAWindow) {
    EXPECT_EQ(decode<TrackedWindow>(test::sampleWindowText, "test"), test::sampleWindow());
}

TEST(RecordDecoding, ReadsAUUIDInLowerCase) {
    const std::string text = test::withValue(attachedOverlayText, {"id"}, R"("aaaaaaaa-aaaa-aaaa-aaaa-aaaaaaaaaaaa")");

    EXPECT_EQ(decode<BlurOverlay>(text, "test").id(), test::uuidOf('A'));
}

TEST(RecordDecoding, DoesNotCareForTheOrderOfKeys) {
    const std::string sorted = encode(test::attachedOverlay(), {.prettyPrinted = true, .sortedKeys = true});

    EXPECT_EQ(decode<BlurOverlay>(sorted, "test"), test::attachedOverlay());
}

TEST(RecordDecoding, IgnoresUnknownKeysEvenRepeatedOnes) {
    std::string text(attachedOverlayText);
    text.insert(1, R"("note":[{"id":1}],"note":null,)");

    EXPECT_EQ(decode<BlurOverlay>(text, "test"), test::attachedOverlay());
}

TEST(RecordDecoding, TakesAMissingAttachmentForNone) {
    const std::string text = test::withoutMember(attachedOverlayText, {"windowAttachment"});

    EXPECT_EQ(decode<BlurOverlay>(text, "test").windowAttachment, std::nullopt);
}

TEST(RecordDecoding, TakesANullAttachmentForNone) {
    const std::string text = test::withValue(attachedOverlayText, {"windowAttachment"}, "null");

    EXPECT_EQ(decode<BlurOverlay>(text, "test").windowAttachment, std::nullopt);
}

TEST(RecordDecoding, DoesNotNormaliseAStyle) {
    const std::string text =
        test::withValue(attachedOverlayText, {"style"},
                        R"({"intensity":400,"colorHex":"blue","opacity":-9000000000,"glassBlur":false})");

    const BlurStyle style = decode<BlurOverlay>(text, "test").style;

    EXPECT_EQ(style.intensity, 400);
    EXPECT_EQ(style.colorHex, "blue");
    EXPECT_EQ(style.opacity, -9000000000);
    EXPECT_FALSE(style.glassBlur);
}

TEST(RecordDecoding, DoesNotStandardizeAFrame) {
    const std::string text = test::withValue(attachedOverlayText, {"frame"}, "[[100,100],[-50,-20]]");

    EXPECT_EQ(decode<BlurOverlay>(text, "test").frame, (Rect{.x = 100, .y = 100, .width = -50, .height = -20}));
}

TEST(RecordDecoding, KeepsAnAttachmentWhateverTheAnchor) {
    const std::string text = test::withValue(attachedOverlayText, {"anchor"}, R"("application")");

    EXPECT_EQ(decode<BlurOverlay>(text, "test").anchor, OverlayAnchor::application);
    EXPECT_EQ(decode<BlurOverlay>(text, "test").windowAttachment, test::attachedOverlay().windowAttachment);
}

TEST(RecordDecoding, AcceptsAWholeNumberWithAFractionOfZero) {
    const std::string text = test::withValue(attachedOverlayText, {"style", "intensity"}, "75.0");

    EXPECT_EQ(decode<BlurOverlay>(text, "test").style.intensity, 75);
}

TEST(RecordDecoding, IgnoresFurtherElementsOfPointsAndRectangles) {
    EXPECT_EQ(decode<Point>(R"([1,2,"three"])", "test"), (Point{.x = 1, .y = 2}));
    EXPECT_EQ(decode<Rect>("[[1,2,9],[3,4,null],[]]", "test"), (Rect{.x = 1, .y = 2, .width = 3, .height = 4}));
}

class RequiredKey : public testing::TestWithParam<CodingPath> {};

TEST_P(RequiredKey, IsMissedByName) {
    EXPECT_EQ(decodingFailure<BlurOverlay>(test::withoutMember(attachedOverlayText, GetParam())),
              (DecodingFailure{Kind::keyNotFound, printedForm(GetParam())}));
}

TEST_P(RequiredKey, MayNotBeNull) {
    EXPECT_EQ(decodingFailure<BlurOverlay>(test::withValue(attachedOverlayText, GetParam(), "null")),
              (DecodingFailure{Kind::valueNotFound, printedForm(GetParam())}));
}

TEST_P(RequiredKey, MayNotBeGivenTwice) {
    EXPECT_EQ(decodingFailure<BlurOverlay>(test::withRepeatedMember(attachedOverlayText, GetParam())),
              (DecodingFailure{Kind::dataCorrupted, printedForm(GetParam())}));
}

CodingPath keys(const std::string& first) {
    return {first};
}

CodingPath keys(const std::string& first, const std::string& second) {
    return {first, second};
}

INSTANTIATE_TEST_SUITE_P(OfAnOverlay, RequiredKey,
                         testing::Values(keys("id"), keys("displayID"), keys("frame"), keys("style"), keys("shape"),
                                         keys("anchor"), keys("createdAt"), keys("updatedAt")));

INSTANTIATE_TEST_SUITE_P(OfAStyle, RequiredKey,
                         testing::Values(keys("style", "intensity"), keys("style", "colorHex"),
                                         keys("style", "opacity"), keys("style", "glassBlur")));

INSTANTIATE_TEST_SUITE_P(OfAnAttachment, RequiredKey,
                         testing::Values(keys("windowAttachment", "windowID"), keys("windowAttachment", "ownerPID"),
                                         keys("windowAttachment", "ownerName"), keys("windowAttachment", "title"),
                                         keys("windowAttachment", "offset")));

class RequiredWindowKey : public testing::TestWithParam<const char*> {};

TEST_P(RequiredWindowKey, IsMissedByName) {
    const std::string text = test::withoutMember(test::sampleWindowText, {std::string(GetParam())});

    EXPECT_EQ(decodingFailure<TrackedWindow>(text), (DecodingFailure{Kind::keyNotFound, GetParam()}));
}

INSTANTIATE_TEST_SUITE_P(OfAWindow, RequiredWindowKey,
                         testing::Values("id", "ownerPID", "ownerName", "title", "frame"));

TEST(RecordDecoding, RefusesAnAttachmentGivenTwice) {
    EXPECT_EQ(decodingFailure<BlurOverlay>(test::withRepeatedMember(attachedOverlayText, {"windowAttachment"})),
              (DecodingFailure{Kind::dataCorrupted, "windowAttachment"}));
}

TEST(RecordDecoding, RefusesAnAttachmentGivenOnceAndOnceAsNull) {
    std::string text(attachedOverlayText);
    text.insert(1, R"("windowAttachment":null,)");

    EXPECT_EQ(decodingFailure<BlurOverlay>(text), (DecodingFailure{Kind::dataCorrupted, "windowAttachment"}));
}

TEST(RecordDecoding, RefusesATopLevelNullOrArray) {
    EXPECT_EQ(decodingFailure<BlurOverlay>("null"), (DecodingFailure{Kind::valueNotFound, ""}));
    EXPECT_EQ(decodingFailure<BlurOverlay>("[]"), (DecodingFailure{Kind::typeMismatch, ""}));
}

struct Misfit {
    CodingPath place;
    const char* value;
    Kind kind;
    const char* errorPlace;
};

class MisfittingValue : public testing::TestWithParam<Misfit> {};

TEST_P(MisfittingValue, IsRefusedWhereItStands) {
    const std::string text = test::withValue(attachedOverlayText, GetParam().place, GetParam().value);

    EXPECT_EQ(decodingFailure<BlurOverlay>(text), (DecodingFailure{GetParam().kind, GetParam().errorPlace}));
}

INSTANTIATE_TEST_SUITE_P(
    Types, MisfittingValue,
    testing::Values(Misfit{keys("id"), "5", Kind::typeMismatch, "id"},
                    Misfit{keys("displayID"), R"("1")", Kind::typeMismatch, "displayID"},
                    Misfit{keys("displayID"), "true", Kind::typeMismatch, "displayID"},
                    Misfit{keys("frame"), R"({"x":1})", Kind::typeMismatch, "frame"},
                    Misfit{keys("frame"), "[1,2,3,4]", Kind::typeMismatch, "frame[0]"},
                    Misfit{keys("frame"), R"([[1,2],[3,"4"]])", Kind::typeMismatch, "frame[1][1]"},
                    Misfit{keys("style"), R"("dark")", Kind::typeMismatch, "style"},
                    Misfit{keys("style", "glassBlur"), "1", Kind::typeMismatch, "style.glassBlur"},
                    Misfit{keys("style", "glassBlur"), R"("true")", Kind::typeMismatch, "style.glassBlur"},
                    Misfit{keys("style", "colorHex"), "0", Kind::typeMismatch, "style.colorHex"},
                    Misfit{keys("style", "intensity"), "false", Kind::typeMismatch, "style.intensity"},
                    Misfit{keys("shape"), "0", Kind::typeMismatch, "shape"},
                    Misfit{keys("anchor"), R"(["screen"])", Kind::typeMismatch, "anchor"},
                    Misfit{keys("windowAttachment"), "77", Kind::typeMismatch, "windowAttachment"},
                    Misfit{keys("windowAttachment", "offset"), R"({"x":1})", Kind::typeMismatch,
                           "windowAttachment.offset"},
                    Misfit{keys("createdAt"), R"("2024-01-01T00:00:00Z")", Kind::typeMismatch, "createdAt"}));

INSTANTIATE_TEST_SUITE_P(
    Ranges, MisfittingValue,
    testing::Values(
        Misfit{keys("displayID"), "-1", Kind::dataCorrupted, "displayID"},
        Misfit{keys("displayID"), "4294967296", Kind::dataCorrupted, "displayID"},
        Misfit{keys("displayID"), "1.5", Kind::dataCorrupted, "displayID"},
        Misfit{keys("style", "intensity"), "50.5", Kind::dataCorrupted, "style.intensity"},
        Misfit{keys("style", "opacity"), "9223372036854775808", Kind::dataCorrupted, "style.opacity"},
        Misfit{keys("windowAttachment", "windowID"), "-1", Kind::dataCorrupted, "windowAttachment.windowID"},
        Misfit{keys("windowAttachment", "ownerPID"), "2147483648", Kind::dataCorrupted, "windowAttachment.ownerPID"}));

INSTANTIATE_TEST_SUITE_P(Texts, MisfittingValue,
                         testing::Values(Misfit{keys("id"), R"("")", Kind::dataCorrupted, "id"},
                                         Misfit{keys("id"), R"("{AAAAAAAA-AAAA-AAAA-AAAA-AAAAAAAAAA}")",
                                                Kind::dataCorrupted, "id"},
                                         Misfit{keys("shape"), R"("Circle")", Kind::dataCorrupted, "shape"},
                                         Misfit{keys("shape"), R"("")", Kind::dataCorrupted, "shape"},
                                         Misfit{keys("anchor"), R"(" window")", Kind::dataCorrupted, "anchor"}));

INSTANTIATE_TEST_SUITE_P(ShortArrays, MisfittingValue,
                         testing::Values(Misfit{keys("frame"), "[]", Kind::valueNotFound, "frame"},
                                         Misfit{keys("frame"), "[[1,2]]", Kind::valueNotFound, "frame"},
                                         Misfit{keys("frame"), "[[],[3,4]]", Kind::valueNotFound, "frame[0]"},
                                         Misfit{keys("frame"), "[[1,2],[3]]", Kind::valueNotFound, "frame[1]"},
                                         Misfit{keys("frame"), "[[1,2],null]", Kind::valueNotFound, "frame[1]"},
                                         Misfit{keys("frame"), "[[1,null],[3,4]]", Kind::valueNotFound, "frame[0][1]"},
                                         Misfit{keys("windowAttachment", "offset"), "[12]", Kind::valueNotFound,
                                                "windowAttachment.offset"}));

}  // namespace
}  // namespace pallwick
