#pragma once

#include <PallwickMac/Platform/OverlaySurface.h>
#include <PallwickMac/Services/SoftShadow.h>
#include <PallwickMacCore/Models/BlurOverlay.h>
#include <PallwickMacCore/Services/OverlayPanelControlling.h>

#include <QPainterPath>

#include <optional>

namespace pallwick {

/// The whole content of an overlay's panel: draws the overlay and, in edit mode, its border and controls, and turns
/// the gestures of the mouse into frame changes and delete requests.
///
/// View coordinates are points, origin at the top-left corner, y down; frames and the way of a drag are in global
/// screen coordinates. A plain object, so that any kind of surface can host it. Main thread only.
class OverlayContentView final : public OverlaySurfaceContent {
public:
    enum class DragMode { move, resize };

    /// In no window and in edit mode until told otherwise. `onFrameChanged` hears of every step of a drag.
    OverlayContentView(const BlurOverlay& overlay, FrameChangedCallback onFrameChanged,
                       DeleteRequestedCallback onDeleteRequested);

    /// The window this view is the content of; null takes it out of its window, after which every event is ignored.
    /// Not owned; it receives the view's values at the next `update`.
    void setSurface(OverlaySurface* surface) { surface_ = surface; }

    /// Shows `overlay` from now on. Unless `editMode`, only the overlay is drawn and the mouse does nothing.
    void update(const BlurOverlay& overlay, bool editMode);

    /// The whole view; as large as its window, or as its overlay while it has none.
    [[nodiscard]] Rect bounds() const;
    [[nodiscard]] Rect deleteControlRect() const;
    [[nodiscard]] Rect resizeHandleRect() const;
    /// While the pointer is inside or a resize goes on. The delete control shows with the handle.
    [[nodiscard]] bool shouldShowResizeHandle() const;

    /// The gesture in progress.
    [[nodiscard]] std::optional<DragMode> dragMode() const { return dragMode_; }

    /// The overlay's outline, `inset` points within the bounds; empty where nothing is left.
    [[nodiscard]] QPainterPath overlayPath(double inset) const;

    /// This view in edit mode, wherever the point; otherwise null: a locked view never takes the mouse.
    [[nodiscard]] OverlayContentView* hitTest(const Point& locationInView);

    void draw(QPainter& painter) override;
    [[nodiscard]] std::optional<DrawingState> drawingState() const override;
    void mouseEntered() override;
    void mouseExited() override;
    void mouseDown(const PointerEvent& event) override;
    void mouseDragged(const PointerEvent& event) override;
    void mouseUp() override;
    void gestureCancelled() override;

private:
    void applyAppearance();
    void updateEffectMask();
    void resetCursorRegions();
    void setNeedsDisplay();
    void setMouseInside(bool inside);
    void setDragMode(std::optional<DragMode> dragMode);
    [[nodiscard]] DrawingState currentDrawingState() const;
    void drawDeleteControl(QPainter& painter);
    void drawResizeHandle(QPainter& painter, const QColor& accent, const QColor& background);

    BlurOverlay overlay_;
    bool editMode_ = true;
    FrameChangedCallback onFrameChanged_;
    DeleteRequestedCallback onDeleteRequested_;
    OverlaySurface* surface_ = nullptr;
    EffectLayer effectLayer_;
    std::optional<DragMode> dragMode_;
    Point dragStartMouse_;
    Rect dragStartFrame_;
    bool isMouseInside_ = false;
    SoftShadow deleteControlShadow_;
    SoftShadow resizeHandleShadow_;
};

}  // namespace pallwick
