#include "AttachedOverlays.h"

#include <PallwickMacCore/Stores/PresetStore.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

namespace pallwick::bench {

namespace {

// For two seconds after its start a program and its overlays have things of their own to do.
constexpr std::chrono::seconds settlingTime{4};

/// The display that the only list of a presets file is for.
std::uint32_t displayOf(const std::filesystem::path& presets) {
    std::ostringstream text;
    text << std::ifstream(presets).rdbuf();
    const std::string content = text.str();
    std::smatch found;
    if (!std::regex_search(content, found, std::regex("\"screen:([0-9]+)\""))) {
        throw std::runtime_error("no list for a display in " + presets.string());
    }
    return static_cast<std::uint32_t>(std::stoul(found[1]));
}

BlurOverlay overlayOn(xcb_window_t window, pid_t owner, std::uint32_t display) {
    BlurOverlay overlay({.displayID = display, .frame = {.x = 0, .y = 0, .width = 240, .height = 140}});
    overlay.anchor = OverlayAnchor::window;
    overlay.windowAttachment = WindowAttachment();
    overlay.windowAttachment->windowID = window;
    overlay.windowAttachment->ownerPID = owner;
    overlay.windowAttachment->ownerName = "Crowd";
    overlay.windowAttachment->offset = {.x = 20, .y = 20};
    return overlay;
}

}  // namespace

AttachedOverlays::AttachedOverlays(support::PrivateDesktop& desktop, const Crowd& crowd, int count)
    : desktop_(desktop), program_(desktop) {
    program_.awaitMainWindow();
    operate("Lock");
    static_cast<void>(program_.controls().await("push button", "Edit"));
    if (count > 0) {
        attach(crowd, count);
    }
    desktop_.windows().activate(crowd.windows().back());
    program_.awaitOverlayCount(static_cast<std::size_t>(count));
    std::this_thread::sleep_for(settlingTime);
}

void AttachedOverlays::attach(const Crowd& crowd, int count) {
    operate("Add");
    program_.awaitOverlayCount(1);
    // Whatever the overlay covers by then can be clicked through it.
    operate("Lock");
    static_cast<void>(program_.controls().await("push button", "Edit"));
    choosePreset(1, "Display preset saved");
    const std::filesystem::path folder = desktop_.dataHome() / "Pallwick";
    const std::filesystem::path presets = folder / "presets.json";
    const std::uint32_t display = displayOf(presets);
    std::vector<BlurOverlay> overlays;
    for (int i = 0; i < count; ++i) {
        overlays.push_back(overlayOn(crowd.windows()[static_cast<std::size_t>(i)], crowd.process(), display));
    }
    PresetStore(folder).save(overlays, PresetScope::screen(display));
    choosePreset(2, "Display preset loaded");
    program_.awaitOverlayCount(0);
}

void AttachedOverlays::operate(const std::string& button) {
    program_.controls().await("push button", button).doAction("Press");
}

void AttachedOverlays::choosePreset(int entry, const std::string& status) {
    program_.click("button menu", "Presets");
    // The toolkit shows no accessibility client what is in a menu.
    support::Windows& windows = desktop_.windows();
    desktop_.x().await("the menu of presets", [&] {
        return std::ranges::any_of(windows.stacking(), [&](xcb_window_t window) {
            // Overlays are override-redirect too, but deeper by their alpha channel.
            constexpr int depthWithAlpha = 32;
            return windows.isViewable(window) && windows.isOverrideRedirect(window) &&
                   windows.depth(window) != depthWithAlpha && !windows.windowClass(window).empty();
        });
    });
    for (int i = 0; i < entry; ++i) {
        desktop_.keyboard().press(XK_Down);
    }
    desktop_.keyboard().press(XK_Return);
    static_cast<void>(program_.controls().await("label", status));
}

}  // namespace pallwick::bench
