#pragma once

#include <PallwickMac/Platform/FrameBudget.h>
#include <PallwickMac/Platform/RateLimit.h>
#include <PallwickMac/Platform/X11/BackdropCapture.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/CursorSet.h>
#include <PallwickMac/Platform/X11/PixelMapping.h>
#include <PallwickMac/Platform/X11/StackGuard.h>
#include <PallwickMac/Platform/X11/SurfaceWindowPool.h>
#include <PallwickMac/Platform/X11/WindowLayers.h>

#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>
#include <vector>

namespace pallwick::x11 {

class X11OverlaySurface;

/// What all surfaces of the platform share: the map between points and pixels, the stacking order, the stock of native
/// windows, the cursors; and the way of events to the surface they belong to. It outlives its surfaces.
class SurfaceHost : public QObject {
    Q_OBJECT

public:
    /// `connection` is not owned and must outlive the object.
    SurfaceHost(const Connection& connection, const PixelMapping& mapping, const PixelRect& rootArea, bool compositing);

    [[nodiscard]] const Connection& connection() const { return connection_; }
    [[nodiscard]] const PixelMapping& mapping() const { return mapping_; }
    [[nodiscard]] const PixelRect& rootArea() const { return rootArea_; }
    /// Whether translucent pixels are sure to let what lies beneath through; without that they would be black. Not yet
    /// so while a compositing manager that has just started may still be fading windows in.
    [[nodiscard]] bool isCompositing() const { return compositing_; }
    [[nodiscard]] StackGuard& stackGuard() { return stackGuard_; }
    [[nodiscard]] SurfaceWindowPool& windowPool() { return windowPool_; }
    [[nodiscard]] CursorSet& cursors() { return cursors_; }
    [[nodiscard]] WindowLayers& windowLayers() { return windowLayers_; }
    [[nodiscard]] BackdropCapture& backdropCapture() { return backdropCapture_; }

    void add(X11OverlaySurface& surface);
    void remove(X11OverlaySurface& surface);

    /// Displays what needs it, and commits the stacking order, before the event loop goes on.
    void scheduleCommit();

    /// A surface has begun or ceased to need what lies beneath it. While none does, nothing is captured or tracked.
    void updateBackdropTracking();

    /// A panel looks different now: those above it that show through to it have to follow.
    void panelChanged(const X11OverlaySurface& panel, const PixelRect& area);

    /// The screens have changed: every surface places itself anew from its unchanged frame.
    void setScreens(const PixelMapping& mapping, const PixelRect& rootArea);

    /// A compositing manager has come, maybe in the place of another one, or gone.
    void setCompositing(bool compositing);

    /// The palette has changed: everything is drawn again.
    void redrawAll();

    /// Takes any event.
    void handle(const xcb_generic_event_t& event);

    /// Delivers the last of a run of pointer motions, which `handle` holds back: only the newest one is worth an
    /// answer.
    void deliverMotion();

private:
    using Clock = RateLimit::Clock;

    [[nodiscard]] X11OverlaySurface* surfaceOf(xcb_window_t window) const;
    /// The surface that a pointer event about `window` was meant for when it happened, `sequence` requests into the
    /// connection. None if the window has shown another surface by then.
    [[nodiscard]] X11OverlaySurface* surfaceThen(xcb_window_t window, std::uint32_t sequence) const;
    void commit();
    void trustCompositing(bool trusted);
    void handleBackdropChange(const xcb_generic_event_t& event);
    /// A frame by `due`, or as soon after that as there may be one.
    void requestFrame(Clock::time_point due);
    /// When a picture of what has been painted beneath a surface is due.
    [[nodiscard]] Clock::time_point dueForPaint(const X11OverlaySurface& surface) const;
    void renderFrame();

    const Connection& connection_;
    PixelMapping mapping_;
    PixelRect rootArea_;
    bool compositing_;
    StackGuard stackGuard_;
    SurfaceWindowPool windowPool_;
    CursorSet cursors_;
    QTimer trustCompositingLater_;
    WindowLayers windowLayers_;
    BackdropCapture backdropCapture_;
    QTimer nextFrame_;
    Clock::time_point nextFrameAt_;
    Clock::time_point lastFrameAt_;
    /// Before that, a window that was just raised may still be above the panels.
    Clock::time_point stackedAt_;
    bool isRendering_ = false;
    /// What the last frame leaves room for.
    Clock::duration frameInterval_;
    FrameBudget frameBudget_;
    /// How often what is painted beneath the surfaces is shown in the long run; the budget says that.
    RateLimit paintRate_;
    /// Windows whose damage some surface waits to show.
    std::vector<xcb_window_t> damagedWindows_;
    std::vector<X11OverlaySurface*> surfaces_;
    bool commitScheduled_ = false;
    std::optional<xcb_motion_notify_event_t> motion_;
    std::uint32_t motionSequence_ = 0;
};

}  // namespace pallwick::x11
