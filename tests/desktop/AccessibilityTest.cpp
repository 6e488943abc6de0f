// What a screen reader finds in the real program, asked over the bus as a screen reader asks.

#include <gmock/gmock.h>
#include <support/AccessibleEvents.h>
#include <support/TestClient.h>

#include <set>
#include <tuple>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Accessible;
using support::AccessibleState;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Role, name and description.
using Control = std::tuple<std::string, std::string, std::string>;

class Accessibility : public testing::Test {
protected:
    Accessibility() : stage_(DesktopKind::openbox) { stage_.program().giveKeyboardTo(stage_.mainWindow()); }

    std::vector<Accessible> all(const std::function<bool(const Accessible&)>& test) {
        return stage_.program().controls().application().findAll(test);
    }

    std::vector<std::string> namesOf(const std::string& role) {
        std::vector<std::string> names;
        for (const Accessible& item : all([&](const Accessible& each) { return each.role() == role; })) {
            names.push_back(item.name());
        }
        return names;
    }

    /// The entries of the one menu that is open and hangs on no menu bar.
    std::vector<std::string> openEntries() {
        std::vector<std::string> names;
        for (const Accessible& window : stage_.program().controls().application().children()) {
            if (window.role() == "popup menu") {
                for (const Accessible& entry : window.children()) {
                    names.push_back(entry.role() == "separator" ? "-" : entry.name());
                }
            }
        }
        return names;
    }

    void closeMenu(xcb_window_t menu) {
        stage_.desktop().keyboard().press(XK_Escape);
        stage_.desktop().x().await("the menu closed", [&] { return !stage_.windows().isViewable(menu); });
    }

    Stage stage_;
};

TEST_F(Accessibility, TellsRoleNameAndPurposeOfEveryControl) {
    stage_.add();

    std::multiset<Control> controls;
    for (const Accessible& item : all([](const Accessible& each) {
             return each.has(AccessibleState::focusable) && each.has(AccessibleState::showing);
         })) {
        const bool isControl = item.role() != "frame" && item.role() != "list item" && item.role() != "menu item";
        if (isControl) {
            controls.insert({item.role(), item.name(), item.description()});
        }
    }

    EXPECT_THAT(controls,
                testing::UnorderedElementsAre(
                    Control("list", "Manual Overlays", ""), Control("push button", "Add", "Add overlay"),
                    Control("push button", "Remove", "Remove selected overlay"), Control("push button", "Add", ""),
                    Control("push button", "Lock", ""), Control("push button", "Clear", ""),
                    Control("button menu", "Presets", ""), Control("radio button", "Rectangle", ""),
                    Control("radio button", "Circle", ""), Control("slider", "Blur", "50%"),
                    Control("slider", "Opacity", "100%"), Control("check box", "Glass blur", ""),
                    Control("push button", "Color", "#000000"), Control("push button", "Refresh", "Refresh windows"),
                    Control("combo box", "Choose window", ""), Control("push button", "Attach", ""),
                    Control("push button", "Detach", ""), Control("push button", "Remove Overlay", "")));
}

TEST_F(Accessibility, TellsOfASlidersNewValueOnce) {
    stage_.add();
    stage_.slideTo("Blur", 0);
    stage_.settle();
    support::AccessibleEvents values(stage_.desktop(), "accessible-value");
    support::AccessibleEvents descriptions(stage_.desktop(), "accessible-description");
    stage_.settle();

    stage_.desktop().keyboard().press(XK_Right);
    const Accessible slider = stage_.program().controls().await("slider", "Blur");
    stage_.program().controls().awaitCondition("Blur at 1", [&] { return slider.description() == "1%"; });
    stage_.settle();

    EXPECT_THAT(values.sources(), SizeIs(1));
    EXPECT_THAT(descriptions.sources(), SizeIs(1));
}

TEST_F(Accessibility, CallsAPanelByItsShape) {
    stage_.add();
    EXPECT_THAT(namesOf("panel"), ElementsAre("Overlay, Rectangle"));

    stage_.setShape(Shape::circle);

    stage_.program().controls().awaitCondition(
        "a panel called a circle", [&] { return namesOf("panel") == std::vector<std::string>{"Overlay, Circle"}; });
}

TEST_F(Accessibility, ShowsTheEntriesOfTheMenuBar) {
    EXPECT_THAT(namesOf("menu item"),
                ElementsAre("Pallwick", "Settings…", "Quit", "Overlay", "Add Overlay", "Lock Overlays", "Clear All"));
}

TEST_F(Accessibility, ShowsTheEntriesOfPresetsWhileTheyAreOpen) {
    EXPECT_THAT(openEntries(), IsEmpty());

    stage_.program().click("button menu", "Presets");
    const xcb_window_t menu = stage_.awaitMenu();
    EXPECT_THAT(openEntries(),
                ElementsAre("Save Display Preset", "Load Display Preset", "-", "Save App Preset", "Load App Preset"));

    closeMenu(menu);
    stage_.program().controls().awaitCondition("no entries", [&] { return openEntries().empty(); });
}

TEST_F(Accessibility, ShowsTheEntryOfARowsMenuWhileItIsOpen) {
    stage_.add();
    stage_.pointer().click(stage_.rows().front().extents().centre(), support::MouseButton::right);
    const xcb_window_t menu = stage_.awaitMenu();

    EXPECT_THAT(openEntries(), ElementsAre("Remove"));

    closeMenu(menu);
    stage_.program().controls().awaitCondition("no entry", [&] { return openEntries().empty(); });
}

TEST_F(Accessibility, ChoosesAnEntryForAScreenReader) {
    stage_.program().click("button menu", "Presets");
    stage_.awaitMenu();

    stage_.program().controls().await("menu item", "Load Display Preset").doAction("Press");

    stage_.awaitStatus("No display preset saved");
}

TEST_F(Accessibility, ShowsTheWindowsOfThePickerWhileItIsOpen) {
    const support::TestClient notes(stage_.desktop(), {.title = "Notes", .windowClass = "Ledger"});
    stage_.program().giveKeyboardTo(stage_.mainWindow());
    stage_.add();
    stage_.operate("Refresh");

    stage_.program().click("combo box", "Choose window");
    stage_.awaitMenu();

    std::vector<std::string> entries;
    for (const Accessible& item :
         stage_.program().controls().await("combo box", "Choose window").findAll([](const Accessible& each) {
             return each.role() == "list item";
         })) {
        entries.push_back(item.name());
        EXPECT_FALSE(item.extents().width == 0) << item.name();
    }
    EXPECT_THAT(entries, ElementsAre("Choose window", "Ledger - Notes"));
}

}  // namespace
}  // namespace pallwick::desktop
