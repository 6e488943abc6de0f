#include <PallwickMac/Services/OverlayColor.h>
#include <PallwickMac/Services/OverlayContentView.h>
#include <PallwickMacCore/Models/OverlayAppearance.h>
#include <PallwickMacCore/Models/OverlayResizePolicy.h>

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPen>

#include <algorithm>
#include <utility>
#include <vector>

namespace pallwick {

namespace {

constexpr double cornerRadius = 12;
constexpr double borderWidth = 2;

constexpr double deleteControlSize = 26;
constexpr double deleteControlMargin = 8;
constexpr double crossInset = 8;
constexpr double crossWidth = 2.4;

constexpr double resizeHandleSize = 28;
constexpr double resizeHandleMargin = 6;
constexpr double resizeHandleCornerRadius = 7;
constexpr double gripMargin = 5;

constexpr float controlAlpha = 0.96F;
constexpr double shadowBlurRadius = 5;
constexpr double shadowDrop = 1;

/// A white cross on it has a contrast of 4.6 to 1, and it stands out from light and from dark.
constexpr QColor systemRed(222, 49, 45);

QColor translucent(QColor color) {
    color.setAlphaF(controlAlpha);
    return color;
}

// Read anew at every drawing, so that a change of the colour scheme shows.
QColor accentColor() {
    return QGuiApplication::palette().color(QPalette::Active, QPalette::Highlight);
}
QColor windowBackgroundColor() {
    return QGuiApplication::palette().color(QPalette::Active, QPalette::Window);
}

EffectLayer::Shape effectShape(OverlayShape shape) {
    return shape == OverlayShape::circle ? EffectLayer::Shape::ellipse : EffectLayer::Shape::roundedRectangle;
}

QRectF toQt(const Rect& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

QPainterPath ellipse(const QRectF& rect) {
    QPainterPath path;
    path.addEllipse(rect);
    return path;
}

QPainterPath roundedRectangle(const QRectF& rect, double radius) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

SoftShadow controlShadow(const QPainterPath& shape) {
    // A shadow is as translucent as what throws it.
    QColor color(Qt::black);
    color.setAlphaF(0.35F * controlAlpha);
    return {shape, color, shadowBlurRadius, QPointF(0, shadowDrop)};
}

}  // namespace

OverlayContentView::OverlayContentView(const BlurOverlay& overlay, FrameChangedCallback onFrameChanged,
                                       DeleteRequestedCallback onDeleteRequested)
    : overlay_(overlay),
      onFrameChanged_(std::move(onFrameChanged)),
      onDeleteRequested_(std::move(onDeleteRequested)),
      deleteControlShadow_(controlShadow(ellipse(QRectF(0, 0, deleteControlSize, deleteControlSize)))),
      resizeHandleShadow_(
          controlShadow(roundedRectangle(QRectF(0, 0, resizeHandleSize, resizeHandleSize), resizeHandleCornerRadius))) {
}

void OverlayContentView::update(const BlurOverlay& overlay, bool editMode) {
    overlay_ = overlay;
    editMode_ = editMode;
    applyAppearance();
    updateEffectMask();
    resetCursorRegions();
    if (surface_ != nullptr) {
        const std::string_view shape = title(overlay_.shape);
        surface_->setAccessibleName(
            QStringLiteral("Overlay, %1").arg(QLatin1String(shape.data(), static_cast<qsizetype>(shape.size()))));
    }
    setNeedsDisplay();
}

Rect OverlayContentView::bounds() const {
    const Size size = (surface_ != nullptr ? surface_->frame() : overlay_.frame).extent();
    return {.x = 0, .y = 0, .width = size.width, .height = size.height};
}

Rect OverlayContentView::deleteControlRect() const {
    const Rect bounds = this->bounds();
    return {.x = bounds.minX() + deleteControlMargin,
            .y = bounds.minY() + deleteControlMargin,
            .width = deleteControlSize,
            .height = deleteControlSize};
}

Rect OverlayContentView::resizeHandleRect() const {
    const Rect bounds = this->bounds();
    constexpr double distance = resizeHandleMargin + resizeHandleSize;
    return {.x = bounds.maxX() - distance,
            .y = bounds.maxY() - distance,
            .width = resizeHandleSize,
            .height = resizeHandleSize};
}

bool OverlayContentView::shouldShowResizeHandle() const {
    return isMouseInside_ || dragMode_ == DragMode::resize;
}

QPainterPath OverlayContentView::overlayPath(double inset) const {
    const Rect rect = bounds().inset(inset);
    if (rect.width <= 0 || rect.height <= 0) {
        return {};
    }
    return overlay_.shape == OverlayShape::circle ? ellipse(toQt(rect)) : roundedRectangle(toQt(rect), cornerRadius);
}

OverlayContentView* OverlayContentView::hitTest(const Point& /*locationInView*/) {
    return editMode_ ? this : nullptr;
}

void OverlayContentView::draw(QPainter& painter) {
    // Nothing but the state decides what is drawn, so that an equal state may be taken for an equal drawing.
    const DrawingState state = currentDrawingState();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath path = overlayPath(1);
    painter.fillPath(path, state.tint);
    if (state.showsBorder) {
        painter.strokePath(path, QPen(state.accent, borderWidth));
    }
    if (state.showsControls) {
        drawDeleteControl(painter);
        drawResizeHandle(painter, state.accent, state.windowBackground);
    }
    painter.restore();
}

std::optional<DrawingState> OverlayContentView::drawingState() const {
    return currentDrawingState();
}

DrawingState OverlayContentView::currentDrawingState() const {
    return {.size = bounds().extent(),
            .shape = effectShape(overlay_.shape),
            .tint = overlayColor(overlay_.style.colorHex, OverlayAppearance(overlay_.style).tintAlpha),
            .showsBorder = editMode_,
            .showsControls = editMode_ && shouldShowResizeHandle(),
            .accent = accentColor(),
            .windowBackground = windowBackgroundColor()};
}

void OverlayContentView::mouseEntered() {
    setMouseInside(true);
}

void OverlayContentView::mouseExited() {
    setMouseInside(false);
}

void OverlayContentView::mouseDown(const PointerEvent& event) {
    if (!editMode_ || surface_ == nullptr) {
        return;
    }
    if (deleteControlRect().contains(event.locationInView)) {
        // A copy, because the request may bring an update that replaces the overlay.
        const UUID id = overlay_.id();
        onDeleteRequested_(id);
        return;
    }
    dragStartMouse_ = event.mouseLocation;
    dragStartFrame_ = surface_->frame();
    setDragMode(resizeHandleRect().contains(event.locationInView) ? DragMode::resize : DragMode::move);
}

void OverlayContentView::mouseDragged(const PointerEvent& event) {
    if (!editMode_ || surface_ == nullptr || !dragMode_) {
        return;
    }
    const Point delta{.x = event.mouseLocation.x - dragStartMouse_.x, .y = event.mouseLocation.y - dragStartMouse_.y};
    Rect frame = dragStartFrame_;
    if (dragMode_ == DragMode::resize) {
        frame = OverlayResizePolicy::resizedFrame(dragStartFrame_, delta);
        setNeedsDisplay();
    } else {
        frame.x += delta.x;
        frame.y += delta.y;
    }
    surface_->setFrame(frame);
    resetCursorRegions();
    const UUID id = overlay_.id();
    onFrameChanged_(id, frame);
}

void OverlayContentView::mouseUp() {
    setDragMode(std::nullopt);
}

void OverlayContentView::gestureCancelled() {
    setDragMode(std::nullopt);
}

void OverlayContentView::applyAppearance() {
    const OverlayAppearance appearance(overlay_.style);
    effectLayer_.hidden = !appearance.showsGlassEffect;
    // A stored intensity may lie far above 100.
    effectLayer_.alpha = std::clamp(appearance.effectAlpha, 0.0, 1.0);
    effectLayer_.cover = overlayColor(overlay_.style.colorHex, 1);
}

void OverlayContentView::updateEffectMask() {
    effectLayer_.shape = effectShape(overlay_.shape);
    effectLayer_.cornerRadius = effectLayer_.shape == EffectLayer::Shape::ellipse ? 0 : cornerRadius;
    if (surface_ != nullptr) {
        surface_->setEffectLayer(effectLayer_);
    }
}

void OverlayContentView::resetCursorRegions() {
    if (surface_ == nullptr) {
        return;
    }
    std::vector<CursorRegion> regions;
    if (editMode_ && shouldShowResizeHandle()) {
        // In a small view the two overlap, and a press there deletes: so the delete control comes last.
        regions = {{.rect = resizeHandleRect(), .shape = CursorShape::resizeLeftRight},
                   {.rect = deleteControlRect(), .shape = CursorShape::pointingHand}};
    }
    surface_->setCursorRegions(std::move(regions));
}

void OverlayContentView::setNeedsDisplay() {
    if (surface_ != nullptr) {
        surface_->setNeedsDisplay();
    }
}

void OverlayContentView::setMouseInside(bool inside) {
    isMouseInside_ = inside;
    setNeedsDisplay();
    resetCursorRegions();
}

void OverlayContentView::setDragMode(std::optional<DragMode> dragMode) {
    const bool showedResizeHandle = shouldShowResizeHandle();
    dragMode_ = dragMode;
    // A resize may begin and end with the pointer outside, and nothing else would then take the controls away.
    if (shouldShowResizeHandle() != showedResizeHandle) {
        setNeedsDisplay();
        resetCursorRegions();
    }
}

void OverlayContentView::drawDeleteControl(QPainter& painter) {
    const Rect rect = deleteControlRect();
    deleteControlShadow_.draw(painter, QPointF(rect.minX(), rect.minY()));
    painter.fillPath(ellipse(toQt(rect)), translucent(systemRed));

    QPainterPath cross;
    cross.moveTo(rect.minX() + crossInset, rect.minY() + crossInset);
    cross.lineTo(rect.maxX() - crossInset, rect.maxY() - crossInset);
    cross.moveTo(rect.maxX() - crossInset, rect.minY() + crossInset);
    cross.lineTo(rect.minX() + crossInset, rect.maxY() - crossInset);
    painter.strokePath(cross, QPen(Qt::white, crossWidth, Qt::SolidLine, Qt::RoundCap));
}

void OverlayContentView::drawResizeHandle(QPainter& painter, const QColor& accent, const QColor& background) {
    const Rect rect = resizeHandleRect();
    const QPainterPath outline = roundedRectangle(toQt(rect), resizeHandleCornerRadius);
    resizeHandleShadow_.draw(painter, QPointF(rect.minX(), rect.minY()));
    painter.fillPath(outline, translucent(background));
    painter.strokePath(outline, QPen(accent, borderWidth));

    QPainterPath grip;
    for (const double distance : {8.0, 14.0, 20.0}) {
        grip.moveTo(rect.maxX() - distance, rect.maxY() - gripMargin);
        grip.lineTo(rect.maxX() - gripMargin, rect.maxY() - distance);
    }
    painter.strokePath(grip, QPen(accent, borderWidth, Qt::SolidLine, Qt::RoundCap));
}

}  // namespace pallwick
