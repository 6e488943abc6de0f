#pragma once

#include <PallwickMacCore/Models/Geometry.h>

#include <QColor>
#include <QString>

#include <optional>
#include <vector>

class QPainter;

namespace pallwick {

/// Where the pointer was when something happened to it.
struct PointerEvent {
    /// View coordinates: points, y down, origin at the surface's top-left corner.
    Point locationInView;
    /// Global screen coordinates: points, y up.
    Point mouseLocation;
};

/// The blur beneath a surface's drawing, as values. How it is made is the platform's business.
struct EffectLayer {
    enum class Shape { roundedRectangle, ellipse };

    bool hidden = false;
    /// Opacity of the blurred picture over what lies beneath, 0 to 1.
    double alpha = 1;
    /// What the layer is clipped to, inscribed in the whole surface.
    Shape shape = Shape::roundedRectangle;
    /// Points; only for the rounded rectangle.
    double cornerRadius = 0;
    /// Stands in, opaque, wherever the platform cannot make the picture that belongs there: hiding comes first.
    QColor cover = Qt::black;

    friend bool operator==(const EffectLayer&, const EffectLayer&) = default;
};

/// All that a drawing depends on. Where two are equal, `draw` would draw the same.
struct DrawingState {
    /// Points.
    Size size;
    EffectLayer::Shape shape = EffectLayer::Shape::roundedRectangle;
    /// With its alpha.
    QColor tint;
    bool showsBorder = false;
    bool showsControls = false;
    QColor accent;
    QColor windowBackground;

    friend bool operator==(const DrawingState&, const DrawingState&) = default;
};

/// What a surface shows and whom it tells about the pointer. Only the left button is reported.
class OverlaySurfaceContent {
public:
    virtual ~OverlaySurfaceContent() = default;

    OverlaySurfaceContent(const OverlaySurfaceContent&) = delete;
    OverlaySurfaceContent& operator=(const OverlaySurfaceContent&) = delete;

    /// Draws the whole content in view coordinates over what the surface has put beneath (the effect layer).
    virtual void draw(QPainter& painter) = 0;

    /// None where the content cannot tell: then every request for display is answered by drawing.
    [[nodiscard]] virtual std::optional<DrawingState> drawingState() const { return std::nullopt; }

    /// Real movements of the pointer only, not the crossings that a grab reports.
    virtual void mouseEntered() = 0;
    virtual void mouseExited() = 0;

    virtual void mouseDown(const PointerEvent& event) = 0;
    /// Between `mouseDown` and `mouseUp`, wherever the pointer is.
    virtual void mouseDragged(const PointerEvent& event) = 0;
    virtual void mouseUp() = 0;

    /// The surface went away, or stopped taking the mouse, between `mouseDown` and `mouseUp`.
    virtual void gestureCancelled() = 0;

protected:
    OverlaySurfaceContent() = default;
};

enum class CursorShape { arrow, resizeLeftRight, pointingHand };

struct CursorRegion {
    /// View coordinates, y down.
    Rect rect;
    CursorShape shape = CursorShape::arrow;

    friend bool operator==(const CursorRegion&, const CursorRegion&) = default;
};

/// The platform's borderless thing on the screen that hosts one overlay: above every window of other applications,
/// on every workspace, never focused, exact to the pixel. Main thread only. Made hidden, taking the mouse.
///
/// Calls that change nothing cost nothing. Destroying a surface takes it off the screen; never destroy it under one
/// of its content's handlers.
class OverlaySurface {
public:
    virtual ~OverlaySurface() = default;

    OverlaySurface(const OverlaySurface&) = delete;
    OverlaySurface& operator=(const OverlaySurface&) = delete;

    /// The frame last set, in global screen coordinates; never read back from the screen's pixels.
    [[nodiscard]] virtual Rect frame() const = 0;

    /// Takes effect at once, content included; it may lie partly or wholly off every screen.
    virtual void setFrame(const Rect& frame) = 0;

    [[nodiscard]] virtual bool isVisible() const = 0;

    /// Brings the surface to the front of all surfaces, without activating the program.
    virtual void show() = 0;

    virtual void hide() = 0;

    /// True lets every click, scroll and hover through to what lies beneath.
    virtual void setIgnoresMouseEvents(bool ignores) = 0;

    /// Later regions win where they overlap; the arrow everywhere else.
    virtual void setCursorRegions(std::vector<CursorRegion> regions) = 0;

    virtual void setEffectLayer(const EffectLayer& layer) = 0;

    /// The content has to be drawn again. Drawing happens before the event loop goes on, or at the next `setFrame` or
    /// `show`, whichever is first.
    virtual void setNeedsDisplay() = 0;

    /// What a screen reader calls the surface.
    virtual void setAccessibleName(const QString& name) = 0;

protected:
    OverlaySurface() = default;
};

}  // namespace pallwick
