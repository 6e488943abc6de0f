#include "SampleRecords.h"

#include <gtest/gtest.h>

namespace pallwick {
namespace {

TEST(TrackedWindow, IsDisplayedByItsOwnerAndTitle) {
    EXPECT_EQ(test::sampleWindow().displayName(), "Mail - Inbox");
}

TEST(TrackedWindow, IsDisplayedByItsOwnerAloneWithoutATitle) {
    TrackedWindow window = test::sampleWindow();

    window.title = "";

    EXPECT_EQ(window.displayName(), "Mail");
}

TEST(TrackedWindow, ShowsATitleOfBlanksAsItIs) {
    TrackedWindow window = test::sampleWindow();

    window.title = " ";

    EXPECT_EQ(window.displayName(), "Mail -  ");
}

TEST(TrackedWindow, KeepsAnInvertedFrame) {
    TrackedWindow window = test::sampleWindow();

    window.frame.width = -800;

    EXPECT_EQ(window.frame.width, -800);
    EXPECT_NE(window, test::sampleWindow());
}

}  // namespace
}  // namespace pallwick
