#include <PallwickMac/App/AppModel.h>

#include <PallwickMac/Platform/DesktopPlatform.h>
#include <PallwickMac/Services/AppOverlayPanel.h>

#include <QPointer>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <utility>

namespace pallwick {

namespace {

constexpr Rect areaWithoutScreen{.x = 0, .y = 0, .width = 1280, .height = 800};

// As late as a person forgives a cover that follows a window.
constexpr std::chrono::milliseconds windowTrackingInterval{300};

/// A fifth to a third of the area, but never too small to grab or so large that it takes over the screen.
Rect defaultOverlayFrame(const Rect& area) {
    const double width = std::min(360.0, std::max(220.0, area.width * 0.28));
    const double height = std::min(200.0, std::max(120.0, area.height * 0.2));
    return {.x = area.midX() - width / 2, .y = area.midY() - height / 2, .width = width, .height = height};
}

/// Stops the program: a weak reference to the model means nothing on another thread.
void assertThread(const QThread* thread) {
    if (QThread::currentThread() != thread) {
        std::fputs("pallwick: AppModel used off its own thread\n", stderr);
        std::abort();
    }
}

}  // namespace

AppModel::AppModel(DesktopPlatform& platform, const PresetStoreFactory& makePresetStore)
    : platform_(platform), foregroundApplicationService_(platform), windowTrackingService_(platform) {
    try {
        presetStore_ = makePresetStore();
    } catch (const std::exception&) {
        // Covering the screen does not need presets; their commands tell that there are none.
    }
    refreshFromStore(PanelSync::no);
    refreshWindows();
    startWindowTracking();
}

AppModel::~AppModel() {
    if (overlayController_) {
        overlayController_->closeAll();
    }
}

const BlurOverlay* AppModel::selectedOverlay() const {
    if (overlays_.empty()) {
        return nullptr;
    }
    const auto selected = std::ranges::find_if(
        overlays_, [this](const BlurOverlay& overlay) { return overlay.id() == selectedOverlayID_; });
    return selected == overlays_.end() ? &overlays_.front() : &*selected;
}

void AppModel::setSelectedOverlayID(const std::optional<UUID>& id) {
    if (selectedOverlayID_ == id) {
        return;
    }
    selectedOverlayID_ = id;
    Q_EMIT selectedOverlayIDChanged();
}

void AppModel::setSelectedWindowID(std::optional<std::uint32_t> id) {
    if (selectedWindowID_ == id) {
        return;
    }
    selectedWindowID_ = id;
    Q_EMIT selectedWindowIDChanged();
}

void AppModel::addOverlay() {
    const std::vector<Screen> screens = platform_.screens();
    const Rect area = screens.empty() ? areaWithoutScreen : screens.front().visibleFrame;
    const std::uint32_t displayID = screens.empty() ? 0 : screens.front().displayID.value_or(0);

    const BlurOverlay overlay = store_.addOverlay(defaultOverlayFrame(area), displayID);
    setSelectedOverlayID(overlay.id());
    setEditMode(true);
    setStatusText(QStringLiteral("Overlay added"));
    refreshFromStore();
}

void AppModel::removeOverlay(const UUID& id) {
    store_.removeOverlay(id);
    setSelectedOverlayID(store_.overlays().empty() ? std::nullopt : std::optional(store_.overlays().front().id()));
    setStatusText(QStringLiteral("Overlay removed"));
    refreshFromStore();
}

void AppModel::removeSelectedOverlay() {
    if (const BlurOverlay* overlay = selectedOverlay()) {
        removeOverlay(UUID(overlay->id()));
    }
}

void AppModel::clearOverlays() {
    store_.clear();
    setSelectedOverlayID(std::nullopt);
    setStatusText(QStringLiteral("All overlays cleared"));
    refreshFromStore();
}

void AppModel::select(const BlurOverlay& overlay) {
    setSelectedOverlayID(overlay.id());
}

void AppModel::toggleEditMode() {
    setEditMode(!editMode_);
    setStatusText(editMode_ ? QStringLiteral("Edit mode on") : QStringLiteral("Overlays locked; clicks pass through"));
    refreshFromStore();
}

void AppModel::updateSelectedStyle(std::optional<std::int64_t> intensity, const std::optional<std::string>& colorHex,
                                   std::optional<std::int64_t> opacity, std::optional<bool> glassBlur) {
    const BlurOverlay* overlay = selectedOverlay();
    if (!overlay) {
        return;
    }
    const BlurStyle& current = overlay->style;
    store_.updateStyle(overlay->id(),
                       BlurStyle(intensity.value_or(current.intensity), colorHex.value_or(current.colorHex),
                                 opacity.value_or(current.opacity), glassBlur.value_or(current.glassBlur)));
    setStatusText(QStringLiteral("Style updated"));
    refreshFromStore();
}

void AppModel::updateSelectedShape(OverlayShape shape) {
    const BlurOverlay* overlay = selectedOverlay();
    if (!overlay) {
        return;
    }
    store_.updateShape(overlay->id(), shape);
    setStatusText(QStringLiteral("Shape updated"));
    refreshFromStore();
}

void AppModel::refreshWindows() {
    std::vector<TrackedWindow> windows = windowTrackingService_.visibleWindows();
    if (visibleWindows_ != windows) {
        visibleWindows_ = std::move(windows);
        Q_EMIT visibleWindowsChanged();
    }
    if (selectedWindowID_ &&
        std::ranges::find(visibleWindows_, *selectedWindowID_, &TrackedWindow::id) == visibleWindows_.end()) {
        setSelectedWindowID(std::nullopt);
    }
}

void AppModel::attachSelectedOverlayToWindow() {
    const BlurOverlay* overlay = selectedOverlay();
    const auto window = selectedWindowID_ ? std::ranges::find(visibleWindows_, *selectedWindowID_, &TrackedWindow::id)
                                          : visibleWindows_.end();
    if (!overlay || window == visibleWindows_.end()) {
        setStatusText(QStringLiteral("Choose a window first"));
        return;
    }
    store_.attachToWindow(overlay->id(), *window);
    setStatusText(QStringLiteral("Attached to ") + QString::fromStdString(window->displayName()));
    refreshFromStore();
}

void AppModel::detachSelectedOverlayFromWindow() {
    const BlurOverlay* overlay = selectedOverlay();
    if (!overlay) {
        return;
    }
    store_.detachFromWindow(overlay->id());
    setStatusText(QStringLiteral("Window attachment removed"));
    refreshFromStore();
}

void AppModel::startWindowTracking() {
    connect(&windowTrackingTimer_, &QTimer::timeout, this, [this] {
        // In a turn of the event loop of its own, and dropped if the model goes first.
        QMetaObject::invokeMethod(this, &AppModel::updateAttachedOverlays, Qt::QueuedConnection);
    });
    windowTrackingTimer_.start(windowTrackingInterval);
}

void AppModel::updateAttachedOverlays() {
    bool changed = false;
    const std::vector<BlurOverlay> overlays = store_.overlays();
    for (const BlurOverlay& overlay : overlays) {
        if (!overlay.windowAttachment) {
            continue;
        }
        // A window that is not on the screen now may come back; its overlay waits where it is.
        if (const std::optional<TrackedWindow> window =
                windowTrackingService_.window(overlay.windowAttachment->windowID)) {
            store_.updateAttachedOverlayFrame(overlay.id(), window->frame);
            changed = true;
        }
    }
    if (changed) {
        refreshFromStore();
    }
}

void AppModel::refreshFromStore(PanelSync syncPanels) {
    if (overlays_ != store_.overlays()) {
        overlays_ = store_.overlays();
        Q_EMIT overlaysChanged();
    }
    if (!selectedOverlayID_ && !overlays_.empty()) {
        setSelectedOverlayID(overlays_.front().id());
    }
    if (syncPanels == PanelSync::yes) {
        overlayController().sync(overlays_, editMode_, foregroundApplicationService_.currentProcessID());
    }
}

void AppModel::updateFrameFromPanel(const UUID& id, const Rect& frame) {
    store_.updateFrame(id, frame);
    const auto overlay = std::ranges::find(store_.overlays(), id, &BlurOverlay::id);
    if (overlay != store_.overlays().end() && overlay->windowAttachment) {
        // A person moved the overlay relative to its window; from now on it keeps to the new place.
        if (const std::optional<TrackedWindow> window =
                windowTrackingService_.window(overlay->windowAttachment->windowID)) {
            store_.attachToWindow(id, *window);
        }
    }
    // The panel that reports the frame shows it already; telling it again in mid-drag would only cost.
    refreshFromStore(PanelSync::no);
}

OverlayWindowController& AppModel::overlayController() {
    if (!overlayController_) {
        overlayController_ = std::make_unique<OverlayWindowController>(
            [&platform = platform_](const BlurOverlay& overlay, FrameChangedCallback onFrameChanged,
                                    DeleteRequestedCallback onDeleteRequested) {
                return AppOverlayPanel::make(platform, overlay, std::move(onFrameChanged),
                                             std::move(onDeleteRequested));
            },
            // A panel may outlive the model by the rest of the handler it is closed in.
            [model = QPointer<AppModel>(this), thread = thread()](const UUID& id, const Rect& frame) {
                assertThread(thread);
                if (model) {
                    model->updateFrameFromPanel(id, frame);
                }
            },
            [model = QPointer<AppModel>(this), thread = thread()](const UUID& id) {
                assertThread(thread);
                if (model) {
                    model->removeOverlay(id);
                }
            });
    }
    return *overlayController_;
}

void AppModel::setStatusText(const QString& text) {
    if (statusText_ == text) {
        return;
    }
    statusText_ = text;
    Q_EMIT statusTextChanged();
}

void AppModel::setEditMode(bool editMode) {
    if (editMode_ == editMode) {
        return;
    }
    editMode_ = editMode;
    Q_EMIT editModeChanged();
}

}  // namespace pallwick
