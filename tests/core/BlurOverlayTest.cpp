#include "SampleRecords.h"
#include "SteppingClock.h"

#include <gtest/gtest.h>

namespace pallwick {
namespace {

TEST(BlurOverlay, IsAnUnattachedRectangleOnItsScreenByDefault) {
    const BlurOverlay overlay({.displayID = 4});

    EXPECT_EQ(overlay.displayID, 4U);
    EXPECT_EQ(overlay.style, BlurStyle());
    EXPECT_EQ(overlay.shape, OverlayShape::rectangle);
    EXPECT_EQ(overlay.anchor, OverlayAnchor::screen);
    EXPECT_EQ(overlay.windowAttachment, std::nullopt);
}

TEST(BlurOverlay, GetsAnIdentityOfItsOwn) {
    EXPECT_NE(BlurOverlay({.displayID = 1}).id(), BlurOverlay({.displayID = 1}).id());
}

TEST(BlurOverlay, ReadsTheClockOnceForEachDate) {
    test::SteppingClock clock;

    const BlurOverlay overlay({.displayID = 1}, clock.clock());

    EXPECT_EQ(overlay.createdAt(), Date{1001});
    EXPECT_EQ(overlay.updatedAt, Date{1002});
    EXPECT_EQ(clock.reads(), 2);
}

TEST(BlurOverlay, ReadsTheClockOnlyForADateThatIsMissing) {
    test::SteppingClock clock;

    const BlurOverlay overlay({.displayID = 1, .createdAt = Date{5}}, clock.clock());

    EXPECT_EQ(overlay.createdAt(), Date{5});
    EXPECT_EQ(overlay.updatedAt, Date{1001});
}

TEST(BlurOverlay, StandardizesTheFrameItIsBuiltWith) {
    const BlurOverlay overlay({.frame = {.x = 100, .y = 100, .width = -50, .height = -20}});

    EXPECT_EQ(overlay.frame, (Rect{.x = 50, .y = 80, .width = 50, .height = 20}));
}

TEST(BlurOverlay, KeepsAFrameAssignedLaterAsItIs) {
    constexpr Rect inverted{.x = 100, .y = 100, .width = -50, .height = -20};
    BlurOverlay overlay({.displayID = 1});

    overlay.frame = inverted;

    EXPECT_EQ(overlay.frame, inverted);
}

TEST(BlurOverlay, StoresEverythingElseUnchanged) {
    BlurStyle style;
    style.colorHex = "blue";
    const WindowAttachment attachment(test::sampleWindow(), Rect());

    const BlurOverlay overlay({.id = test::uuidOf('7'),
                               .displayID = 9,
                               .style = style,
                               .shape = OverlayShape::circle,
                               .anchor = OverlayAnchor::application,
                               .windowAttachment = attachment,
                               .createdAt = Date{-1},
                               .updatedAt = Date{-2}});

    EXPECT_EQ(overlay.id(), test::uuidOf('7'));
    EXPECT_EQ(overlay.displayID, 9U);
    EXPECT_EQ(overlay.style, style);
    EXPECT_EQ(overlay.shape, OverlayShape::circle);
    EXPECT_EQ(overlay.anchor, OverlayAnchor::application);
    EXPECT_EQ(overlay.windowAttachment, attachment);
    EXPECT_EQ(overlay.createdAt(), Date{-1});
    EXPECT_EQ(overlay.updatedAt, Date{-2});
}

struct Change {
    const char* field;
    void (*apply)(BlurOverlay&);
};

class BlurOverlayDifference : public testing::TestWithParam<Change> {};

TEST_P(BlurOverlayDifference, InOneFieldIsSeen) {
    BlurOverlay changed = test::attachedOverlay();

    GetParam().apply(changed);

    EXPECT_NE(changed, test::attachedOverlay());
}

INSTANTIATE_TEST_SUITE_P(
    Fields, BlurOverlayDifference,
    testing::Values(Change{"displayID", [](BlurOverlay& overlay) { overlay.displayID = 2; }},
                    Change{"frame", [](BlurOverlay& overlay) { overlay.frame.x += 0.5; }},
                    Change{"style", [](BlurOverlay& overlay) { overlay.style.opacity = 99; }},
                    Change{"shape", [](BlurOverlay& overlay) { overlay.shape = OverlayShape::rectangle; }},
                    Change{"anchor", [](BlurOverlay& overlay) { overlay.anchor = OverlayAnchor::screen; }},
                    Change{"attachment", [](BlurOverlay& overlay) { overlay.windowAttachment.reset(); }},
                    Change{"offset", [](BlurOverlay& overlay) { overlay.windowAttachment->offset.x += 1; }},
                    Change{"updatedAt", [](BlurOverlay& overlay) { overlay.updatedAt = Date{3}; }}),
    [](const auto& instance) { return instance.param.field; });

TEST(BlurOverlay, EqualsACopyAndNotOneWithAnotherIdentity) {
    EXPECT_EQ(test::overlayOf('A'), test::overlayOf('A'));
    EXPECT_NE(test::overlayOf('A'), test::overlayOf('B'));
}

}  // namespace
}  // namespace pallwick
