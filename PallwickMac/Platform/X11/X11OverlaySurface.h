#pragma once

#include <PallwickMac/Platform/OverlaySurface.h>
#include <PallwickMac/Platform/X11/Glass.h>
#include <PallwickMac/Platform/X11/SurfaceHost.h>
#include <PallwickMac/Platform/X11/SurfaceWindow.h>

#include <memory>
#include <optional>
#include <vector>

namespace pallwick::x11 {

class SurfaceAccessibility;

/// An overlay surface as an override-redirect window in exact device pixels.
///
/// The effect layer is what lies beneath, captured and blurred by us. Without a compositing manager the sharp picture
/// is drawn by us too, since nothing shines through. Whenever a capture that is needed fails, the layer's cover is
/// drawn instead, opaque.
class X11OverlaySurface final : public OverlaySurface {
public:
    /// `host` and `content` are not owned and must outlive the surface.
    X11OverlaySurface(SurfaceHost& host, OverlaySurfaceContent& content);
    ~X11OverlaySurface() override;

    [[nodiscard]] Rect frame() const override { return frame_; }
    void setFrame(const Rect& frame) override;
    [[nodiscard]] bool isVisible() const override { return visible_; }
    void show() override;
    void hide() override;
    void setIgnoresMouseEvents(bool ignores) override;
    void setCursorRegions(std::vector<CursorRegion> regions) override;
    void setEffectLayer(const EffectLayer& layer) override;
    void setNeedsDisplay() override;
    void setAccessibleName(const QString& name) override;

    [[nodiscard]] xcb_window_t window() const { return window_->id(); }
    /// As `SurfaceWindow::shownAt`.
    [[nodiscard]] std::uint32_t shownAt() const { return window_->shownAt(); }

    /// Draws and uploads the picture if it was asked for and would differ from the one shown.
    void displayIfNeeded();

    /// What the place depends on has changed, though not the frame.
    void placeAnew();

    /// Goes over to a native window that is new to the compositing manager. The former one stays in front of it, with
    /// the same picture at the same place, until `dropFormerWindow`.
    void renewWindow();
    void dropFormerWindow();

    /// Whether its picture shows what lies beneath by our own doing.
    [[nodiscard]] bool needsBackdrop() const { return visible_ && (showsEffect() || !host_.isCompositing()); }
    /// Its own drawing hides what lies beneath, but for a rim.
    [[nodiscard]] bool showsOnlyItsRim() const { return glass_.showsOnlyItsRim(); }
    /// That window's pixels have changed in `area` (root pixels). True if the backdrop is out of date for that.
    [[nodiscard]] bool noteChangeBeneath(xcb_window_t window, const PixelRect& area);
    /// What lies beneath has changed since it was captured last, or was never captured.
    [[nodiscard]] bool isBackdropOutdated() const { return needsBackdrop() && backdropOutdated_; }
    /// Captures again if what lies beneath has changed, or could not be captured. Whether the panel was drawn anew.
    bool updateBackdrop();

    void handlePress(const xcb_button_press_event_t& event);
    void handleRelease(const xcb_button_release_event_t& event);
    void handleMotion(const xcb_motion_notify_event_t& event);
    void handleCrossing(const xcb_enter_notify_event_t& event);

private:
    /// Where the window goes and how the content lies in it.
    struct Placement {
        /// Root pixels.
        PixelRect area;
        /// The frame's exact top-left corner in window pixels; a fraction, or far off where the window covers only
        /// the part of a huge frame that screens can show.
        Point origin;

        friend bool operator==(const Placement&, const Placement&) = default;
    };

    /// All that the uploaded picture depends on.
    struct Picture {
        /// None where the content cannot tell.
        std::optional<DrawingState> drawing;
        EffectLayer layer;
        Point origin;
        int width = 0;
        int height = 0;
        double scale = 1;
        /// Draws the layer's cover beneath the content: over the layer's shape, or over everything.
        enum class Cover { none, shape, everything } cover = Cover::none;

        friend bool operator==(const Picture&, const Picture&) = default;
    };

    [[nodiscard]] Placement placement() const;
    /// All that the mask of the effect layer depends on.
    struct Mask {
        EffectLayer layer;
        Point origin;
        int width = 0;
        int height = 0;
        double scale = 1;

        friend bool operator==(const Mask&, const Mask&) = default;
    };

    [[nodiscard]] bool showsEffect() const { return !effectLayer_.hidden && effectLayer_.alpha > 0; }
    [[nodiscard]] Picture::Cover coverAfter(bool captured) const;
    [[nodiscard]] Glass::Request captureRequest(const PixelRect& area) const;
    [[nodiscard]] QImage render(const Picture& picture) const;
    [[nodiscard]] QImage renderMask(const Mask& mask) const;
    [[nodiscard]] Rect boundsInWindow(const Placement& placement) const;
    /// Brings picture, shape and place of a shown window in step; stacks it directly above `below` where that is given.
    /// A former window follows.
    void display(const Placement& placement, std::optional<xcb_window_t> below = std::nullopt);
    void updateShape(const Placement& placement);
    void forgetBackdrop();
    void updateCursor();
    void forgetGesture();
    [[nodiscard]] Point locationInView(int eventX, int eventY) const;

    SurfaceHost& host_;
    OverlaySurfaceContent& content_;
    std::unique_ptr<SurfaceWindow> window_;
    std::unique_ptr<SurfaceWindow> formerWindow_;
    Rect frame_;
    bool visible_ = false;
    bool ignoresMouse_ = false;
    bool needsDisplay_ = true;
    bool pressed_ = false;
    EffectLayer effectLayer_;
    std::vector<CursorRegion> cursorRegions_;
    /// View coordinates; none while the pointer is elsewhere.
    std::optional<Point> pointer_;
    std::optional<Picture> shown_;
    std::optional<Mask> mask_;
    Glass glass_;
    /// What lies beneath was last captured for this; none after a failure.
    std::optional<Glass::Request> capturedFor_;
    bool backdropOutdated_ = false;
    /// The native window shows our picture; not before it is first shown, nor while it is hidden.
    bool hasPicture_ = false;
    /// That picture contains what lies beneath.
    bool showsCapture_ = false;
    std::unique_ptr<SurfaceAccessibility> accessibility_;
};

}  // namespace pallwick::x11
