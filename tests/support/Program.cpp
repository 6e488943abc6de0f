#include "Program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <locale>
#include <regex>
#include <sstream>

namespace pallwick::support {
namespace {

constexpr const char* mainWindowTitle = "Pallwick";
/// A window that was only cleared shows one colour, one with anti-aliased text dozens.
constexpr int coloursOfAPaintedWindow = 16;

/// Numbers in resources and variables have a point for a decimal mark whatever the locale.
std::string decimal(double number) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << number;
    return text.str();
}

std::unique_ptr<Process> start(PrivateDesktop& desktop, const Program::Options& options) {
    Environment environment = options.environment;
    if (options.scaleSource == Program::ScaleSource::xftDpi) {
        desktop.setResources("Xft.dpi:\t" + decimal(96 * options.scale) + "\n");
    } else if (options.scale != 1) {
        environment["QT_SCALE_FACTOR"] = decimal(options.scale);
    }
    environment = desktop.environment(environment);
    for (const std::string& name : options.absentVariables) {
        environment.erase(name);
    }
    return std::make_unique<Process>(std::vector<std::string>{PALLWICK_PROGRAM},
                                     Process::Options{.environment = std::move(environment), .descriptors = {}});
}

}  // namespace

Program::Program(PrivateDesktop& desktop, Options options)
    : desktop_(desktop), options_(std::move(options)), process_(start(desktop, options_)) {
    desktop_.x().guard(*process_);
}

Program::~Program() {
    desktop_.x().release(*process_);
    for (const std::string& line : unexpectedOutput()) {
        ADD_FAILURE() << "pallwick wrote: " << line;
    }
}

int Program::pixels(double points) const {
    return static_cast<int>(std::lround(points * options_.scale));
}

xcb_window_t Program::awaitMainWindow() {
    const xcb_window_t window = desktop_.windows().awaitClient(mainWindowTitle);
    desktop_.awaitPixels("a painted main window", [&](const Screenshot& screen) {
        const PixelRect rect = desktop_.windows().rect(window).value_or(PixelRect{});
        return screen.distinctColours(PixelArea::rectangle(rect)) >= coloursOfAPaintedWindow;
    });
    return window;
}

AccessibleTree& Program::controls() {
    if (!controls_) {
        controls_ = std::make_unique<AccessibleTree>(desktop_, process_->pid(), options_.scale);
    }
    return *controls_;
}

void Program::click(const std::string& role, const std::string& name) {
    const Accessible control = controls().await(role, name);
    PixelRect extents;
    controls().awaitCondition(role + " \"" + name + "\" shown and enabled", [&] {
        extents = control.extents();
        return extents.width > 0 && extents.height > 0 && control.has(AccessibleState::showing) &&
               control.has(AccessibleState::enabled);
    });
    desktop_.pointer().click(extents.centre());
}

bool Program::isOverlay(xcb_window_t window) {
    Windows& windows = desktop_.windows();
    if (!windows.isViewable(window) || !windows.isOverrideRedirect(window) || windows.depth(window) != 32) {
        return false;
    }
    const std::vector<std::string> classes = windows.windowClass(window);
    if (std::ranges::find(classes, "pallwick") == classes.end()) {
        return false;
    }
    // Menus, tool tips and the lists of combo boxes are the program's other override-redirect windows.
    const std::vector<std::uint32_t> types = windows.cardinals(window, "_NET_WM_WINDOW_TYPE");
    const std::array<const char*, 4> popups{"_NET_WM_WINDOW_TYPE_POPUP_MENU", "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
                                            "_NET_WM_WINDOW_TYPE_TOOLTIP", "_NET_WM_WINDOW_TYPE_COMBO"};
    return std::ranges::none_of(
        popups, [&](const char* popup) { return std::ranges::find(types, desktop_.x().atom(popup)) != types.end(); });
}

void Program::giveKeyboardTo(xcb_window_t window) {
    desktop_.windows().activate(window);
    const std::string title = desktop_.windows().title(window);
    const auto isActive = [&](const Accessible& item) {
        return item.name() == title && item.has(AccessibleState::active);
    };
    controls().awaitCondition("the keyboard in \"" + title + "\"",
                              [&] { return !controls().application().findAll(isActive).empty(); });
}

std::vector<Program::Overlay> Program::overlays() {
    std::vector<Overlay> found;
    for (const xcb_window_t window : desktop_.windows().stacking()) {
        if (!isOverlay(window)) {
            continue;
        }
        const std::optional<PixelRect> rect = desktop_.windows().rect(window);
        // A hidden overlay stays mapped and waits outside the screen.
        if (rect && rect->intersects(desktop_.x().rootRect())) {
            found.push_back({.window = window, .rect = *rect});
        }
    }
    return found;
}

std::string Program::describeOverlays() {
    std::string text;
    for (const Overlay& overlay : overlays()) {
        text += (text.empty() ? "" : ", ") + describe(overlay.rect);
    }
    return text.empty() ? "no overlay" : text;
}

std::vector<Program::Overlay> Program::awaitOverlayCount(std::size_t count) {
    std::vector<Overlay> seen;
    desktop_.x().await(
        std::to_string(count) + " overlays on screen",
        [&] {
            seen = overlays();
            return seen.size() == count;
        },
        [this] { return describeOverlays(); });
    return seen;
}

Program::Overlay Program::awaitOverlayAt(const PixelRect& rect) {
    return awaitOverlay("an overlay of " + describe(rect),
                        [&](const Overlay& overlay) { return overlay.rect == rect; });
}

Program::Overlay Program::awaitOverlay(const std::string& what, const std::function<bool(const Overlay&)>& test) {
    std::optional<Overlay> found;
    desktop_.x().await(
        what,
        [&] {
            for (const Overlay& overlay : overlays()) {
                if (test(overlay)) {
                    found = overlay;
                }
            }
            return found.has_value();
        },
        [this] { return describeOverlays(); });
    return *found;
}

void Program::closeMainWindow() {
    const xcb_window_t window = desktop_.windows().awaitClient(mainWindowTitle);
    desktop_.windows().close(window);
    desktop_.x().await("the main window closed", [&] { return !desktop_.windows().isViewable(window); });
}

ExitStatus Program::quit() {
    giveKeyboardTo(desktop_.windows().awaitClient(mainWindowTitle));
    desktop_.x().release(*process_);
    desktop_.keyboard().press(XK_q, {XK_Control_L});
    return process_->awaitExit();
}

std::vector<std::string> Program::unexpectedOutput() const {
    std::vector<std::string> lines;
    std::istringstream output(process_->standardError());
    for (std::string line; std::getline(output, line);) {
        const bool allowed = std::ranges::any_of(options_.allowedOutput, [&](const std::string& pattern) {
            return std::regex_match(line, std::regex(pattern));
        });
        if (!allowed) {
            lines.push_back(line);
        }
    }
    return lines;
}

}  // namespace pallwick::support
