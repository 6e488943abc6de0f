// The main window's commands from end to end: by mouse and keyboard, on the screen, in the list and the status line.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Accessible;
using support::AccessibleState;
using support::MouseButton;
using support::PixelPoint;
using support::PixelRect;
using support::Program;
using support::Screenshot;
using testing::ElementsAre;
using testing::IsEmpty;

class Command : public testing::Test {
protected:
    Command() : stage_(DesktopKind::openbox) {}

    std::vector<Accessible> rows() { return stage_.rows(); }
    void awaitRows(const std::vector<std::string>& texts) { stage_.awaitRows(texts); }

    Accessible button(const std::string& name) { return stage_.program().controls().await("push button", name); }

    void focus(const Accessible& control) {
        stage_.windows().activate(stage_.mainWindow());
        control.grabFocus();
        stage_.program().controls().awaitCondition("the focus on it",
                                                   [&] { return control.has(AccessibleState::focused); });
    }

    /// The two buttons of that name, the button bar's and the list's, from top to bottom.
    std::vector<Accessible> buttons(const std::string& name) {
        std::vector<Accessible> found = stage_.program().controls().application().findAll(
            [&](const Accessible& item) { return item.role() == "push button" && item.name() == name; });
        std::ranges::sort(found, {}, [](const Accessible& item) { return item.extents().y; });
        return found;
    }

    /// Three, 40 pixels further right each.
    std::vector<Program::Overlay> addThree() {
        std::vector<Program::Overlay> overlays;
        for (int count = 0; count < 3; ++count) {
            overlays.push_back(stage_.dragBy(stage_.add(), {.x = -200 + 40 * count, .y = 0}));
        }
        return overlays;
    }

    std::vector<xcb_window_t> windowsOnScreen() {
        std::vector<xcb_window_t> windows;
        for (const Program::Overlay& overlay : stage_.program().overlays()) {
            windows.push_back(overlay.window);
        }
        return windows;
    }

    Stage stage_;
};

constexpr const char* first = "Overlay 1, Rectangle - 360 x 200 at 580, 440";
constexpr const char* second = "Overlay 2, Rectangle - 360 x 200 at 620, 440";
constexpr const char* third = "Overlay 3, Rectangle - 360 x 200 at 660, 440";

TEST_F(Command, StartsReadyAndEmpty) {
    EXPECT_EQ(stage_.statusText(), "Ready");
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_FALSE(button("Clear").has(AccessibleState::enabled));
    EXPECT_FALSE(button("Remove").has(AccessibleState::enabled));
}

TEST_F(Command, AddsByAClickOnTheButton) {
    stage_.pointer().click(buttons("Add").front().extents().centre());

    stage_.program().awaitOverlayAt({780, 440, 360, 200});
    stage_.awaitStatus("Overlay added");
    awaitRows({"Overlay 1, Rectangle - 360 x 200 at 780, 440"});
}

TEST_F(Command, AddsByAClickOnTheListsPlus) {
    stage_.pointer().click(buttons("Add").back().extents().centre());

    stage_.program().awaitOverlayAt({780, 440, 360, 200});
    stage_.awaitStatus("Overlay added");
}

TEST_F(Command, AddsByTheSpaceBar) {
    focus(buttons("Add").front());

    stage_.desktop().keyboard().press(XK_space);

    stage_.program().awaitOverlayAt({780, 440, 360, 200});
}

TEST_F(Command, SwitchesEditModeOnWhenItAdds) {
    stage_.add();
    stage_.lock();

    stage_.operate("Add");

    button("Lock");
    stage_.awaitStatus("Overlay added");
}

TEST_F(Command, ShowsTheFrameInTheRowWhileItIsDragged) {
    const Program::Overlay overlay = stage_.add();
    const PixelPoint grip = overlay.rect.centre();
    stage_.pointer().moveTo(grip);
    stage_.pointer().press();

    stage_.pointer().moveTo({.x = grip.x - 100, .y = grip.y + 50});
    awaitRows({"Overlay 1, Rectangle - 360 x 200 at 680, 390"});
    stage_.pointer().moveTo({.x = 100, .y = grip.y});
    awaitRows({"Overlay 1, Rectangle - 360 x 200 at -80, 440"});
    stage_.pointer().release();

    EXPECT_EQ(stage_.statusText(), "Overlay added");
}

TEST_F(Command, ShowsTheSizeInTheRowWhileItIsResized) {
    const Program::Overlay overlay = stage_.add();
    const PixelPoint handle = stage_.resizeHandle(overlay.rect);
    stage_.pointer().moveTo(handle);
    stage_.pointer().press();

    stage_.pointer().moveTo({.x = handle.x + 25, .y = handle.y + 15});
    awaitRows({"Overlay 1, Rectangle - 385 x 215 at 780, 425"});

    stage_.pointer().release();
}

TEST_F(Command, LocksAndUnlocksByAClick) {
    stage_.add();

    stage_.program().click("Lock");
    stage_.awaitStatus("Overlays locked; clicks pass through");
    static_cast<void>(stage_.program().controls().await("label", "Locked"));
    stage_.program().click("Edit");
    stage_.awaitStatus("Edit mode on");
    static_cast<void>(stage_.program().controls().await("label", "Edit mode"));
}

TEST_F(Command, RemovesTheSelectedOverlayByTheInspectorsButton) {
    const std::vector<Program::Overlay> overlays = addThree();
    awaitRows({first, second, third});
    stage_.pointer().click(rows()[1].extents().centre());
    stage_.program().controls().awaitCondition("the second row selected",
                                               [&] { return rows()[1].has(AccessibleState::selected); });

    stage_.program().click("Remove Overlay");

    awaitRows({first, "Overlay 2, Rectangle - 360 x 200 at 660, 440"});
    stage_.awaitStatus("Overlay removed");
    EXPECT_THAT(windowsOnScreen(), ElementsAre(overlays[0].window, overlays[2].window));
    EXPECT_TRUE(rows()[0].has(AccessibleState::selected));
}

TEST_F(Command, RemovesTheSelectedOverlayByTheListsMinus) {
    const std::vector<Program::Overlay> overlays = addThree();

    stage_.program().click("Remove");

    awaitRows({first, second});
    stage_.awaitStatus("Overlay removed");
    EXPECT_THAT(windowsOnScreen(), ElementsAre(overlays[0].window, overlays[1].window));
}

TEST_F(Command, RemovesTheRowUnderThePointerByItsMenu) {
    const std::vector<Program::Overlay> overlays = addThree();
    awaitRows({first, second, third});

    stage_.pointer().click(rows()[0].extents().centre(), MouseButton::right);
    // It has one entry.
    stage_.pointer().click(stage_.rectOf(stage_.awaitMenu()).centre());

    awaitRows({"Overlay 1, Rectangle - 360 x 200 at 620, 440", "Overlay 2, Rectangle - 360 x 200 at 660, 440"});
    stage_.awaitStatus("Overlay removed");
    EXPECT_THAT(windowsOnScreen(), ElementsAre(overlays[1].window, overlays[2].window));
}

TEST_F(Command, RemovesTheCurrentRowByItsMenuFromTheKeyboard) {
    const std::vector<Program::Overlay> overlays = addThree();
    awaitRows({first, second, third});
    stage_.pointer().click(rows()[1].extents().centre());
    stage_.program().controls().awaitCondition("the second row selected",
                                               [&] { return rows()[1].has(AccessibleState::selected); });

    stage_.desktop().keyboard().press(XK_F10, {XK_Shift_L});
    stage_.awaitMenu();
    stage_.desktop().keyboard().press(XK_Down);
    stage_.desktop().keyboard().press(XK_Return);

    awaitRows({first, "Overlay 2, Rectangle - 360 x 200 at 660, 440"});
    EXPECT_THAT(windowsOnScreen(), ElementsAre(overlays[0].window, overlays[2].window));
}

TEST_F(Command, ClearsThemAll) {
    addThree();

    stage_.program().click("Clear");

    stage_.program().awaitOverlayCount(0);
    stage_.awaitStatus("All overlays cleared");
    awaitRows({});
    EXPECT_FALSE(button("Clear").has(AccessibleState::enabled));
}

TEST_F(Command, LetsTheKeyboardChooseAmongTheRows) {
    addThree();
    stage_.pointer().click(rows()[2].extents().centre());
    stage_.program().controls().awaitCondition("the third row selected",
                                               [&] { return rows()[2].has(AccessibleState::selected); });

    stage_.desktop().keyboard().press(XK_Up);

    stage_.program().controls().awaitCondition("the second row selected",
                                               [&] { return rows()[1].has(AccessibleState::selected); });
    EXPECT_FALSE(rows()[2].has(AccessibleState::selected));
}

TEST_F(Command, ChangesTheShapeOnTheScreenAtOnce) {
    const auto secret = stage_.openSecret();
    const Program::Overlay overlay = stage_.add();
    stage_.awaitCovered(overlay.rect);
    // On the rounded rectangle's border, and outside the ellipse.
    const PixelPoint nearCorner{.x = overlay.rect.x + 30, .y = overlay.rect.y + 1};
    stage_.desktop().awaitPixels("a rectangle's border",
                                 [&](const Screenshot& screen) { return difference(screen.at(nearCorner), {}) > 100; });

    stage_.program().click("radio button", "Circle");

    stage_.awaitStatus("Shape updated");
    awaitRows({"Overlay 1, Circle - 360 x 200 at 780, 440"});
    stage_.desktop().awaitPixels("what lies beneath near the corner",
                                 [&](const Screenshot& screen) { return isSecret(screen.at(nearCorner)); });
    stage_.awaitCovered(overlay.rect, Shape::circle);
    EXPECT_EQ(stage_.rectOf(overlay.window), overlay.rect);
}

TEST_F(Command, ShowsTheStatusOfAStyleChange) {
    stage_.add();

    stage_.slideTo("Blur", 7);

    stage_.awaitStatus("Style updated");
}

}  // namespace
}  // namespace pallwick::desktop
