#include "WindowManager.h"

#include <fstream>
#include <ostream>
#include <stdexcept>

namespace pallwick::support {

std::vector<WindowManager> allWindowManagers() {
    return {WindowManager::none,
            WindowManager::openbox,
            WindowManager::xfwm4,
            WindowManager::xfwm4Compositing,
            WindowManager::i3,
            WindowManager::metacity,
            WindowManager::mutter,
            WindowManager::kwin,
            WindowManager::kwinCompositing};
}

std::string describe(WindowManager windowManager) {
    switch (windowManager) {
        case WindowManager::none:
            return "none";
        case WindowManager::openbox:
            return "openbox";
        case WindowManager::xfwm4:
            return "xfwm4";
        case WindowManager::xfwm4Compositing:
            return "xfwm4Compositing";
        case WindowManager::i3:
            return "i3";
        case WindowManager::metacity:
            return "metacity";
        case WindowManager::mutter:
            return "mutter";
        case WindowManager::kwin:
            return "kwin";
        case WindowManager::kwinCompositing:
            return "kwinCompositing";
    }
    throw std::logic_error("no such window manager");
}

void PrintTo(WindowManager windowManager, std::ostream* stream) {
    *stream << describe(windowManager);
}

bool isInstalled(WindowManager windowManager) {
    return windowManager == WindowManager::none ||
           !findProgram(commandOf(windowManager, "/dev/null").command[0]).empty();
}

WindowManagerCommand commandOf(WindowManager windowManager, const std::string& configurationDirectory) {
    switch (windowManager) {
        case WindowManager::none:
            return {};
        case WindowManager::openbox:
            return {.command = {"openbox", "--sm-disable"}};
        case WindowManager::xfwm4:
            return {.command = {"xfwm4", "--compositor=off"}};
        case WindowManager::xfwm4Compositing:
            return {.command = {"xfwm4", "--compositor=on", "--vblank=off"}, .composites = true};
        case WindowManager::i3: {
            // Without a file of its own i3 asks whether it may write one.
            const std::string file = configurationDirectory + "/i3";
            std::ofstream(file) << "font pango:monospace 10\n";
            return {.command = {"i3", "-c", file}};
        }
        case WindowManager::metacity:
            return {.command = {"metacity", "--sm-disable", "--no-composite"}};
        case WindowManager::mutter:
            return {.command = {"mutter", "--x11", "--sm-disable"}, .composites = true};
        case WindowManager::kwin:
            return {.command = {"kwin_x11"}, .environment = {{"KWIN_COMPOSE", "N"}}};
        case WindowManager::kwinCompositing:
            return {.command = {"kwin_x11"}, .environment = {{"KWIN_COMPOSE", "O2"}}, .composites = true};
    }
    throw std::logic_error("no such window manager");
}

}  // namespace pallwick::support
