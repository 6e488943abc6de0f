#include "SampleRecords.h"

#include <PallwickMacCore/Models/RecordCoding.h>
#include <gmock/gmock.h>

namespace pallwick {
namespace {

TEST(RecordEncoding, WritesFieldsInTheirOrder) {
    EXPECT_EQ(encode(test::attachedOverlay()), test::attachedOverlayText);
    EXPECT_EQ(encode(test::sampleWindow()), test::sampleWindowText);
}

TEST(RecordEncoding, LeavesOutAnAttachmentThatIsNone) {
    EXPECT_THAT(encode(test::overlayOf('A')), testing::Not(testing::HasSubstr("windowAttachment")));
}

TEST(RecordEncoding, SortsKeysAtEveryLevelWhenAsked) {
    EXPECT_EQ(encode(test::attachedOverlay(), {.sortedKeys = true}),
              R"({"anchor":"window","createdAt":1.5,"displayID":1,"frame":[[160,160],[320,180]],)"
              R"("id":"AAAAAAAA-AAAA-AAAA-AAAA-AAAAAAAAAAAA","shape":"circle",)"
              R"("style":{"colorHex":"#000000","glassBlur":true,"intensity":50,"opacity":100},"updatedAt":2.25,)"
              R"("windowAttachment":{"offset":[12,40],"ownerName":"Mail","ownerPID":512,"title":"Inbox",)"
              R"("windowID":77}})");
}

TEST(RecordEncoding, IsLaidOutForPeopleWhenAsked) {
    EXPECT_EQ(encode(BlurStyle(), {.prettyPrinted = true, .sortedKeys = true}),
              "{\n"
              "  \"colorHex\": \"#000000\",\n"
              "  \"glassBlur\": true,\n"
              "  \"intensity\": 50,\n"
              "  \"opacity\": 100\n"
              "}");
}

TEST(RecordEncoding, WritesValuesOutOfRangeAsTheyAre) {
    BlurStyle style;
    style.intensity = 400;
    style.colorHex = "blue";
    style.opacity = -1;

    EXPECT_EQ(encode(style), R"({"intensity":400,"colorHex":"blue","opacity":-1,"glassBlur":true})");
}

TEST(RecordEncoding, WritesEveryAnchor) {
    EXPECT_EQ(encode(std::vector{OverlayAnchor::screen, OverlayAnchor::application, OverlayAnchor::window}),
              R"(["screen","application","window"])");
}

TEST(RecordEncoding, WritesAnInvertedRectangleAsItIs) {
    EXPECT_EQ(encode(Rect{.x = 1.5, .y = -2, .width = -3, .height = -0.0}), "[[1.5,-2],[-3,-0.0]]");
}

}  // namespace
}  // namespace pallwick
