#pragma once

#include <string>
#include <vector>

#include "support/Program.h"

namespace pallwick {

/// The real program with panels of frosted glass, locked, as many as are asked for.
class GlassPanels {
public:
    /// Starts the program without any panel, its main window in the bottom-right corner.
    explicit GlassPanels(support::PrivateDesktop& desktop);

    [[nodiscard]] pid_t pid() { return program_.process().pid(); }

    /// Shows panels of that size from `first` on, each a little further down and to the right, in place of those that
    /// were there, and returns them once they are on the screen. They come from a preset. Opacity in per cent.
    std::vector<support::Program::Overlay> show(int count, const support::PixelRect& first, int opacity);

private:
    void choosePresetAction(int row, const std::string& statusAfter);

    support::PrivateDesktop& desktop_;
    support::Program program_;
    bool locked_ = false;
};

}  // namespace pallwick
