#pragma once

#include <support/MainWindow.h>

#include <string>

#include "Gallery.h"

namespace pallwick::pictures {

/// What the desktop makes the program look like.
struct Look {
    /// Goes into names and sentences.
    std::string name;
    double scale = 1;
    bool dark = false;
    /// Text twice as large as the desktop's usual one.
    bool largeText = false;
    bool composited = false;
};

/// The program on a desktop of one look, ready to be pictured.
class Session {
public:
    /// Returns when the main window is in its corner. `gallery` is shared by several sessions and outlives them.
    Session(Gallery& gallery, Look look);

    [[nodiscard]] support::PrivateDesktop& desktop() { return desktop_; }
    [[nodiscard]] support::Program& program() { return program_; }
    [[nodiscard]] support::MainWindow& main() { return main_; }
    [[nodiscard]] double scale() const { return look_.scale; }

    /// A picture of what the screen shows there once the program has done all it was asked to.
    void take(const std::string& name, const std::string& sentence, const support::PixelRect& part);
    /// A window with its decoration.
    void takeWindow(const std::string& name, const std::string& sentence, xcb_window_t window);
    void takeMainWindow(const std::string& name, const std::string& sentence) {
        takeWindow(name, sentence, main_.window());
    }
    /// The main window and a menu that may hang over its edge.
    void takeMenu(const std::string& name, const std::string& sentence, xcb_window_t menu);

private:
    Gallery& gallery_;
    Look look_;
    support::PrivateDesktop desktop_;
    support::Program program_;
    support::MainWindow main_;
};

}  // namespace pallwick::pictures
