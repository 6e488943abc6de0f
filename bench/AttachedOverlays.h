#pragma once

#include <string>

#include "Crowd.h"
#include "support/Program.h"

namespace pallwick::bench {

/// The real program on a private desktop, its overlays locked and each attached to a window of a crowd that is in
/// front, so that all of them show.
class AttachedOverlays {
public:
    /// One overlay on each of the crowd's first `count` windows; none at all for 0. Returns once they show and the
    /// program has nothing else left to do. Both arguments must outlive the object.
    AttachedOverlays(support::PrivateDesktop& desktop, const Crowd& crowd, int count);

    [[nodiscard]] pid_t process() { return program_.process().pid(); }

private:
    void attach(const Crowd& crowd, int count);
    /// A button of the main window, whatever lies over it.
    void operate(const std::string& button);
    /// Takes an entry of the menu of presets, counted from 1, and returns once the status line says `status`.
    void choosePreset(int entry, const std::string& status);

    support::PrivateDesktop& desktop_;
    support::Program program_;
};

}  // namespace pallwick::bench
