// From the first picture in which anything of an overlay is to be seen, it covers.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::PixelPoint;
using support::PixelRect;
using support::Screenshot;

constexpr PixelRect added{.x = 780, .y = 440, .width = 360, .height = 200};

class FirstFrame : public testing::TestWithParam<DesktopKind> {
protected:
    static void addAndClear(Stage& stage) {
        stage.awaitCovered(stage.add().rect);
        stage.operate("Clear");
        stage.program().awaitOverlayCount(0);
        stage.desktop().awaitPixels("the secret again",
                                    [&](const Screenshot& screen) { return isSecret(screen.at(added.centre())); });
    }
};

/// Every picture that could be taken between damage reports is looked at: each change on the screen is reported, though
/// several that come between two pictures are seen as one.
TEST_P(FirstFrame, ShowsNothingOfWhatAnOverlayCovers) {
    Stage stage(GetParam());
    // It was mapped, and faded in, later than the windows that the program keeps ready.
    const auto secret = stage.openSecret();
    const std::vector<PixelPoint> border{{added.centre().x, added.y + 1},
                                         {added.centre().x, added.maxY() - 2},
                                         {added.x + 1, added.centre().y},
                                         {added.maxX() - 2, added.centre().y}};
    const auto showsBorder = [&](const Screenshot& screen) {
        return std::ranges::any_of(border, [&](PixelPoint point) {
            return screen.at(point) != secretGround && screen.at(point) != secretMark;
        });
    };
    stage.desktop().x().listenToPixels();
    int picturesBefore = 0;
    int picturesWithOverlay = 0;

    stage.program().click("Add");
    stage.watch(
        "the overlay",
        [&](const Screenshot& screen) {
            ++(showsBorder(screen) ? picturesWithOverlay : picturesBefore);
            if (showsBorder(screen)) {
                EXPECT_EQ(leak(screen, {inside(added)}), "") << "picture " << picturesWithOverlay;
            }
        },
        [&](const Screenshot& screen) {
            // The border in its full colour, and some more pictures after that.
            return difference(screen.at(border.front()), {}) > 100 && leak(screen, {inside(added)}).empty();
        });
    stage.awaitStatus("Overlay added");
    stage.settle();

    EXPECT_EQ(leak(stage.desktop().screenshot(), {inside(added)}), "");
    EXPECT_GE(picturesWithOverlay, 1);
    RecordProperty("picturesBefore", picturesBefore);
    RecordProperty("picturesWithOverlay", picturesWithOverlay);
}

/// A closed panel's window is used again; nothing of its past may show.
TEST_P(FirstFrame, OfAnOverlayAddedAfterAnotherWasRemovedCoversToo) {
    Stage stage(GetParam());
    const auto secret = stage.openSecret();
    addAndClear(stage);
    addAndClear(stage);
    addAndClear(stage);

    stage.program().click("Add");
    const PixelPoint border{added.centre().x, added.y + 1};

    stage.watch(
        "the overlay",
        [&](const Screenshot& screen) {
            if (!isSecret(screen.at(border))) {
                EXPECT_EQ(leak(screen, {inside(added)}), "");
            }
        },
        [&](const Screenshot& screen) { return leak(screen, {inside(added)}).empty(); });
}

PALLWICK_ON_EVERY_DESKTOP(FirstFrame);

}  // namespace
}  // namespace pallwick::desktop
