#pragma once

#include <optional>
#include <string>

#include <support/MainWindow.h>
#include <support/SecretWindow.h>

#include "Record.h"

namespace pallwick::tour {

enum class Compositor { none, picom };

/// One walk through the real program at one scale, with real pointer and keys: cover a secret, lock, click through,
/// unlock, uncover, quit. After each step the real screen is looked at.
class Tour {
public:
    /// `record` is shared by several tours and outlives them.
    /// `suffix` is added to its pictures' names.
    Tour(Record& record, double scale, Compositor compositor, std::string suffix);

    /// All of it. The desktop's window manager and compositor are told at the end.
    void walk();
    /// The main window and an overlay among dark colours.
    void showDark();

private:
    void start();
    void add();
    void cover();
    void resize();
    void lock();
    void clickThrough();
    void unlock();
    void remove();
    void quit();

    [[nodiscard]] int pixels(double points) const { return program_->pixels(points); }
    /// The overlay's tint less its edge: two points in from the frame.
    [[nodiscard]] support::PixelArea inside(const support::PixelRect& overlay) const;
    /// Waits until the screen shows the overlay where it was just put, above everything.
    void awaitCover();
    /// That the overlay hides the text at this very moment.
    void checkHidden(const std::string& when);
    void picture(const std::string& name);

    Record& record_;
    support::PrivateDesktop desktop_;
    std::optional<support::SecretWindow> secret_;
    std::optional<support::Program> program_;
    std::optional<support::MainWindow> main_;
    double scale_;
    std::string suffix_;
    support::PixelRect overlay_;
    int textBefore_ = 0;
};

}  // namespace pallwick::tour
