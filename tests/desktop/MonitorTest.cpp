// Monitors come and go; an overlay keeps its place on the primary one.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Accessible;
using support::PixelRect;
using support::PrivateDesktop;
using support::Program;

constexpr PixelRect primary{.x = 640, .y = 800, .width = 1280, .height = 800};
constexpr PixelRect above{.x = 640, .y = 0, .width = 1280, .height = 800};
/// In the middle of the primary monitor: 358.4 x 160 points, rounded outward.
constexpr PixelRect onPrimary{.x = 1100, .y = 1120, .width = 360, .height = 160};

class Monitors : public testing::Test {
protected:
    Monitors() : desktop_({.server = {.width = 2560, .height = 1600}}) {
        desktop_.addMonitor("P", primary, true);
        desktop_.addMonitor("U", above);
        program_.emplace(desktop_);
        program_->awaitMainWindow();
        program_->controls().await("push button", "Add").doAction("Press");
    }

    std::string rowText() {
        const Accessible row = program_->controls().await("list item", "");
        return row.name();
    }

    /// What the server had to tell it before is answered afterwards.
    void letTheProgramTurn() {
        constexpr int turns = 30;
        for (int turn = 0; turn < turns; ++turn) {
            static_cast<void>(program_->controls().application().role());
        }
    }

    PrivateDesktop desktop_;
    std::optional<Program> program_;
};

TEST_F(Monitors, TakeANewOverlayInTheMiddleOfThePrimaryOne) {
    const Program::Overlay overlay = program_->awaitOverlayCount(1).front();

    EXPECT_EQ(overlay.rect, onPrimary);
}

TEST_F(Monitors, LeaveAnOverlayInPlaceWhenAnotherOneIsUnplugged) {
    const Program::Overlay overlay = program_->awaitOverlayAt(onPrimary);
    const std::string text = rowText();

    desktop_.removeMonitor("U");
    letTheProgramTurn();

    EXPECT_EQ(desktop_.windows().rect(overlay.window), onPrimary);
    EXPECT_EQ(rowText(), text);
}

TEST_F(Monitors, HaveAnOverlayBackOnTheSamePixelsWhenThePrimaryOneReturns) {
    program_->awaitOverlayAt(onPrimary);
    const std::string text = rowText();

    desktop_.removeMonitor("P");
    // Where none is marked as primary the first one counts, which is now the one above.
    program_->awaitOverlayAt({.x = 1100, .y = 320, .width = 360, .height = 160});
    const std::string textMeanwhile = rowText();
    desktop_.addMonitor("P", primary, true);
    program_->awaitOverlayAt(onPrimary);

    EXPECT_EQ(textMeanwhile, text);
    EXPECT_EQ(rowText(), text);
}

TEST_F(Monitors, CarryAnOverlayAboveThePrimaryOneToItsNeighbour) {
    const Program::Overlay overlay = program_->awaitOverlayAt(onPrimary);

    desktop_.pointer().drag(overlay.rect.centre(), {.x = 1280, .y = 300});

    EXPECT_EQ(program_->awaitOverlayAt({.x = 1100, .y = 220, .width = 360, .height = 160}).window, overlay.window);
}

}  // namespace
}  // namespace pallwick::desktop
