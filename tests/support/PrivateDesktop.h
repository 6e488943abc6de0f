#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Keyboard.h"
#include "Pointer.h"
#include "PrivateXServer.h"
#include "Screenshot.h"
#include "TemporaryDirectory.h"
#include "WindowManager.h"
#include "Windows.h"
#include "XConnection.h"

namespace pallwick::support {

/// One desktop for one test: an X server, a home, a session bus with the accessibility service, a window manager.
/// Nothing is inherited from the surrounding session but PATH, and nothing remains of it.
class PrivateDesktop {
public:
    struct Options {
        WindowManager windowManager = WindowManager::openbox;
        PrivateXServer::Options server;
        /// Set for every program of this desktop, over the desktop's own variables.
        Environment environment;
    };

    /// Returns when all of it is ready.
    explicit PrivateDesktop(const Options& options);
    ~PrivateDesktop();
    PrivateDesktop(const PrivateDesktop&) = delete;
    PrivateDesktop& operator=(const PrivateDesktop&) = delete;

    [[nodiscard]] XConnection& x() { return *x_; }
    [[nodiscard]] Windows& windows() { return *windows_; }
    [[nodiscard]] Pointer& pointer() { return *pointer_; }
    [[nodiscard]] Keyboard& keyboard() { return *keyboard_; }
    [[nodiscard]] PrivateXServer& server() { return *server_; }
    [[nodiscard]] Screenshot screenshot() { return Screenshot::take(*x_); }
    Screenshot awaitPixels(const std::string& what, const std::function<bool(const Screenshot&)>& test) {
        return support::awaitPixels(*x_, what, test);
    }

    [[nodiscard]] const std::filesystem::path& home() const { return home_; }
    /// XDG_DATA_HOME, in `home()`.
    [[nodiscard]] std::filesystem::path dataHome() const;
    [[nodiscard]] std::filesystem::path configHome() const;
    [[nodiscard]] const std::string& sessionBusAddress() const { return sessionBusAddress_; }
    /// What a program of this desktop gets, with `more` over it.
    [[nodiscard]] Environment environment(const Environment& more = {}) const;
    /// A program of this desktop that runs until the result is destroyed.
    [[nodiscard]] std::unique_ptr<Process> start(std::vector<std::string> command, const Environment& more = {}) const;

    /// Starts a window manager where none runs.
    void startWindowManager(WindowManager windowManager);
    /// Ends it, by SIGKILL as in a crash if `crashing`, and returns when the desktop shows no window manager.
    void stopWindowManager(bool crashing = false);

    enum class Fading { off, on };
    /// Starts picom, and returns when it owns the screen.
    void startCompositor(Fading fading = Fading::off);
    /// Ends it, by SIGKILL as in a crash if `crashing`.
    void stopCompositor(bool crashing = false);
    [[nodiscard]] bool isComposited() { return windows_->hasSelectionOwner("_NET_WM_CM_S0"); }

    /// Adds a RandR monitor over a part of the root window.
    void addMonitor(const std::string& name, const PixelRect& rect, bool primary = false);
    void removeMonitor(const std::string& name);
    /// The added ones; the whole root window as well, and first, unless a primary one was added.
    [[nodiscard]] std::vector<PixelRect> monitors() const;
    /// The X resources that a program started later reads, "Xft.dpi:\t144\n" for one.
    void setResources(const std::string& resources);
    /// Paints the root window, which is black at first.
    void setGround(Colour colour);
    /// Gives programs started later the dark colours of a KDE desktop.
    void useDarkColours();
    /// Gives programs started later the text size of a KDE desktop, in points at 96 dots an inch.
    void useTextSize(int points);

private:
    void startSessionBus();
    /// Adds to the settings of a KDE desktop, which programs started later take this one for.
    void addKdeSettings(const std::string& settings);
    /// Returns once the window manager answers to windows.
    void awaitManagement();

    // In this order: what is started later is ended first.
    TemporaryDirectory directory_;
    std::filesystem::path home_;
    std::filesystem::path runtimeDirectory_;
    Environment own_;
    struct Monitor {
        std::string name;
        PixelRect rect;
        bool primary = false;
    };
    std::vector<Monitor> monitors_;
    std::unique_ptr<PrivateXServer> server_;
    std::unique_ptr<Process> sessionBus_;
    std::string sessionBusAddress_;
    std::unique_ptr<XConnection> x_;
    std::unique_ptr<Windows> windows_;
    std::unique_ptr<Pointer> pointer_;
    std::unique_ptr<Keyboard> keyboard_;
    std::unique_ptr<Process> windowManager_;
    std::unique_ptr<Process> compositor_;
};

}  // namespace pallwick::support
