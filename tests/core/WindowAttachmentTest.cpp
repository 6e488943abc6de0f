#include "SampleRecords.h"

#include <gtest/gtest.h>

namespace pallwick {
namespace {

TEST(WindowAttachment, RemembersTheWindowAndTheOffsetFromIt) {
    const WindowAttachment attachment(test::sampleWindow(), {.x = 150, .y = 200, .width = 120, .height = 40});

    EXPECT_EQ(attachment.windowID, 77U);
    EXPECT_EQ(attachment.ownerPID, 512);
    EXPECT_EQ(attachment.ownerName, "Mail");
    EXPECT_EQ(attachment.title, "Inbox");
    EXPECT_EQ(attachment.offset, (Point{.x = 50, .y = 100}));
}

TEST(WindowAttachment, MeasuresTheOffsetBetweenMinimumCorners) {
    TrackedWindow window = test::sampleWindow();
    window.frame = {.x = 900, .y = 700, .width = -800, .height = -600};

    const WindowAttachment attachment(window, {.x = 270, .y = 240, .width = -120, .height = -40});

    EXPECT_EQ(attachment.offset, (Point{.x = 50, .y = 100}));
}

TEST(WindowAttachment, PlacesAnOverlayAtItsOffsetFromTheWindow) {
    WindowAttachment attachment;
    attachment.offset = {.x = 5, .y = 7};

    const Rect frame =
        attachment.overlayFrame({.x = 10, .y = 20, .width = 800, .height = 600}, {.width = 100, .height = 50});

    EXPECT_EQ(frame, (Rect{.x = 15, .y = 27, .width = 100, .height = 50}));
}

TEST(WindowAttachment, FollowsTheMinimumCornerAndLeavesTheSizeAsGiven) {
    WindowAttachment attachment;
    attachment.offset = {.x = 5, .y = 7};

    const Rect frame =
        attachment.overlayFrame({.x = 810, .y = 620, .width = -800, .height = -600}, {.width = -100, .height = 50});

    EXPECT_EQ(frame, (Rect{.x = 15, .y = 27, .width = -100, .height = 50}));
}

TEST(WindowAttachment, DiffersByAnyField) {
    const WindowAttachment attachment(test::sampleWindow(), Rect());
    WindowAttachment moved = attachment;
    moved.offset.y += 1;
    WindowAttachment renamed = attachment;
    renamed.title = "Drafts";

    EXPECT_NE(moved, attachment);
    EXPECT_NE(renamed, attachment);
    EXPECT_EQ(attachment, WindowAttachment(test::sampleWindow(), Rect()));
}

}  // namespace
}  // namespace pallwick
