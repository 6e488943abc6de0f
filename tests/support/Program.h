#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "AccessibleTree.h"
#include "PrivateDesktop.h"

namespace pallwick::support {

/// The real `pallwick`, running on a private desktop and driven from outside.
///
/// Whatever it writes to standard error unasked fails the current test.
class Program {
public:
    /// How a desktop tells its programs the scale.
    enum class ScaleSource { qtScaleFactor, xftDpi };

    struct Options {
        /// Pixels per point.
        double scale = 1;
        ScaleSource scaleSource = ScaleSource::qtScaleFactor;
        Environment environment;
        /// Variables of the desktop that it does not have.
        std::set<std::string> absentVariables;
        /// Regular expressions (ECMAScript, whole line) of what it may write.
        std::vector<std::string> allowedOutput;
    };

    /// Starts it; does not wait for anything.
    Program(PrivateDesktop& desktop, Options options);
    explicit Program(PrivateDesktop& desktop) : Program(desktop, Options{}) {}
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    [[nodiscard]] Process& process() { return *process_; }
    /// Pixels per point.
    [[nodiscard]] double scale() const { return options_.scale; }
    /// A length in points in pixels.
    [[nodiscard]] int pixels(double points) const;

    /// Returns once the main window is mapped and shows a picture with text in it.
    xcb_window_t awaitMainWindow();
    /// Its controls; waits for the program to register at first use.
    [[nodiscard]] AccessibleTree& controls();
    /// A real click on the middle of a control, once that is shown and enabled.
    void click(const std::string& role, const std::string& name);
    /// The same for a push button.
    void click(const std::string& button) { click("push button", button); }

    /// Activates one of its windows and returns once the program, too, takes it that it has the keyboard there: what is
    /// typed earlier goes nowhere.
    void giveKeyboardTo(xcb_window_t window);

    /// An overlay's window.
    struct Overlay {
        xcb_window_t window = noWindow;
        PixelRect rect;
    };
    /// The overlays that are on the screen, bottom to top.
    [[nodiscard]] std::vector<Overlay> overlays();
    /// Each returns when what it names is so, and throws `Timeout` with what was seen instead.
    std::vector<Overlay> awaitOverlayCount(std::size_t count);
    Overlay awaitOverlayAt(const PixelRect& rect);
    /// The first overlay that passes.
    Overlay awaitOverlay(const std::string& what, const std::function<bool(const Overlay&)>& test);

    /// Asks the main window to close and returns once it is gone. The program goes on.
    void closeMainWindow();
    /// Quits by the main window's key for that, and returns how the program ended.
    ExitStatus quit();
    /// Lines of its output that were neither expected nor allowed.
    [[nodiscard]] std::vector<std::string> unexpectedOutput() const;

private:
    [[nodiscard]] bool isOverlay(xcb_window_t window);
    [[nodiscard]] std::string describeOverlays();

    PrivateDesktop& desktop_;
    Options options_;
    std::unique_ptr<Process> process_;
    std::unique_ptr<AccessibleTree> controls_;
};

}  // namespace pallwick::support
