#include "Stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace pallwick::desktop {

using support::Accessible;
using support::AccessibleState;
using support::PixelPoint;
using support::PixelRect;
using support::Program;
using support::Screenshot;
using support::TestClient;

Stage::Stage(DesktopKind kind, Options options)
    : options_(std::move(options)), desktop_(makeDesktop(kind, options_.width, options_.height)) {
    if (options_.dark) {
        desktop_->useDarkColours();
    }
    if (options_.prepare) {
        options_.prepare(*desktop_);
    }
    startProgram();
}

void Stage::startProgram() {
    program_ = std::make_unique<Program>(*desktop_, Program::Options{.scale = options_.scale,
                                                                     .environment = options_.environment,
                                                                     .absentVariables = options_.absentVariables,
                                                                     .allowedOutput = options_.allowedOutput});
    mainWindow_ = program_->awaitMainWindow();
    placeMainWindow();
}

void Stage::startAgain() {
    program_.reset();
    desktop_->x().await("the old main window gone",
                        [&] { return !windows().isViewable(mainWindow_) && !windows().client("Pallwick"); });
    startProgram();
}

void Stage::placeMainWindow() {
    const PixelRect frame = windows().frame(mainWindow_).value_or(PixelRect{});
    const PixelRect client = rectOf(mainWindow_);
    const PixelRect screen = desktop_->x().rootRect();
    const PixelPoint corner{.x = screen.width - frame.width + client.x - frame.x,
                            .y = screen.height - frame.height + client.y - frame.y};
    windows().move(mainWindow_, corner);
    desktop_->x().await(
        "the main window in the corner",
        [&] {
            const PixelRect now = rectOf(mainWindow_);
            return now.x == corner.x && now.y == corner.y;
        },
        [&] { return support::describe(rectOf(mainWindow_)); });
}

PixelRect Stage::rectOf(xcb_window_t window) {
    return windows().rect(window).value_or(PixelRect{});
}

PixelRect Stage::secretRect() const {
    const PixelRect screen = desktop_->x().rootRect();
    return {
        .x = screen.width / 5, .y = screen.height / 5, .width = screen.width * 2 / 5, .height = screen.height * 3 / 5};
}

std::unique_ptr<TestClient> Stage::openSecret(const std::string& title, const PixelRect& rect) {
    TestClient::Options options = secretOptions(title, rect);
    options.undecorated = true;
    auto client = std::make_unique<TestClient>(*desktop_, options);
    // Longer than any compositing manager takes to fade it, and whatever was mapped before it, in.
    const PixelPoint ground{.x = rect.x + 8, .y = rect.y + 8};
    desktop_->awaitPixels("the secret in its full colours",
                          [&](const Screenshot& screen) { return screen.at(ground) == secretGround; });
    return client;
}

void Stage::operate(const std::string& button) {
    program_->controls().await("push button", button).doAction("Press");
}

Program::Overlay Stage::add() {
    const std::vector<Program::Overlay> before = program_->overlays();
    operate("Add");
    return program_->awaitOverlay("a further overlay", [&](const Program::Overlay& overlay) {
        return std::ranges::find(before, overlay.window, &Program::Overlay::window) == before.end();
    });
}

void Stage::lock() {
    operate("Lock");
    static_cast<void>(program_->controls().await("push button", "Edit"));
}

void Stage::unlock() {
    operate("Edit");
    static_cast<void>(program_->controls().await("push button", "Lock"));
}

void Stage::setShape(Shape shape) {
    const std::string title = shape == Shape::circle ? "Circle" : "Rectangle";
    const Accessible segment = program_->controls().await("radio button", title);
    program_->click("radio button", title);
    program_->controls().awaitCondition(title + " chosen", [&] { return segment.has(AccessibleState::checked); });
}

void Stage::setTint(int opacity) {
    setGlass(false);
    slideTo("Opacity", opacity);
}

void Stage::setStyle(int blur, int opacity, bool glass) {
    setGlass(glass);
    slideTo("Blur", blur);
    slideTo("Opacity", opacity);
    awaitStatus("Style updated");
}

void Stage::setGlass(bool on) {
    const Accessible glass = program_->controls().await("check box", "Glass blur");
    if (glass.has(AccessibleState::checked) != on) {
        program_->click("check box", "Glass blur");
    }
    program_->controls().awaitCondition("the glass as wanted",
                                        [&] { return glass.has(AccessibleState::checked) == on; });
}

void Stage::slideTo(const std::string& name, int value) {
    constexpr int last = 100;
    const Accessible slider = program_->controls().await("slider", name);
    windows().activate(mainWindow_);
    slider.grabFocus();
    program_->controls().awaitCondition(name + " focused", [&] { return slider.has(AccessibleState::focused); });
    const bool isNearEnd = value > last / 2;
    desktop_->keyboard().press(isNearEnd ? XK_End : XK_Home);
    for (int step = 0; step < (isNearEnd ? last - value : value); ++step) {
        desktop_->keyboard().press(isNearEnd ? XK_Left : XK_Right);
    }
    program_->controls().awaitCondition(name + " at " + std::to_string(value), [&] { return slider.value() == value; });
}

void Stage::attachToLastWindow() {
    operate("Refresh");
    // The toolkit lets no accessibility client focus a picker; the keyboard gets there from the button before it.
    const Accessible refresh = program_->controls().await("push button", "Refresh");
    windows().activate(mainWindow_);
    refresh.grabFocus();
    program_->controls().awaitCondition("Refresh focused", [&] { return refresh.has(AccessibleState::focused); });
    desktop_->keyboard().press(XK_Tab);
    desktop_->keyboard().press(XK_End);
    const Accessible attach = program_->controls().await("push button", "Attach");
    program_->controls().awaitCondition("a window chosen", [&] { return attach.has(AccessibleState::enabled); });
    operate("Attach");
    const Accessible detach = program_->controls().await("push button", "Detach");
    program_->controls().awaitCondition("it attached", [&] { return detach.has(AccessibleState::enabled); });
}

xcb_window_t Stage::awaitMenu() {
    xcb_window_t found = support::noWindow;
    desktop_->x().await("a menu", [&] {
        for (const xcb_window_t window : windows().stacking()) {
            // An overlay's window is as deep as its alpha channel needs; a menu's is as deep as the screen.
            const std::vector<std::string> classes = windows().windowClass(window);
            const bool isOurs = std::ranges::find(classes, "pallwick") != classes.end();
            if (isOurs && windows().isViewable(window) && windows().isOverrideRedirect(window) &&
                windows().depth(window) != 32) {
                found = window;
            }
        }
        return found != support::noWindow;
    });
    return found;
}

void Stage::choosePreset(const std::string& entry) {
    const std::array<std::string, 4> entries{"Save Display Preset", "Load Display Preset", "Save App Preset",
                                             "Load App Preset"};
    const auto index = static_cast<int>(std::ranges::find(entries, entry) - entries.begin());
    ASSERT_LT(index, 4);
    program_->click("button menu", "Presets");
    // The toolkit shows no accessibility client what is in a menu. Four entries of one height with a thin separator
    // in their middle: each has the middle of its quarter in it.
    const PixelRect menu = rectOf(awaitMenu());
    pointer().click({.x = menu.centre().x, .y = menu.y + menu.height * (2 * index + 1) / 8});
}

std::vector<Accessible> Stage::rows() {
    return program_->controls().await("list", "Manual Overlays").findAll([](const Accessible& item) {
        return item.role() == "list item";
    });
}

void Stage::awaitRows(const std::vector<std::string>& texts) {
    program_->controls().awaitCondition("rows " + testing::PrintToString(texts), [&] {
        std::vector<std::string> shown;
        for (const Accessible& row : rows()) {
            shown.push_back(row.name());
        }
        return shown == texts;
    });
}

std::string Stage::statusText() {
    // Of the labels, the one before the mode's.
    const std::vector<Accessible> labels =
        program_->controls().application().findAll([](const Accessible& item) { return item.role() == "label"; });
    const auto mode = std::ranges::find_if(labels, [](const Accessible& label) {
        const std::string text = label.name();
        return text == "Edit mode" || text == "Locked";
    });
    return mode == labels.end() || mode == labels.begin() ? std::string() : std::prev(mode)->name();
}

void Stage::awaitStatus(const std::string& text) {
    program_->controls().awaitCondition("the status \"" + text + "\"", [&] { return statusText() == text; });
}

Program::Overlay Stage::dragBy(const Program::Overlay& overlay, PixelPoint way) {
    const PixelPoint grip = overlay.rect.centre();
    pointer().drag(grip, {.x = grip.x + way.x, .y = grip.y + way.y});
    return program_->awaitOverlayAt(
        {overlay.rect.x + way.x, overlay.rect.y + way.y, overlay.rect.width, overlay.rect.height});
}

PixelPoint Stage::resizeHandle(const PixelRect& overlay) const {
    // A square of 28 by 28 points, 6 in from the bottom-right corner.
    const int middle = static_cast<int>(std::lround(20 * options_.scale));
    return {.x = overlay.maxX() - middle, .y = overlay.maxY() - middle};
}

PixelPoint Stage::deleteControl(const PixelRect& overlay) const {
    // A square of 26 by 26 points at 8, 8.
    const int middle = static_cast<int>(std::lround(21 * options_.scale));
    return {.x = overlay.x + middle, .y = overlay.y + middle};
}

Screenshot Stage::awaitCovered(const PixelRect& overlay, Shape shape) {
    return desktop_->awaitPixels("a cover at " + support::describe(overlay), [&](const Screenshot& screen) {
        return leak(screen, {inside(overlay, shape, options_.scale)}).empty();
    });
}

void Stage::watch(const std::string& what, const std::function<void(const Screenshot&)>& look,
                  const std::function<bool(const Screenshot&)>& isLast) {
    desktop_->awaitPixels(what, [&](const Screenshot& screen) {
        look(screen);
        return isLast(screen);
    });
}

void Stage::settle() {
    constexpr int turns = 30;
    for (int turn = 0; turn < turns; ++turn) {
        desktop_->x().roundTrip();
        static_cast<void>(program_->controls().application().role());
    }
}

xcb_window_t windowUnderPointer(support::XConnection& x) {
    const support::Reply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(x.get(), xcb_query_pointer(x.get(), x.root()), nullptr));
    return reply ? reply->child : support::noWindow;
}

}  // namespace pallwick::desktop
