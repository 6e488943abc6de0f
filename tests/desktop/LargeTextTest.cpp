// A desktop whose text is twice as large as usual.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Accessible;
using support::AccessibleState;
using support::PixelRect;

class LargeText : public testing::Test {
protected:
    LargeText()
        : stage_(DesktopKind::openbox, {.prepare = [](support::PrivateDesktop& desktop) { desktop.useTextSize(18); }}) {
    }

    Stage stage_;
};

TEST_F(LargeText, IsTheDesktopsInTheProgram) {
    const Accessible mode = stage_.program().controls().await("label", "Edit mode");

    // Usually 13, and 14 for what is larger than that.
    EXPECT_GE(mode.extents().height, 22);
}

TEST_F(LargeText, LeavesEveryControlOfTheWindowToBeClicked) {
    stage_.add();
    stage_.program().giveKeyboardTo(stage_.mainWindow());
    const PixelRect window = stage_.rectOf(stage_.mainWindow());

    // Those of the inspector's end come into sight with the focus.
    const Accessible remove = stage_.program().controls().await("push button", "Remove Overlay");
    remove.grabFocus();
    stage_.program().controls().awaitCondition("Remove Overlay in sight", [&] {
        const PixelRect rect = remove.extents();
        return remove.has(AccessibleState::focused) && rect.maxY() <= window.maxY() && rect.x >= window.x &&
               rect.maxX() <= window.maxX();
    });
    stage_.program().click("Remove Overlay");
    stage_.awaitStatus("Overlay removed");

    stage_.program().click("button menu", "Presets");
    stage_.awaitMenu();
    stage_.program().click("menu item", "Load Display Preset");
    stage_.awaitStatus("No display preset saved");
}

}  // namespace
}  // namespace pallwick::desktop
