#pragma once

#include <support/MainWindow.h>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "DesktopKind.h"
#include "SecretClient.h"

namespace pallwick::desktop {

/// A desktop with the program on it, its main window in the bottom-right corner, where it lies under no new overlay.
class Stage {
public:
    struct Options {
        int width = 1920;
        int height = 1080;
        double scale = 1;
        bool dark = false;
        /// Regular expressions of what the program may write to standard error.
        std::vector<std::string> allowedOutput;
        /// Of the program alone.
        support::Environment environment;
        /// Variables that the program does not have, though its desktop does.
        std::set<std::string> absentVariables;
        /// Done once the desktop is there and before the program starts.
        std::function<void(support::PrivateDesktop&)> prepare;
    };

    /// Returns when the main window is shown and in its corner.
    explicit Stage(DesktopKind kind) : Stage(kind, Options{}) {}
    Stage(DesktopKind kind, Options options);

    [[nodiscard]] support::PrivateDesktop& desktop() { return *desktop_; }
    [[nodiscard]] support::Program& program() { return *program_; }
    [[nodiscard]] xcb_window_t mainWindow() const { return main_->window(); }
    [[nodiscard]] support::Pointer& pointer() { return desktop_->pointer(); }
    [[nodiscard]] support::Windows& windows() { return desktop_->windows(); }

    /// Starts the program once more, after it has ended. Returns as the constructor does.
    void startAgain();

    /// What lies beneath: striped, undecorated, and where a new overlay and the middle of the screen are. The main
    /// window stays clear of it at scale 1. Returns when it shows in its full colours, faded in.
    [[nodiscard]] std::unique_ptr<support::TestClient> openSecret(const std::string& title = "Secret") {
        return openSecret(title, secretRect());
    }
    [[nodiscard]] std::unique_ptr<support::TestClient> openSecret(const std::string& title,
                                                                  const support::PixelRect& rect);
    [[nodiscard]] support::PixelRect secretRect() const;

    /// Operates a button through the accessibility service: neither pointer nor keyboard focus move.
    void operate(const std::string& button) { main_->operate(button); }
    /// Adds one in that way and returns it once it is shown.
    support::Program::Overlay add();
    void lock();
    void unlock();
    /// The selected overlay's.
    void setShape(Shape shape);
    /// Switches the blur off and sets the tint's opacity in hundredths.
    void setTint(int opacity);
    /// The selected overlay's blur and opacity in hundredths, and whether it has the glass.
    void setStyle(int blur, int opacity, bool glass = true);
    void setGlass(bool on) { main_->setGlass(on); }
    /// Moves a slider by the keyboard; its values are 0 to 100.
    void slideTo(const std::string& name, int value) { main_->slideTo(name, value); }
    /// Attaches the selected overlay to the last window that the inspector offers, asked for anew. Activates the main
    /// window.
    void attachToLastWindow() { main_->attachToLastWindow(); }
    /// Returns the window of a context menu once it is shown.
    xcb_window_t awaitMenu() { return main_->awaitMenu(); }
    /// Opens the menu of presets and chooses from it, each by a real click.
    void choosePreset(const std::string& entry) { main_->choosePreset(entry); }
    /// The list's rows from top to bottom.
    [[nodiscard]] std::vector<support::Accessible> rows() { return main_->rows(); }
    /// Returns once the list has just these rows.
    void awaitRows(const std::vector<std::string>& texts) { main_->awaitRows(texts); }
    [[nodiscard]] std::string statusText() { return main_->statusText(); }
    /// Returns once the status line says so.
    void awaitStatus(const std::string& text) { main_->awaitStatus(text); }

    /// Drags by that way, in one move.
    support::Program::Overlay dragBy(const support::Program::Overlay& overlay, support::PixelPoint way);

    /// Where the handles are to be gripped.
    [[nodiscard]] support::PixelPoint resizeHandle(const support::PixelRect& overlay) const;
    [[nodiscard]] support::PixelPoint deleteControl(const support::PixelRect& overlay) const;

    /// Returns the first picture in which an overlay of that frame covers all there is inside its shape.
    support::Screenshot awaitCovered(const support::PixelRect& overlay, Shape shape = Shape::rectangle);

    /// Every picture of the screen from now on until one passes, each looked at, in the order of their changes.
    void watch(const std::string& what, const std::function<void(const support::Screenshot&)>& look,
               const std::function<bool(const support::Screenshot&)>& isLast);

    /// Returns when the program has seen and answered all that the server has told it before, several times over.
    void settle() { main_->settle(); }

    [[nodiscard]] support::PixelRect rectOf(xcb_window_t window);

private:
    void startProgram();

    Options options_;
    std::unique_ptr<support::PrivateDesktop> desktop_;
    std::unique_ptr<support::Program> program_;
    std::unique_ptr<support::MainWindow> main_;
};

/// The window that the pointer is over and would be told of a click: a child of the root, none for the root itself.
[[nodiscard]] xcb_window_t windowUnderPointer(support::XConnection& x);

}  // namespace pallwick::desktop
