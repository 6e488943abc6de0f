#include <PallwickMac/Platform/X11/SurfaceHost.h>
#include <PallwickMac/Platform/X11/X11OverlaySurface.h>

#include <algorithm>
#include <utility>

namespace pallwick::x11 {

namespace {

// One frame at 60 Hz.
constexpr std::chrono::milliseconds shortestFrame{16};

// What is painted for longer than that without a pause, a film or a log, is followed within a budget.
constexpr int framesOfABurst = 15;

// Nobody sees the colours of a rim a pixel wide change later than that.
constexpr std::chrono::milliseconds rimFrame{100};

// The stack guard needs a few round trips.
constexpr std::chrono::milliseconds stackingTime{3};

// Compositing managers fade windows in within some tenths of a second.
constexpr std::chrono::milliseconds longestFade{2000};

}  // namespace

SurfaceHost::SurfaceHost(const Connection& connection, const PixelMapping& mapping, const PixelRect& rootArea,
                         bool compositing)
    : connection_(connection),
      mapping_(mapping),
      rootArea_(rootArea),
      compositing_(compositing),
      stackGuard_(connection),
      windowPool_(connection),
      cursors_(connection),
      windowLayers_(connection),
      backdropCapture_(connection, windowLayers_),
      frameInterval_(shortestFrame),
      paintRate_(frameBudget_.interval(), framesOfABurst) {
    // A connection has one mask for each window: children for the layers, the root's own shape and properties for the
    // platform.
    const std::uint32_t mask =
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection.xcb(), connection.root(), XCB_CW_EVENT_MASK, &mask);
    windowLayers_.setCompositing(compositing);
    trustCompositingLater_.setSingleShot(true);
    connect(&trustCompositingLater_, &QTimer::timeout, this, [this] { trustCompositing(true); });
    nextFrame_.setSingleShot(true);
    nextFrame_.setTimerType(Qt::PreciseTimer);
    connect(&nextFrame_, &QTimer::timeout, this, &SurfaceHost::renderFrame);
}

void SurfaceHost::add(X11OverlaySurface& surface) {
    surfaces_.push_back(&surface);
}

void SurfaceHost::remove(X11OverlaySurface& surface) {
    std::erase(surfaces_, &surface);
}

void SurfaceHost::scheduleCommit() {
    if (!std::exchange(commitScheduled_, true)) {
        QMetaObject::invokeMethod(
            this, [this] { commit(); }, Qt::QueuedConnection);
    }
}

void SurfaceHost::commit() {
    commitScheduled_ = false;
    for (X11OverlaySurface* surface : surfaces_) {
        surface->displayIfNeeded();
    }
    stackGuard_.commitOrder();
}

void SurfaceHost::setScreens(const PixelMapping& mapping, const PixelRect& rootArea) {
    mapping_ = mapping;
    rootArea_ = rootArea;
    windowLayers_.forgetGround();
    for (X11OverlaySurface* surface : surfaces_) {
        surface->placeAnew();
    }
}

void SurfaceHost::setCompositing(bool compositing) {
    trustCompositingLater_.stop();
    if (compositing_ || !compositing) {
        trustCompositing(false);
    }
    if (!compositing) {
        return;
    }
    // A compositing manager that starts again on the same screen may never draw windows that were there before: what
    // they cover would lie open (xfwm4 does so). Windows that are new to it are drawn by every one, though maybe faded
    // in. So for a while both are shown, and whichever are drawn, the picture is the same: as opaque as before.
    windowPool_.renew();
    for (X11OverlaySurface* surface : surfaces_) {
        surface->renewWindow();
    }
    trustCompositingLater_.start(longestFade);
}

void SurfaceHost::trustCompositing(bool trusted) {
    compositing_ = trusted;
    windowLayers_.setCompositing(trusted);
    for (X11OverlaySurface* surface : surfaces_) {
        surface->dropFormerWindow();
        surface->placeAnew();
    }
}

void SurfaceHost::redrawAll() {
    for (X11OverlaySurface* surface : surfaces_) {
        surface->setNeedsDisplay();
    }
}

void SurfaceHost::updateBackdropTracking() {
    const bool needed =
        std::ranges::any_of(surfaces_, [](const X11OverlaySurface* surface) { return surface->needsBackdrop(); });
    windowLayers_.setActive(needed);
    if (!needed) {
        nextFrame_.stop();
        damagedWindows_.clear();
    }
}

void SurfaceHost::panelChanged(const X11OverlaySurface& panel, const PixelRect& area) {
    for (X11OverlaySurface* surface : surfaces_) {
        // A panel above one that is being rendered has its turn in the same frame.
        if (surface != &panel && surface->noteChangeBeneath(panel.window(), area) && !isRendering_) {
            requestFrame(lastFrameAt_ + frameInterval_);
        }
    }
}

void SurfaceHost::handleBackdropChange(const xcb_generic_event_t& event) {
    const WindowLayers::Change change = windowLayers_.handle(event);
    if (change.structure) {
        // A raised window is above the panels for a moment: a picture of what lies beneath would be the wrong one, and
        // making it would keep the server from serving the stack guard.
        stackedAt_ = Clock::now() + stackingTime;
        requestFrame(lastFrameAt_ + frameInterval_);
    }
    if (change.damaged == XCB_WINDOW_NONE) {
        return;
    }
    for (X11OverlaySurface* surface : surfaces_) {
        if (surface->noteChangeBeneath(change.damaged, change.area)) {
            damagedWindows_.push_back(change.damaged);
            requestFrame(dueForPaint(*surface));
        }
    }
}

SurfaceHost::Clock::time_point SurfaceHost::dueForPaint(const X11OverlaySurface& surface) const {
    const Clock::time_point now = Clock::now();
    const Clock::duration interval =
        surface.showsOnlyItsRim() ? std::max<Clock::duration>(rimFrame, frameInterval_) : frameInterval_;
    return std::max(lastFrameAt_ + interval, now + paintRate_.wait(now));
}

void SurfaceHost::requestFrame(Clock::time_point due) {
    // The first change after a pause is answered as soon as the events at hand are read.
    const Clock::time_point now = Clock::now();
    const Clock::time_point at = std::max({due, stackedAt_, now});
    if (!nextFrame_.isActive() || at < nextFrameAt_) {
        nextFrameAt_ = at;
        nextFrame_.start(std::chrono::ceil<std::chrono::milliseconds>(at - now));
    }
}

void SurfaceHost::renderFrame() {
    lastFrameAt_ = Clock::now();
    // What it takes to ask which windows there are is no part of a picture's cost.
    static_cast<void>(windowLayers_.layers());
    const Clock::time_point begun = Clock::now();
    const bool isPainted = !damagedWindows_.empty();
    // Acknowledged before it is captured: what changes from now on is told again.
    for (const xcb_window_t window : std::exchange(damagedWindows_, {})) {
        windowLayers_.acknowledgeDamage(window);
    }
    isRendering_ = true;
    bool isDrawn = false;
    // From the bottom up, so that a panel shows the new picture of the panels beneath it in the same frame.
    for (const xcb_window_t window : stackGuard_.panels()) {
        if (X11OverlaySurface* surface = surfaceOf(window)) {
            isDrawn = surface->updateBackdrop() || isDrawn;
        }
    }
    isRendering_ = false;
    if (isDrawn) {
        // Most of the cost is the server's.
        connection_.sync();
    } else {
        connection_.flush();
    }
    const Clock::time_point end = Clock::now();
    if (isDrawn) {
        if (isPainted) {
            paintRate_.spend(begun);
        }
        frameBudget_.note(end - begun);
        paintRate_.setInterval(frameBudget_.interval(), end);
    }
    // Many panels over a film may take longer than a frame; half of the time is left for everything else.
    frameInterval_ = std::max<Clock::duration>(shortestFrame, 2 * (end - lastFrameAt_));
    // Where somebody else has restacked the panels, one may have had its turn before one that lies beneath it now.
    if (std::ranges::any_of(surfaces_, &X11OverlaySurface::isBackdropOutdated)) {
        requestFrame(lastFrameAt_ + frameInterval_);
    }
}

X11OverlaySurface* SurfaceHost::surfaceOf(xcb_window_t window) const {
    const auto surface = std::ranges::find_if(
        surfaces_, [window](const X11OverlaySurface* candidate) { return candidate->window() == window; });
    return surface == surfaces_.end() ? nullptr : *surface;
}

X11OverlaySurface* SurfaceHost::surfaceThen(xcb_window_t window, std::uint32_t sequence) const {
    X11OverlaySurface* surface = surfaceOf(window);
    // Native windows go from one overlay to the next, and a click on the one must not act on the other. Sequence
    // numbers wrap around; their difference does not mind.
    return surface != nullptr && static_cast<std::int32_t>(sequence - surface->shownAt()) < 0 ? nullptr : surface;
}

void SurfaceHost::handle(const xcb_generic_event_t& event) {
    handleBackdropChange(event);
    const int type = event.response_type & 0x7F;
    if (type == XCB_MOTION_NOTIFY) {
        const auto& motion = reinterpret_cast<const xcb_motion_notify_event_t&>(event);
        if (motion_ && motion_->event != motion.event) {
            deliverMotion();
        }
        motion_ = motion;
        motionSequence_ = event.full_sequence;
        return;
    }
    // The place of a button or a crossing counts from the motions before it.
    deliverMotion();
    switch (type) {
        case XCB_BUTTON_PRESS: {
            const auto& press = reinterpret_cast<const xcb_button_press_event_t&>(event);
            if (X11OverlaySurface* surface = surfaceThen(press.event, event.full_sequence)) {
                surface->handlePress(press);
            }
            break;
        }
        case XCB_BUTTON_RELEASE: {
            const auto& release = reinterpret_cast<const xcb_button_release_event_t&>(event);
            if (X11OverlaySurface* surface = surfaceThen(release.event, event.full_sequence)) {
                surface->handleRelease(release);
            }
            break;
        }
        case XCB_ENTER_NOTIFY:
        case XCB_LEAVE_NOTIFY: {
            const auto& crossing = reinterpret_cast<const xcb_enter_notify_event_t&>(event);
            if (X11OverlaySurface* surface = surfaceThen(crossing.event, event.full_sequence)) {
                surface->handleCrossing(crossing);
            }
            break;
        }
        default:
            break;
    }
}

void SurfaceHost::deliverMotion() {
    if (const auto motion = std::exchange(motion_, std::nullopt)) {
        if (X11OverlaySurface* surface = surfaceThen(motion->event, motionSequence_)) {
            surface->handleMotion(*motion);
        }
    }
}

}  // namespace pallwick::x11
