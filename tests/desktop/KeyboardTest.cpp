// The whole program without a mouse.

#include <gmock/gmock.h>
#include <support/TestClient.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Accessible;
using support::AccessibleState;
using testing::ElementsAre;

class Keyboard : public testing::Test {
protected:
    Keyboard() : stage_(DesktopKind::openbox), notes_(stage_.desktop(), {.title = "Notes", .windowClass = "Ledger"}) {
        stage_.program().giveKeyboardTo(stage_.mainWindow());
    }

    void press(xcb_keysym_t key) { stage_.desktop().keyboard().press(key); }

    std::optional<Accessible> focused() {
        const std::vector<Accessible> found = stage_.program().controls().application().findAll(
            [](const Accessible& item) { return item.has(AccessibleState::focused) && item.role() != "list item"; });
        return found.empty() ? std::nullopt : std::optional(found.front());
    }

    /// "slider Blur 440x18 at 1456,715": told apart from all others.
    std::string nameOfFocused() {
        const std::optional<Accessible> item = focused();
        return item ? item->role() + " " + item->name() + " " + describe(item->extents()) : std::string();
    }

    /// Presses Tab once and returns role and name of where that leads.
    std::string tab() {
        const std::string before = nameOfFocused();
        press(XK_Tab);
        stage_.program().controls().awaitCondition("the focus elsewhere than on " + before, [&] {
            const std::string now = nameOfFocused();
            return now != before && !now.empty();
        });
        const std::optional<Accessible> item = focused();
        return item ? item->role() + " " + item->name() : std::string();
    }

    void tabTo(const std::string& wanted) {
        constexpr int mostControls = 25;
        for (int presses = 0; presses < mostControls; ++presses) {
            if (tab() == wanted) {
                return;
            }
        }
        FAIL() << "the Tab key does not reach " << wanted;
    }

    void awaitDescription(const std::string& slider, const std::string& description) {
        const Accessible item = stage_.program().controls().await("slider", slider);
        stage_.program().controls().awaitCondition(slider + " at " + description,
                                                   [&] { return item.description() == description; });
    }

    Stage stage_;
    support::TestClient notes_;
};

TEST_F(Keyboard, GoesFromControlToControlInTheOrderOfTheLayout) {
    stage_.add();
    tabTo("list Manual Overlays");

    std::vector<std::string> order;
    do {
        order.push_back(tab());
    } while (order.back() != "list Manual Overlays" && order.size() < 30);

    EXPECT_THAT(order, ElementsAre("push button Add", "push button Remove", "push button Add", "push button Lock",
                                   "push button Clear", "button menu Presets", "radio button Rectangle", "slider Blur",
                                   "slider Opacity", "check box Glass blur", "push button Color", "push button Refresh",
                                   "combo box Choose window", "push button Remove Overlay", "list Manual Overlays"));
}

TEST_F(Keyboard, StylesAnOverlay) {
    tabTo("push button Add");
    press(XK_space);
    stage_.awaitStatus("Overlay added");

    tabTo("radio button Rectangle");
    press(XK_Right);
    stage_.awaitRows({"Overlay 1, Circle - 360 x 200 at 780, 440"});
    tabTo("slider Blur");
    press(XK_Left);
    awaitDescription("Blur", "49%");
    tabTo("slider Opacity");
    press(XK_Home);
    awaitDescription("Opacity", "0%");
    press(XK_Page_Up);
    awaitDescription("Opacity", "10%");
    press(XK_End);
    awaitDescription("Opacity", "100%");
    tabTo("check box Glass blur");
    press(XK_space);
    const Accessible glass = stage_.program().controls().await("check box", "Glass blur");
    stage_.program().controls().awaitCondition("no glass", [&] { return !glass.has(AccessibleState::checked); });
}

TEST_F(Keyboard, ChoosesAColour) {
    stage_.add();
    tabTo("push button Color");
    press(XK_space);
    const xcb_window_t chooser = stage_.windows().awaitClient("Color");
    stage_.program().giveKeyboardTo(chooser);

    // From the basic colours' first, black, to the one beneath it.
    press(XK_Down);
    press(XK_space);
    press(XK_Return);

    stage_.desktop().x().await("the chooser closed", [&] { return !stage_.windows().isViewable(chooser); });
    stage_.awaitStatus("Style updated");
}

TEST_F(Keyboard, AttachesDetachesAndRemoves) {
    stage_.add();
    stage_.program().giveKeyboardTo(stage_.mainWindow());
    tabTo("push button Refresh");
    press(XK_space);
    tabTo("combo box Choose window");
    press(XK_space);
    stage_.awaitMenu();
    press(XK_Down);
    press(XK_Return);
    tabTo("push button Attach");
    press(XK_space);
    stage_.awaitStatus("Attached to Ledger - Notes");

    stage_.program().giveKeyboardTo(stage_.mainWindow());
    tabTo("push button Detach");
    press(XK_space);
    stage_.awaitStatus("Window attachment removed");

    tabTo("push button Remove Overlay");
    press(XK_space);
    stage_.awaitStatus("Overlay removed");
}

TEST_F(Keyboard, ReachesTheMenuBar) {
    press(XK_Alt_L);
    press(XK_Right);
    press(XK_Down);
    stage_.awaitMenu();
    press(XK_Return);

    stage_.awaitStatus("Overlay added");
}

}  // namespace
}  // namespace pallwick::desktop
