#include "MainWindow.h"

#include <algorithm>

namespace pallwick::support {

MainWindow::MainWindow(PrivateDesktop& desktop, Program& program)
    : desktop_(desktop), program_(program), window_(program.awaitMainWindow()) {}

PixelRect MainWindow::rect() {
    return desktop_.windows().rect(window_).value_or(PixelRect{});
}

void MainWindow::placeInCorner() {
    const PixelRect frame = desktop_.windows().frame(window_).value_or(PixelRect{});
    const PixelRect client = rect();
    const PixelRect screen = desktop_.x().rootRect();
    const PixelPoint corner{.x = screen.width - frame.width + client.x - frame.x,
                            .y = screen.height - frame.height + client.y - frame.y};
    desktop_.windows().move(window_, corner);
    desktop_.x().await(
        "the main window in the corner",
        [&] {
            const PixelRect now = rect();
            return now.x == corner.x && now.y == corner.y;
        },
        [&] { return describe(rect()); });
}

void MainWindow::operate(const std::string& button) {
    program_.controls().await("push button", button).doAction("Press");
}

void MainWindow::setShape(const std::string& title) {
    const Accessible segment = program_.controls().await("radio button", title);
    program_.click("radio button", title);
    program_.controls().awaitCondition(title + " chosen", [&] { return segment.has(AccessibleState::checked); });
}

void MainWindow::setGlass(bool on) {
    const Accessible glass = program_.controls().await("check box", "Glass blur");
    if (glass.has(AccessibleState::checked) != on) {
        program_.click("check box", "Glass blur");
    }
    program_.controls().awaitCondition("the glass as wanted",
                                       [&] { return glass.has(AccessibleState::checked) == on; });
}

void MainWindow::slideTo(const std::string& name, int value) {
    constexpr int last = 100;
    const Accessible slider = program_.controls().await("slider", name);
    desktop_.windows().activate(window_);
    slider.grabFocus();
    program_.controls().awaitCondition(name + " focused", [&] { return slider.has(AccessibleState::focused); });
    const bool isNearEnd = value > last / 2;
    desktop_.keyboard().press(isNearEnd ? XK_End : XK_Home);
    for (int step = 0; step < (isNearEnd ? last - value : value); ++step) {
        desktop_.keyboard().press(isNearEnd ? XK_Left : XK_Right);
    }
    program_.controls().awaitCondition(name + " at " + std::to_string(value), [&] { return slider.value() == value; });
}

void MainWindow::chooseLastWindow() {
    operate("Refresh");
    // The toolkit lets no accessibility client focus a picker; the keyboard gets there from the button before it.
    const Accessible refresh = program_.controls().await("push button", "Refresh");
    desktop_.windows().activate(window_);
    refresh.grabFocus();
    program_.controls().awaitCondition("Refresh focused", [&] { return refresh.has(AccessibleState::focused); });
    desktop_.keyboard().press(XK_Tab);
    desktop_.keyboard().press(XK_End);
    const Accessible attach = program_.controls().await("push button", "Attach");
    program_.controls().awaitCondition("a window chosen", [&] { return attach.has(AccessibleState::enabled); });
}

void MainWindow::attachToLastWindow() {
    chooseLastWindow();
    operate("Attach");
    const Accessible detach = program_.controls().await("push button", "Detach");
    program_.controls().awaitCondition("it attached", [&] { return detach.has(AccessibleState::enabled); });
}

void MainWindow::choosePreset(const std::string& entry) {
    program_.click("button menu", "Presets");
    awaitMenu();
    program_.click("menu item", entry);
}

xcb_window_t MainWindow::awaitMenu() {
    xcb_window_t found = noWindow;
    Windows& windows = desktop_.windows();
    desktop_.x().await("a menu", [&] {
        for (const xcb_window_t window : windows.stacking()) {
            // An overlay's window is as deep as its alpha channel needs; a menu's is as deep as the screen.
            const std::vector<std::string> classes = windows.windowClass(window);
            const bool isOurs = std::ranges::find(classes, "pallwick") != classes.end();
            if (isOurs && windows.isViewable(window) && windows.isOverrideRedirect(window) &&
                windows.depth(window) != 32) {
                found = window;
            }
        }
        return found != noWindow;
    });
    return found;
}

std::vector<Accessible> MainWindow::rows() {
    return program_.controls().await("list", "Manual Overlays").findAll([](const Accessible& item) {
        return item.role() == "list item";
    });
}

void MainWindow::awaitRows(const std::vector<std::string>& texts) {
    std::string wanted;
    for (const std::string& text : texts) {
        wanted += " \"" + text + "\"";
    }
    program_.controls().awaitCondition("rows" + wanted, [&] {
        std::vector<std::string> shown;
        for (const Accessible& row : rows()) {
            shown.push_back(row.name());
        }
        return shown == texts;
    });
}

std::string MainWindow::statusText() {
    // Of the labels, the one before the mode's.
    const std::vector<Accessible> labels =
        program_.controls().application().findAll([](const Accessible& item) { return item.role() == "label"; });
    const auto mode = std::ranges::find_if(labels, [](const Accessible& label) {
        const std::string text = label.name();
        return text == "Edit mode" || text == "Locked";
    });
    return mode == labels.end() || mode == labels.begin() ? std::string() : std::prev(mode)->name();
}

void MainWindow::awaitStatus(const std::string& text) {
    program_.controls().awaitCondition("the status \"" + text + "\"", [&] { return statusText() == text; });
}

void MainWindow::settle() {
    constexpr int turns = 30;
    for (int turn = 0; turn < turns; ++turn) {
        desktop_.x().roundTrip();
        static_cast<void>(program_.controls().application().role());
    }
}

}  // namespace pallwick::support
