#pragma once

#include <string>
#include <vector>

#include "Process.h"

namespace pallwick::support {

/// The window managers that a private desktop can run.
enum class WindowManager {
    none,
    openbox,
    xfwm4,
    xfwm4Compositing,
    i3,
    metacity,
    mutter,
    kwin,
    kwinCompositing,
};

/// How one of them is started.
struct WindowManagerCommand {
    std::vector<std::string> command;
    /// Beside the desktop's own.
    Environment environment;
    /// It owns _NET_WM_CM_S0 as well.
    bool composites = false;
};

/// In the order of the enumeration.
[[nodiscard]] std::vector<WindowManager> allWindowManagers();
/// A name for test parameters and messages: letters and digits only.
[[nodiscard]] std::string describe(WindowManager windowManager);
void PrintTo(WindowManager windowManager, std::ostream* stream);
/// `none` always is.
[[nodiscard]] bool isInstalled(WindowManager windowManager);
/// `configurationDirectory`: where a configuration file it needs is written.
[[nodiscard]] WindowManagerCommand commandOf(WindowManager windowManager, const std::string& configurationDirectory);

}  // namespace pallwick::support
