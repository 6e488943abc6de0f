#include "GlassPanels.h"

#include <PallwickMacCore/Models/RecordCoding.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

namespace pallwick {

namespace {

using Presets = std::map<std::string, std::vector<BlurOverlay>>;

constexpr int stepBetweenPanels = 8;

// Rows of the menu.
constexpr int saveDisplayPreset = 0;
constexpr int loadDisplayPreset = 1;

}  // namespace

GlassPanels::GlassPanels(support::PrivateDesktop& desktop) : desktop_(desktop), program_(desktop) {
    // Not until it is painted: who once asked for that is told of all that is painted from then on, which costs.
    const xcb_window_t window = desktop_.windows().awaitClient("Pallwick");
    const support::PixelRect rect = desktop_.windows().rect(window).value_or(support::PixelRect{});
    const support::PixelRect screen = desktop_.x().rootRect();
    desktop_.windows().move(window, {.x = screen.width - rect.width, .y = screen.height - rect.height});
    desktop_.x().await("the main window in the corner",
                       [&] { return desktop_.windows().rect(window)->maxX() == screen.width; });
    // An empty preset tells under which name the display's is kept.
    choosePresetAction(saveDisplayPreset, "Display preset saved");
}

std::vector<support::Program::Overlay> GlassPanels::show(int count, const support::PixelRect& first, int opacity) {
    const std::filesystem::path file = desktop_.dataHome() / "Pallwick" / "presets.json";
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    auto presets = decode<Presets>(text.str(), file);
    auto& [name, overlays] = *presets.begin();
    overlays.clear();
    for (int i = 0; i < count; ++i) {
        const int x = first.x + i * stepBetweenPanels;
        const int y = first.y + i * stepBetweenPanels;
        overlays.push_back(
            BlurOverlay({.frame = {.x = static_cast<double>(x),
                                   .y = static_cast<double>(desktop_.x().rootRect().height - y - first.height),
                                   .width = static_cast<double>(first.width),
                                   .height = static_cast<double>(first.height)},
                         .style = BlurStyle(60, "#204060", opacity, true)}));
    }
    std::ofstream(file) << encode(presets);

    choosePresetAction(loadDisplayPreset, "Display preset loaded");
    if (!locked_) {
        program_.click("Lock");
        locked_ = true;
    }
    program_.awaitOverlayAt(first);
    return program_.awaitOverlayCount(static_cast<std::size_t>(count));
}

void GlassPanels::choosePresetAction(int row, const std::string& statusAfter) {
    program_.click("button menu", "Presets");
    // An overlay's window is as deep as its alpha channel needs; a menu's is as deep as the screen.
    const auto isMenu = [&](xcb_window_t window) {
        support::Windows& windows = desktop_.windows();
        const std::vector<std::string> classes = windows.windowClass(window);
        return std::ranges::find(classes, "pallwick") != classes.end() && windows.isViewable(window) &&
               windows.isOverrideRedirect(window) && windows.depth(window) != 32;
    };
    const auto hasMenu = [&] { return std::ranges::any_of(desktop_.windows().stacking(), isMenu); };
    desktop_.x().await("the menu", hasMenu);
    for (int i = 0; i <= row; ++i) {
        desktop_.keyboard().press(XK_Down);
    }
    desktop_.keyboard().press(XK_Return);
    desktop_.x().await("no menu", [&] { return !hasMenu(); });
    static_cast<void>(program_.controls().await("label", statusAfter));
}

}  // namespace pallwick
