// The menus of the main window from end to end, by their keys.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

constexpr support::ExitStatus success{.code = 0, .signal = 0};

class Menu : public testing::Test {
protected:
    Menu() : stage_(DesktopKind::openbox) { stage_.program().giveKeyboardTo(stage_.mainWindow()); }

    void pressControl(xcb_keysym_t key) { stage_.desktop().keyboard().press(key, {XK_Control_L}); }

    Stage stage_;
};

TEST_F(Menu, AddsLocksAndClearsByItsKeys) {
    pressControl(XK_n);
    stage_.awaitStatus("Overlay added");
    stage_.program().awaitOverlayCount(1);

    pressControl(XK_e);
    static_cast<void>(stage_.program().controls().await("label", "Locked"));
    pressControl(XK_e);
    static_cast<void>(stage_.program().controls().await("label", "Edit mode"));

    pressControl(XK_BackSpace);
    stage_.awaitStatus("All overlays cleared");
    stage_.program().awaitOverlayCount(0);
    stage_.awaitRows({});
}

TEST_F(Menu, OpensTheSettingsFromWhichItsKeysStillWork) {
    pressControl(XK_comma);
    const xcb_window_t settings = stage_.windows().awaitClient("Pallwick Settings");
    static_cast<void>(stage_.program().controls().await("label", "Overlay Behavior"));
    stage_.program().giveKeyboardTo(settings);

    pressControl(XK_n);
    stage_.program().awaitOverlayCount(1);

    stage_.program().giveKeyboardTo(settings);
    stage_.desktop().keyboard().press(XK_Escape);
    stage_.desktop().x().await("no settings window", [&] { return !stage_.windows().isViewable(settings); });
    stage_.program().awaitOverlayCount(1);
}

TEST_F(Menu, EndsTheProgram) {
    stage_.desktop().x().release(stage_.program().process());

    pressControl(XK_q);

    EXPECT_EQ(stage_.program().process().awaitExit(), success);
}

}  // namespace
}  // namespace pallwick::desktop
