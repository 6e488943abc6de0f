#include "DecodingFailure.h"
#include "SampleRecords.h"

#include <PallwickMacCore/Models/RecordCoding.h>
#include <gmock/gmock.h>

namespace pallwick {
namespace {

using Presets = std::map<std::string, std::vector<BlurOverlay>>;
using Kind = DecodingError::Kind;
using test::DecodingFailure;
using test::decodingFailure;

TEST(OverlayListCoding, KeepsListsUnderAnyKeyAndInTheirOrder) {
    const Presets presets{{"screen:1", {test::overlayOf('B'), test::attachedOverlay()}},
                          {"application:org.example/Mail \"1\"", {test::overlayOf('C')}},
                          {"made by hand", {}},
                          {"", {}}};

    const std::string text = encode(presets, {.prettyPrinted = true, .sortedKeys = true});

    EXPECT_EQ(decode<Presets>(text, "test"), presets);
}

TEST(OverlayListCoding, WritesApplicationsBeforeScreens) {
    const std::string text = encode(Presets{{"screen:1", {}}, {"application:z", {}}, {"screen:10", {}}});

    EXPECT_EQ(text, R"({"application:z":[],"screen:1":[],"screen:10":[]})");
}

TEST(OverlayListCoding, ReadsNothingFromAnEmptyObject) {
    EXPECT_THAT(decode<Presets>("{}", "test"), testing::IsEmpty());
}

TEST(OverlayListCoding, RefusesAKeyGivenTwice) {
    EXPECT_EQ(decodingFailure<Presets>(R"({"screen:1":[],"screen:2":[],"screen:1":[]})"),
              (DecodingFailure{Kind::dataCorrupted, "screen:1"}));
}

TEST(OverlayListCoding, TellsKeysApartThatDifferOnlyInCaseOrComposition) {
    EXPECT_EQ(decode<Presets>(R"({"a":[],"A":[],"\u00e9":[],"e\u0301":[]})", "test").size(), 4U);
}

TEST(OverlayListCoding, TakesAnEscapedKeyForTheSameKey) {
    EXPECT_EQ(decodingFailure<Presets>(R"({"screen:1":[],"\u0073creen:1":[]})"),
              (DecodingFailure{Kind::dataCorrupted, "screen:1"}));
}

TEST(OverlayListCoding, FailsAsAWholeForOneBadOverlay) {
    const std::string good(test::attachedOverlayText);

    EXPECT_EQ(decodingFailure<Presets>(R"({"screen:1":[],"screen:2":[)" + good + "," + good + ",{}]}"),
              (DecodingFailure{Kind::keyNotFound, "screen:2[2].id"}));
}

TEST(OverlayListCoding, RefusesANullInAList) {
    EXPECT_EQ(decodingFailure<Presets>(R"({"screen:1":[null]})"),
              (DecodingFailure{Kind::valueNotFound, "screen:1[0]"}));
}

TEST(OverlayListCoding, RefusesAMemberThatIsNoList) {
    EXPECT_EQ(decodingFailure<Presets>(R"({"screen:1":{}})"), (DecodingFailure{Kind::typeMismatch, "screen:1"}));
    EXPECT_EQ(decodingFailure<Presets>(R"({"version":1})"), (DecodingFailure{Kind::typeMismatch, "version"}));
    EXPECT_EQ(decodingFailure<Presets>(R"({"screen:1":null})"), (DecodingFailure{Kind::valueNotFound, "screen:1"}));
}

}  // namespace
}  // namespace pallwick
