#pragma once

#include <PallwickMac/Platform/DesktopPlatform.h>
#include <PallwickMac/Platform/X11/ActiveApplication.h>
#include <PallwickMac/Platform/X11/ApplicationIndex.h>
#include <PallwickMac/Platform/X11/CompositingMonitor.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/ProgramInstance.h>
#include <PallwickMac/Platform/X11/SurfaceHost.h>
#include <PallwickMac/Platform/X11/SystemTray.h>
#include <PallwickMac/Platform/X11/WindowList.h>

#include <QSocketNotifier>

#include <memory>
#include <optional>
#include <vector>

namespace pallwick::x11 {

/// The X11 desktop: the X server that DISPLAY names, with or without a window manager and a compositing manager.
class X11Platform final : public DesktopPlatform {
    Q_OBJECT

public:
    /// Needs the toolkit's application object. Throws `PlatformUnavailable`.
    X11Platform();
    ~X11Platform() override;

    [[nodiscard]] std::vector<Screen> screens() const override;
    [[nodiscard]] std::vector<Rect> screenFrames() const override;
    [[nodiscard]] std::optional<std::vector<WindowRecord>> onScreenWindows() const override;
    [[nodiscard]] std::optional<WindowRecord> onScreenWindow(std::uint32_t number) const override;
    [[nodiscard]] std::optional<std::int32_t> frontmostProcessID() const override;
    [[nodiscard]] std::optional<std::string> frontmostBundleID() const override;
    [[nodiscard]] Point pointerLocation() const override;
    [[nodiscard]] PlatformCapabilities capabilities() const override;
    [[nodiscard]] std::unique_ptr<OverlaySurface> makeOverlaySurface(OverlaySurfaceContent& content) override;
    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem(const StatusItemDescription& description) override;
    [[nodiscard]] bool claimInstance(const ActivationToken& token) override;
    void activate(QWindow& window, const ActivationToken& token) override;

protected:
    /// Watches the application object for a change of the palette.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watchToolkitScreens();
    void dispatchEvents();
    void handle(const xcb_generic_event_t& event);
    void updateScreens();
    [[nodiscard]] WindowPlacement windowPlacement() const;

    Connection connection_;
    CompositingMonitor compositing_;
    ApplicationIndex applications_;
    mutable ActiveApplication activeApplication_;
    WindowList windowList_;
    SurfaceHost surfaces_;
    // After the surfaces, whose host has the root's events sent to us.
    SystemTray systemTray_;
    ProgramInstance instance_;
    QSocketNotifier readable_;
    std::vector<Screen> knownScreens_;
    bool screensMayHaveChanged_ = false;
    bool dispatching_ = false;
    bool connected_ = true;
};

}  // namespace pallwick::x11
