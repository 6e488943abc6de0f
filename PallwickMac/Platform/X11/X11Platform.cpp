#include <PallwickMac/Platform/X11/Monitors.h>
#include <PallwickMac/Platform/X11/WindowActivation.h>
#include <PallwickMac/Platform/X11/WorkArea.h>
#include <PallwickMac/Platform/X11/X11OverlaySurface.h>
#include <PallwickMac/Platform/X11/X11Platform.h>
#include <PallwickMac/Platform/X11/X11StatusItem.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <xcb/randr.h>

#include <QAbstractEventDispatcher>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace pallwick::x11 {

namespace {

// The toolkit reads the user's scale from the desktop's settings; ours must be the same, or a panel would not lie where
// the main window says it does.
double toolkitScale() {
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary == nullptr ? 1 : primary->devicePixelRatio();
}

PixelMapping mappingFor(const std::vector<Monitor>& monitors, const PixelRect& root) {
    return {monitors.empty() ? root : monitors.front().frame, toolkitScale()};
}

}  // namespace

X11Platform::X11Platform()
    : compositing_(connection_),
      activeApplication_(connection_, applications_),
      windowList_(connection_, applications_),
      surfaces_(connection_, mappingFor(queryMonitors(connection_), queryRootArea(connection_)),
                queryRootArea(connection_), compositing_.isCompositing()),
      systemTray_(connection_),
      instance_(connection_),
      readable_(xcb_get_file_descriptor(connection_.xcb()), QSocketNotifier::Read) {
    xcb_randr_select_input(connection_.xcb(), connection_.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE | XCB_RANDR_NOTIFY_MASK_RESOURCE_CHANGE);
    connection_.flush();
    knownScreens_ = screens();
    static_cast<void>(activeApplication_.processID());

    connect(&readable_, &QSocketNotifier::activated, this, &X11Platform::dispatchEvents);
    // A wait for a reply reads events into the library's queue, from where the socket tells of them no more.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &X11Platform::dispatchEvents);
    watchToolkitScreens();
    qApp->installEventFilter(this);
}

X11Platform::~X11Platform() = default;

void X11Platform::watchToolkitScreens() {
    // The toolkit learns of a change on a connection of its own, sooner or later than we do.
    const auto watch = [this](QScreen* screen) {
        connect(screen, &QScreen::geometryChanged, this, &X11Platform::updateScreens);
        connect(screen, &QScreen::logicalDotsPerInchChanged, this, &X11Platform::updateScreens);
    };
    for (QScreen* screen : QGuiApplication::screens()) {
        watch(screen);
    }
    connect(qApp, &QGuiApplication::screenAdded, this, [this, watch](QScreen* screen) {
        watch(screen);
        updateScreens();
    });
    connect(qApp, &QGuiApplication::screenRemoved, this, &X11Platform::updateScreens);
    connect(qApp, &QGuiApplication::primaryScreenChanged, this, &X11Platform::updateScreens);
}

std::vector<Screen> X11Platform::screens() const {
    const PixelRect root = queryRootArea(connection_);
    const std::vector<Monitor> monitors = queryMonitors(connection_);
    const std::vector<Strut> struts = queryStruts(connection_, root);
    const PixelMapping mapping = mappingFor(monitors, root);
    std::vector<Screen> screens;
    screens.reserve(monitors.size());
    for (const Monitor& monitor : monitors) {
        screens.push_back({.frame = mapping.points(monitor.frame),
                           .visibleFrame = mapping.points(workArea(monitor.frame, root, struts)),
                           .scale = mapping.scale(),
                           .displayID = monitor.displayNumber,
                           .name = monitor.name});
    }
    return screens;
}

std::vector<Rect> X11Platform::screenFrames() const {
    std::vector<Rect> frames;
    frames.reserve(knownScreens_.size());
    for (const Screen& screen : knownScreens_) {
        frames.push_back(screen.frame);
    }
    return frames;
}

std::optional<std::vector<WindowRecord>> X11Platform::onScreenWindows() const {
    return windowList_.onScreen(windowPlacement());
}

std::optional<WindowRecord> X11Platform::onScreenWindow(std::uint32_t number) const {
    return windowList_.onScreen(number, windowPlacement());
}

WindowPlacement X11Platform::windowPlacement() const {
    WindowPlacement placement{.mapping = surfaces_.mapping()};
    const std::vector<Rect> frames = screenFrames();
    if (!frames.empty()) {
        placement.top = std::ranges::max(frames, {}, &Rect::maxY).maxY();
    }
    return placement;
}

std::optional<std::int32_t> X11Platform::frontmostProcessID() const {
    return activeApplication_.processID();
}

std::optional<std::string> X11Platform::frontmostBundleID() const {
    return activeApplication_.bundleID();
}

Point X11Platform::pointerLocation() const {
    const auto reply = own(
        xcb_query_pointer_reply(connection_.xcb(), xcb_query_pointer(connection_.xcb(), connection_.root()), nullptr));
    return reply ? surfaces_.mapping().point({.x = reply->root_x, .y = reply->root_y}) : Point();
}

PlatformCapabilities X11Platform::capabilities() const {
    return {.compositing = compositing_.isCompositing(), .clickThrough = true};
}

std::unique_ptr<OverlaySurface> X11Platform::makeOverlaySurface(OverlaySurfaceContent& content) {
    return std::make_unique<X11OverlaySurface>(surfaces_, content);
}

std::unique_ptr<StatusItem> X11Platform::makeStatusItem(const StatusItemDescription& description) {
    return std::make_unique<X11StatusItem>(systemTray_, description);
}

bool X11Platform::claimInstance(const ActivationToken& token) {
    return instance_.claim(token);
}

void X11Platform::activate(QWindow& window, const ActivationToken& token) {
    activateWindow(connection_, window, token.time);
}

bool X11Platform::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
        surfaces_.redrawAll();
    }
    return false;
}

void X11Platform::dispatchEvents() {
    // A handler may run an event loop of its own; its events keep their order.
    if (std::exchange(dispatching_, true)) {
        return;
    }
    // Only what is there by now: a program that changes things faster than we can ask about them would keep us here.
    std::vector<Reply<xcb_generic_event_t>> events;
    for (auto event = own(xcb_poll_for_event(connection_.xcb())); event;
         event = own(xcb_poll_for_queued_event(connection_.xcb()))) {
        events.push_back(std::move(event));
    }
    for (const auto& event : events) {
        handle(*event);
    }
    surfaces_.deliverMotion();
    activeApplication_.refresh();
    if (std::exchange(screensMayHaveChanged_, false)) {
        updateScreens();
    }
    connection_.flush();
    dispatching_ = false;
    if (!events.empty()) {
        // Answers to the handlers' questions may have brought more.
        QMetaObject::invokeMethod(this, &X11Platform::dispatchEvents, Qt::QueuedConnection);
    }
    if (connection_.isBroken() && std::exchange(connected_, false)) {
        readable_.setEnabled(false);
        Q_EMIT disconnected(QStringLiteral("the connection to the X server was lost"));
    }
}

void X11Platform::handle(const xcb_generic_event_t& event) {
    const int type = event.response_type & 0x7F;
    // An error answers a request about a window that has just gone; there is nothing left to do for it.
    if (type == 0) {
        return;
    }
    instance_.handle(event, [this](const ActivationToken& token) { Q_EMIT activationRequested(token); });
    systemTray_.handle(event);
    if (compositing_.handle(event)) {
        surfaces_.setCompositing(compositing_.isCompositing());
        return;
    }
    if (type == connection_.randrFirstEvent() + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
        type == connection_.randrFirstEvent() + XCB_RANDR_NOTIFY) {
        screensMayHaveChanged_ = true;
        return;
    }
    // Monitors that a person sets up or takes away are announced by this alone.
    if (type == XCB_CONFIGURE_NOTIFY &&
        reinterpret_cast<const xcb_configure_notify_event_t&>(event).window == connection_.root()) {
        screensMayHaveChanged_ = true;
        return;
    }
    if (type == XCB_PROPERTY_NOTIFY) {
        activeApplication_.handle(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    }
    surfaces_.handle(event);
}

void X11Platform::updateScreens() {
    const PixelRect root = queryRootArea(connection_);
    const PixelMapping mapping = mappingFor(queryMonitors(connection_), root);
    if (mapping != surfaces_.mapping() || root != surfaces_.rootArea()) {
        surfaces_.setScreens(mapping, root);
    }
    std::vector<Screen> now = screens();
    if (now != knownScreens_) {
        knownScreens_ = std::move(now);
        Q_EMIT screensChanged();
    }
}

}  // namespace pallwick::x11
