#pragma once

#include <string>
#include <vector>

#include "Program.h"

namespace pallwick::support {

/// What a person does in the program's main window, and reads there.
///
/// Each action returns once the window shows that it was done, and throws `Timeout` where it never does.
class MainWindow {
public:
    /// Returns when the window is on the screen and painted. `desktop` and `program` must outlive the object.
    MainWindow(PrivateDesktop& desktop, Program& program);

    [[nodiscard]] xcb_window_t window() const { return window_; }
    [[nodiscard]] PixelRect rect();

    /// Puts it into the bottom-right corner of the screen, where it lies under no new overlay.
    void placeInCorner();

    /// Operates a button through the accessibility service: neither pointer nor keyboard focus move.
    void operate(const std::string& button);
    /// Chooses the selected overlay's shape, "Rectangle" or "Circle", by a click.
    void setShape(const std::string& title);
    void setGlass(bool on);
    /// Moves a slider by the keyboard; its values are 0 to 100.
    void slideTo(const std::string& name, int value);
    /// Chooses the last window that the inspector offers, asked for anew, by the keyboard.
    void chooseLastWindow();
    /// Attaches the selected overlay to it.
    void attachToLastWindow();
    /// Opens the menu of presets and chooses from it, each by a real click.
    void choosePreset(const std::string& entry);

    /// Returns the window of a menu, or of a picker's list, once it is shown.
    xcb_window_t awaitMenu();
    /// The list's rows from top to bottom.
    [[nodiscard]] std::vector<Accessible> rows();
    /// Returns once the list has just these rows.
    void awaitRows(const std::vector<std::string>& texts);
    [[nodiscard]] std::string statusText();
    /// Returns once the status line says so.
    void awaitStatus(const std::string& text);

    /// Returns when the program has seen and answered all that the server has told it before, several times over.
    void settle();

private:
    PrivateDesktop& desktop_;
    Program& program_;
    xcb_window_t window_;
};

}  // namespace pallwick::support
