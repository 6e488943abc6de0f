#include <PallwickMac/Platform/X11/ShapeRows.h>
#include <PallwickMac/Platform/X11/SurfaceAccessibility.h>
#include <PallwickMac/Platform/X11/X11OverlaySurface.h>

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>
#include <utility>

namespace pallwick::x11 {

namespace {

constexpr xcb_button_t leftButton = 1;

// Points. Text of up to this height cannot be read through the blur at a glance.
constexpr double blurSigma = 20;

// A window covers its whole frame up to this many times the screens' area. A larger picture costs memory that no
// screen can show; then the window covers the part of the frame that the screens can show, and a margin.
constexpr int maxAreaFactor = 4;
constexpr int hugeFrameMargin = 64;

// Where a frame that cannot be seen at all is kept: one pixel, off the screens.
constexpr PixelRect nowhere{.x = -256, .y = -256, .width = 1, .height = 1};

QPainterPath outline(const EffectLayer& layer, const QRectF& bounds) {
    QPainterPath path;
    if (layer.shape == EffectLayer::Shape::ellipse) {
        path.addEllipse(bounds);
    } else {
        path.addRoundedRect(bounds, layer.cornerRadius, layer.cornerRadius);
    }
    return path;
}

QColor opaque(QColor color) {
    color.setAlpha(255);
    return color;
}

}  // namespace

X11OverlaySurface::X11OverlaySurface(SurfaceHost& host, OverlaySurfaceContent& content)
    : host_(host),
      content_(content),
      window_(host.windowPool().take()),
      glass_(host.connection(), host.windowLayers(), host.backdropCapture()) {
    host_.add(*this);
}

X11OverlaySurface::~X11OverlaySurface() {
    hide();
    host_.remove(*this);
    host_.windowPool().giveBack(std::move(window_));
}

void X11OverlaySurface::setFrame(const Rect& frame) {
    if (frame == frame_) {
        return;
    }
    frame_ = frame;
    if (visible_) {
        display(placement());
        host_.connection().flush();
    }
}

void X11OverlaySurface::show() {
    if (visible_) {
        host_.stackGuard().bringToFront(window());
        host_.scheduleCommit();
        return;
    }
    visible_ = true;
    const Placement place = placement();
    // Complete before it is seen: sized, drawn and cut out where it is parked, then moved in and stacked at once.
    window_->park(place.area.width, place.area.height);
    needsDisplay_ = true;
    const std::optional<xcb_window_t> below = host_.stackGuard().windowBelowNextPanel();
    display(place, below);
    host_.stackGuard().add(window());
    host_.connection().flush();
}

void X11OverlaySurface::hide() {
    if (!visible_) {
        return;
    }
    visible_ = false;
    dropFormerWindow();
    host_.stackGuard().remove(window());
    window_->park(window_->area().width, window_->area().height);
    // A hidden panel keeps no picture of other programs; it gets a new one before it is shown again.
    forgetBackdrop();
    window_->dropPicture();
    hasPicture_ = false;
    host_.updateBackdropTracking();
    host_.connection().flush();
    forgetGesture();
}

void X11OverlaySurface::setIgnoresMouseEvents(bool ignores) {
    if (ignores == ignoresMouse_) {
        return;
    }
    ignoresMouse_ = ignores;
    window_->setTakesMouse(!ignores);
    if (visible_) {
        updateShape(placement());
    }
    setNeedsDisplay();
    host_.connection().flush();
    if (ignores) {
        forgetGesture();
    }
}

void X11OverlaySurface::setCursorRegions(std::vector<CursorRegion> regions) {
    if (regions != cursorRegions_) {
        cursorRegions_ = std::move(regions);
        updateCursor();
    }
}

void X11OverlaySurface::setEffectLayer(const EffectLayer& layer) {
    if (layer != effectLayer_) {
        effectLayer_ = layer;
        if (visible_) {
            updateShape(placement());
        }
        setNeedsDisplay();
    }
}

void X11OverlaySurface::setNeedsDisplay() {
    needsDisplay_ = true;
    if (visible_) {
        host_.scheduleCommit();
    }
}

void X11OverlaySurface::setAccessibleName(const QString& name) {
    if (!accessibility_) {
        accessibility_ = std::make_unique<SurfaceAccessibility>(*this);
    }
    accessibility_->setName(name);
}

void X11OverlaySurface::displayIfNeeded() {
    if (visible_ && needsDisplay_) {
        display(placement());
        host_.connection().flush();
    }
}

void X11OverlaySurface::placeAnew() {
    if (visible_) {
        needsDisplay_ = true;
        backdropOutdated_ = true;
        display(placement());
        host_.connection().flush();
    }
}

bool X11OverlaySurface::noteChangeBeneath(xcb_window_t window, const PixelRect& area) {
    if (!needsBackdrop() || !glass_.noteChange(window, area)) {
        return false;
    }
    backdropOutdated_ = true;
    return true;
}

bool X11OverlaySurface::updateBackdrop() {
    if (!needsBackdrop() || (!backdropOutdated_ && capturedFor_ && !glass_.isOutdated())) {
        return false;
    }
    backdropOutdated_ = true;
    display(placement());
    return true;
}

void X11OverlaySurface::forgetBackdrop() {
    capturedFor_.reset();
    glass_.forget();
}

void X11OverlaySurface::renewWindow() {
    // The pointer's grab during a gesture belongs to the old window.
    forgetGesture();
    dropFormerWindow();
    std::unique_ptr<SurfaceWindow> former = std::exchange(window_, host_.windowPool().take());
    window_->setTakesMouse(!ignoresMouse_);
    hasPicture_ = false;
    if (!visible_) {
        return;
    }
    formerWindow_ = std::move(former);
    formerWindow_->setTakesMouse(false);
    host_.windowLayers().leaveOut(formerWindow_->id());
    const Placement place = placement();
    window_->park(place.area.width, place.area.height);
    window_->stackBelow(formerWindow_->id());
    host_.stackGuard().replace(formerWindow_->id(), window());
    display(place);
    host_.connection().flush();
}

void X11OverlaySurface::dropFormerWindow() {
    if (formerWindow_) {
        // Off the screen first: a compositing manager may fade a window out where it was destroyed.
        formerWindow_->park(formerWindow_->area().width, formerWindow_->area().height);
        formerWindow_.reset();
    }
}

X11OverlaySurface::Placement X11OverlaySurface::placement() const {
    const PixelRect root = host_.rootArea();
    PixelRect area = host_.mapping().pixels(frame_);
    const auto pixelCount = [](const PixelRect& rect) { return static_cast<std::int64_t>(rect.width) * rect.height; };
    if (!SurfaceWindow::isPlaceable(area) || pixelCount(area) > maxAreaFactor * pixelCount(root)) {
        area = area.intersected({.x = root.x - hugeFrameMargin,
                                 .y = root.y - hugeFrameMargin,
                                 .width = root.width + 2 * hugeFrameMargin,
                                 .height = root.height + 2 * hugeFrameMargin});
        if (area.isEmpty()) {
            area = nowhere;
        }
    }
    const Point topLeft = host_.mapping().exactTopLeft(frame_);
    return {.area = area, .origin = {.x = topLeft.x - area.x, .y = topLeft.y - area.y}};
}

Rect X11OverlaySurface::boundsInWindow(const Placement& placement) const {
    const Size extent = frame_.extent();
    const double scale = host_.mapping().scale();
    return {.x = placement.origin.x,
            .y = placement.origin.y,
            .width = extent.width * scale,
            .height = extent.height * scale};
}

void X11OverlaySurface::display(const Placement& place, std::optional<xcb_window_t> below) {
    host_.updateBackdropTracking();
    if (!needsBackdrop()) {
        // Nobody tells of changes from now on, so that it would be out of date when it is needed again.
        forgetBackdrop();
    }
    Picture picture{.drawing = content_.drawingState(),
                    .layer = effectLayer_,
                    .origin = place.origin,
                    .width = place.area.width,
                    .height = place.area.height,
                    .scale = host_.mapping().scale(),
                    .cover = shown_ ? shown_->cover : Picture::Cover::none};
    bool drawsAnew = picture != shown_ || (needsDisplay_ && !picture.drawing);
    const Glass::Request request = captureRequest(place.area);
    const bool needsCapture = needsBackdrop() && (backdropOutdated_ || capturedFor_ != request || below ||
                                                  (drawsAnew && glass_.hasHiddenChanges()));
    if (needsCapture) {
        backdropOutdated_ = false;
        Glass::Request now = request;
        now.topmost = below;
        capturedFor_ = glass_.capture(now) ? std::optional(request) : std::nullopt;
    }
    const bool captured = needsBackdrop() && capturedFor_;
    bool changed = needsCapture || !hasPicture_ || captured != showsCapture_;

    picture.cover = coverAfter(captured);
    drawsAnew = drawsAnew || picture != shown_;
    if (drawsAnew) {
        glass_.setDrawing(render(picture));
        shown_ = std::move(picture);
        changed = true;
    }
    needsDisplay_ = false;
    if (captured && showsEffect()) {
        const Mask mask{.layer = effectLayer_,
                        .origin = place.origin,
                        .width = place.area.width,
                        .height = place.area.height,
                        .scale = host_.mapping().scale()};
        if (mask != mask_) {
            glass_.setMask(renderMask(mask));
            mask_ = mask;
            changed = true;
        }
    }
    if (changed) {
        const xcb_pixmap_t shown = captured ? glass_.compose() : glass_.drawing();
        window_->setPicture(shown);
        if (formerWindow_) {
            formerWindow_->setPicture(shown);
        }
        hasPicture_ = true;
        showsCapture_ = captured;
    }
    updateShape(place);
    window_->place(place.area, below);
    if (formerWindow_) {
        formerWindow_->place(place.area);
    }
    if (changed) {
        host_.panelChanged(*this, place.area);
    }
}

X11OverlaySurface::Picture::Cover X11OverlaySurface::coverAfter(bool captured) const {
    if (captured || !needsBackdrop()) {
        return Picture::Cover::none;
    }
    // Without a compositing manager a clear pixel is black, and what should show through it would have to be ours.
    return host_.isCompositing() ? Picture::Cover::shape : Picture::Cover::everything;
}

Glass::Request X11OverlaySurface::captureRequest(const PixelRect& area) const {
    Glass::Request request{.panel = window(),
                           .area = area,
                           .root = host_.rootArea(),
                           .sigma = std::nullopt,
                           .material = {},
                           .sharp = !host_.isCompositing(),
                           .topmost = std::nullopt};
    if (showsEffect()) {
        const QColor background = QGuiApplication::palette().color(QPalette::Active, QPalette::Window);
        request.sigma = blurSigma * host_.mapping().scale();
        request.material = backdrop::materialFor(background.lightness() < 128);
    }
    return request;
}

QImage X11OverlaySurface::render(const Picture& picture) const {
    QImage image(picture.width, picture.height, QImage::Format_ARGB32_Premultiplied);
    const QColor cover = opaque(picture.layer.cover);
    image.fill(picture.cover == Picture::Cover::everything ? cover : QColor(Qt::transparent));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(picture.origin.x, picture.origin.y);
    painter.scale(picture.scale, picture.scale);
    if (picture.cover == Picture::Cover::shape) {
        const Size size = frame_.extent();
        painter.fillPath(outline(picture.layer, {0, 0, size.width, size.height}), cover);
    }
    content_.draw(painter);
    return image;
}

QImage X11OverlaySurface::renderMask(const Mask& mask) const {
    QImage image(mask.width, mask.height, QImage::Format_Alpha8);
    image.fill(0);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(mask.origin.x, mask.origin.y);
    painter.scale(mask.scale, mask.scale);
    const Size size = frame_.extent();
    QColor coverage(Qt::black);
    coverage.setAlphaF(static_cast<float>(mask.layer.alpha));
    painter.fillPath(outline(mask.layer, {0, 0, size.width, size.height}), coverage);
    return image;
}

void X11OverlaySurface::updateShape(const Placement& place) {
    // In edit mode controls lie outside an ellipse, and every point of the frame takes the mouse.
    std::optional<std::vector<PixelRect>> rows;
    if (!host_.isCompositing() && ignoresMouse_) {
        rows = shapeRows(effectLayer_.shape, boundsInWindow(place), effectLayer_.cornerRadius * host_.mapping().scale(),
                         {.x = 0, .y = 0, .width = place.area.width, .height = place.area.height});
    }
    if (formerWindow_) {
        formerWindow_->setBoundingShape(rows);
    }
    window_->setBoundingShape(std::move(rows));
}

void X11OverlaySurface::updateCursor() {
    // During a drag the pointer keeps the shape with which it began.
    if (!pointer_ || pressed_) {
        return;
    }
    CursorShape shape = CursorShape::arrow;
    for (const CursorRegion& region : cursorRegions_) {
        if (region.rect.contains(*pointer_)) {
            shape = region.shape;
        }
    }
    window_->setCursor(host_.cursors().cursor(shape));
    host_.connection().flush();
}

void X11OverlaySurface::forgetGesture() {
    if (std::exchange(pressed_, false)) {
        content_.gestureCancelled();
    }
}

Point X11OverlaySurface::locationInView(int eventX, int eventY) const {
    const Placement place = placement();
    const double scale = host_.mapping().scale();
    return {.x = (eventX - place.origin.x) / scale, .y = (eventY - place.origin.y) / scale};
}

void X11OverlaySurface::handlePress(const xcb_button_press_event_t& event) {
    if (event.detail != leftButton || !visible_ || ignoresMouse_) {
        return;
    }
    pressed_ = true;
    pointer_ = locationInView(event.event_x, event.event_y);
    content_.mouseDown(
        {.locationInView = *pointer_, .mouseLocation = host_.mapping().point({.x = event.root_x, .y = event.root_y})});
}

void X11OverlaySurface::handleRelease(const xcb_button_release_event_t& event) {
    if (event.detail != leftButton || !std::exchange(pressed_, false)) {
        return;
    }
    pointer_ = locationInView(event.event_x, event.event_y);
    content_.mouseUp();
    updateCursor();
}

void X11OverlaySurface::handleMotion(const xcb_motion_notify_event_t& event) {
    pointer_ = locationInView(event.event_x, event.event_y);
    if (pressed_) {
        content_.mouseDragged({.locationInView = *pointer_,
                               .mouseLocation = host_.mapping().point({.x = event.root_x, .y = event.root_y})});
    } else {
        updateCursor();
    }
}

void X11OverlaySurface::handleCrossing(const xcb_enter_notify_event_t& event) {
    // A grab reports crossings although the pointer has not moved.
    if (event.mode != XCB_NOTIFY_MODE_NORMAL) {
        return;
    }
    if ((event.response_type & 0x7FU) == XCB_ENTER_NOTIFY) {
        pointer_ = locationInView(event.event_x, event.event_y);
        content_.mouseEntered();
        updateCursor();
    } else {
        pointer_.reset();
        content_.mouseExited();
    }
}

}  // namespace pallwick::x11
