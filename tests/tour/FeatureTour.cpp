#include "FeatureTour.h"

#include <array>
#include <utility>

namespace pallwick::tour {
namespace {

using support::Colour;
using support::describe;
using support::PixelPoint;
using support::PixelRect;
using support::PrivateDesktop;
using support::Program;
using support::Screenshot;
using support::SecretWindow;

constexpr Colour ground{.red = 0x5a, .green = 0x7d, .blue = 0x8c};

PrivateDesktop& onGround(PrivateDesktop& desktop) {
    desktop.setGround(ground);
    return desktop;
}

bool looksTheSame(const Screenshot& one, const Screenshot& other, const PixelRect& rect) {
    for (int y = rect.y; y < rect.maxY(); ++y) {
        for (int x = rect.x; x < rect.maxX(); ++x) {
            if (one.at({.x = x, .y = y}) != other.at({.x = x, .y = y})) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace

FeatureTour::FeatureTour(Record& record)
    : record_(record),
      desktop_({.windowManager = support::WindowManager::openbox, .server = {.width = 1280, .height = 800}}),
      secret_(onGround(desktop_), {.x = 20, .y = 30}, 1, SecretWindow::Text::running),
      program_(desktop_),
      main_(desktop_, program_) {
    main_.placeInCorner();
}

void FeatureTour::picture(const std::string& name) {
    record_.picture(desktop_.screenshot(), name);
}

void FeatureTour::awaitAt(const PixelRect& rect) {
    overlay_ = program_.awaitOverlayAt(rect).rect;
}

void FeatureTour::layGlassOverRunningText() {
    program_.click("Add");
    overlay_ = program_.awaitOverlayCount(1).front().rect;
    const PixelRect text = secret_.rect();
    const PixelPoint grip = overlay_.centre();
    const PixelPoint goal{.x = grip.x + text.x + 10 - overlay_.x, .y = grip.y + text.y + 10 - overlay_.y};
    desktop_.pointer().drag(grip, goal);
    awaitAt({.x = text.x + 10, .y = text.y + 10, .width = overlay_.width, .height = overlay_.height});

    main_.slideTo("Blur", 100);
    main_.slideTo("Opacity", 60);
    const Screenshot glass = desktop_.awaitPixels("glass with a tinge of the text", [&](const Screenshot& seen) {
        return SecretWindow::tracesIn(seen, inside()) > 0 && SecretWindow::textIn(seen, inside()) == 0;
    });
    record_.check(true, "glass lets a tinge of the text through, and no letter in its colour");
    desktop_.awaitPixels("the glass following the text",
                         [&](const Screenshot& seen) { return !looksTheSame(glass, seen, overlay_.inset(20)); });
    record_.check(true, "it follows the text that runs beneath");
    picture("glass");
    main_.slideTo("Opacity", 100);
    main_.awaitStatus("Style updated");
}

void FeatureTour::followTheWindow() {
    main_.attachToLastWindow();
    main_.awaitStatus("Attached to XTerm - Payroll");
    record_.check(true, "Attach ties the overlay to the terminal's window");
    picture("attached");

    program_.awaitOverlayCount(0);
    record_.check(true, "it is hidden while Pallwick itself is in front");
    desktop_.windows().activate(secret_.window());
    awaitAt(overlay_);
    record_.check(true, "it is back once the terminal is in front");

    const PixelRect before = secret_.rect();
    desktop_.windows().move(secret_.window(), {.x = before.x + 40, .y = before.y + 380});
    desktop_.x().await("the terminal elsewhere", [&] { return secret_.rect() != before; });
    // As far as the window manager let it.
    const PixelPoint way{.x = secret_.rect().x - before.x, .y = secret_.rect().y - before.y};
    awaitAt({.x = overlay_.x + way.x, .y = overlay_.y + way.y, .width = overlay_.width, .height = overlay_.height});
    record_.check(true, "it goes where the window goes: " + describe(overlay_));
    picture("followed");

    main_.operate("Detach");
    main_.awaitStatus("Window attachment removed");
}

void FeatureTour::keepAPreset() {
    main_.choosePreset("Save Display Preset");
    main_.awaitStatus("Display preset saved");
    record_.check(true, "a preset is saved");
    program_.click("Clear");
    program_.awaitOverlayCount(0);
    record_.check(true, "Clear takes every overlay away");

    program_.click("button menu", "Presets");
    main_.awaitMenu();
    picture("presets");
    program_.click("menu item", "Load Display Preset");
    main_.awaitStatus("Display preset loaded");
    const std::vector<Program::Overlay> loaded = program_.awaitOverlayCount(1);
    record_.check(loaded.front().rect == overlay_, "the preset brings the overlay back to its place",
                  describe(loaded.front().rect));
    picture("preset-loaded");
}

void FeatureTour::readTheSettings() {
    program_.giveKeyboardTo(main_.window());
    desktop_.keyboard().press(XK_comma, {XK_Control_L});
    const xcb_window_t settings = desktop_.windows().awaitClient("Pallwick Settings");
    static_cast<void>(program_.controls().await("label", "Overlays pass clicks through to apps below"));
    program_.giveKeyboardTo(settings);
    record_.check(true, "Control and comma open the settings, which explain the modes");
    main_.settle();
    picture("settings");
    desktop_.keyboard().press(XK_Escape);
    desktop_.x().await("the settings closed", [&] { return !desktop_.windows().isViewable(settings); });
    record_.check(program_.overlays().size() == 1, "closing them leaves the overlay where it is");
    const std::vector<std::string> output = program_.unexpectedOutput();
    record_.check(output.empty(), "the program wrote nothing", output.empty() ? std::string() : output.front());
}

void FeatureTour::walk() {
    record_.heading("Glass, windows, presets, settings");
    using Part = void (FeatureTour::*)();
    constexpr std::array<std::pair<const char*, Part>, 4> parts{
        {{"glass over running text", &FeatureTour::layGlassOverRunningText},
         {"following a window", &FeatureTour::followTheWindow},
         {"keeping a preset", &FeatureTour::keepAPreset},
         {"reading the settings", &FeatureTour::readTheSettings}}};
    for (const auto& [name, part] : parts) {
        if (!record_.attempt(name, [this, part = part] { (this->*part)(); })) {
            // Each part begins where the one before ended.
            picture("failed");
            break;
        }
    }
}

}  // namespace pallwick::tour
