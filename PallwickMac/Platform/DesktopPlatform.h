#pragma once

#include <PallwickMac/Platform/ActivationToken.h>
#include <PallwickMac/Platform/OverlaySurface.h>
#include <PallwickMac/Platform/StatusItem.h>
#include <PallwickMac/Platform/WindowRecord.h>
#include <PallwickMacCore/Models/Geometry.h>

#include <QObject>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QWindow;

namespace pallwick {

struct Screen {
    /// Global screen coordinates.
    Rect frame;
    /// `frame` without panels and docks.
    Rect visibleFrame;
    /// Device pixels per point.
    double scale = 1;
    /// Display number; the same for the same display after a reboot and after unplugging. None where it has none.
    std::optional<std::uint32_t> displayID;
    /// The connector's or monitor's name, UTF-8.
    std::string name;

    friend bool operator==(const Screen&, const Screen&) = default;
};

/// What this desktop can do, for the guide and for tests.
struct PlatformCapabilities {
    /// Translucent surfaces let what lies beneath through at this moment.
    bool compositing = false;
    /// Surfaces that ignore the mouse really pass it on.
    bool clickThrough = false;

    friend bool operator==(const PlatformCapabilities&, const PlatformCapabilities&) = default;
};

/// All that the program asks of a desktop. One instance, handed down by reference; it outlives its surfaces.
/// Main thread only. Queries ask afresh at every call and never fail: what cannot be found out is left out.
class DesktopPlatform : public QObject {
    Q_OBJECT

public:
    ~DesktopPlatform() override = default;

    /// Every screen, the primary one first; empty when there is none.
    [[nodiscard]] virtual std::vector<Screen> screens() const = 0;

    /// The frames of `screens()`, in its order, that surfaces are placed by and window bounds are measured against; as
    /// they were at the last `screensChanged`. Costs no question to the desktop.
    [[nodiscard]] virtual std::vector<Rect> screenFrames() const = 0;

    /// Every window on the screen, front to back, our own among them. None where the desktop does not answer.
    [[nodiscard]] virtual std::optional<std::vector<WindowRecord>> onScreenWindows() const = 0;

    /// The one window of that number, exactly as `onScreenWindows` would give it; none where it would not. The price
    /// does not depend on how many windows there are.
    [[nodiscard]] virtual std::optional<WindowRecord> onScreenWindow(std::uint32_t number) const = 0;

    /// The process of the application in front. None before any was, and for one whose process cannot be found out.
    /// Cheap: asked for at every synchronisation.
    [[nodiscard]] virtual std::optional<std::int32_t> frontmostProcessID() const = 0;

    /// Reverse-DNS identifier of the application in front, UTF-8. None before any was, and for one about which nothing
    /// can be found out.
    [[nodiscard]] virtual std::optional<std::string> frontmostBundleID() const = 0;

    /// Global screen coordinates.
    [[nodiscard]] virtual Point pointerLocation() const = 0;

    [[nodiscard]] virtual PlatformCapabilities capabilities() const = 0;

    /// `content` is not owned and must outlive the surface.
    [[nodiscard]] virtual std::unique_ptr<OverlaySurface> makeOverlaySurface(OverlaySurfaceContent& content) = 0;

    /// One at a time; it must go before the platform.
    [[nodiscard]] virtual std::unique_ptr<StatusItem> makeStatusItem(const StatusItemDescription& description) = 0;

    /// Whether this process is the program's only one on this desktop, as it is from then on. Otherwise the other one
    /// has been asked to come to the front, and has answered. To be called once, before anything is shown.
    /// Throws `PlatformUnavailable` where the other one does not answer within some seconds.
    [[nodiscard]] virtual bool claimInstance(const ActivationToken& token) = 0;

    /// Brings a window of the program that is open, though it may be minimised or on any workspace, before all others
    /// and gives it the keyboard.
    virtual void activate(QWindow& window, const ActivationToken& token) = 0;

Q_SIGNALS:
    /// Screens came, went, moved or changed their scale. Every surface has placed itself anew.
    void screensChanged();

    /// The program was started once more and is wanted in front. Comes only after `claimInstance`.
    void activationRequested(const pallwick::ActivationToken& token);

    /// The desktop is gone and nothing can be shown any more; `reason` is one sentence for the user.
    void disconnected(const QString& reason);

protected:
    DesktopPlatform() = default;
};

}  // namespace pallwick
