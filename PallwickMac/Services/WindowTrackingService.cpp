#include <PallwickMac/Services/WindowTrackingService.h>

#include <PallwickMac/Platform/DesktopPlatform.h>

#include <QCoreApplication>
#include <QString>

#include <algorithm>
#include <string>
#include <utility>

namespace pallwick {

namespace {

// Smaller things are handles, docks and the like, which nobody means to cover.
constexpr double minimumWidth = 80;
constexpr double minimumHeight = 40;

std::int32_t ownProcessID() {
    return static_cast<std::int32_t>(QCoreApplication::applicationPid());
}

/// Bytes of UTF-8 sort as the Unicode scalars they stand for.
std::string sortKey(const std::string& text) {
    return QString::fromStdString(text).normalized(QString::NormalizationForm_C).toStdString();
}

struct SortableWindow {
    std::pair<std::string, std::string> key;
    TrackedWindow window;
};

}  // namespace

std::vector<TrackedWindow> WindowTrackingService::visibleWindows() const {
    const std::optional<std::vector<WindowRecord>> records = platform_->onScreenWindows();
    if (!records) {
        return {};
    }
    std::vector<SortableWindow> sortable;
    for (const WindowRecord& record : *records) {
        if (std::optional<TrackedWindow> window = trackedWindow(record, ownProcessID())) {
            sortable.push_back(
                {.key = {sortKey(window->ownerName), sortKey(window->title)}, .window = std::move(*window)});
        }
    }
    std::ranges::stable_sort(sortable, {}, &SortableWindow::key);
    std::vector<TrackedWindow> windows;
    windows.reserve(sortable.size());
    for (SortableWindow& entry : sortable) {
        windows.push_back(std::move(entry.window));
    }
    return windows;
}

std::optional<TrackedWindow> WindowTrackingService::window(std::uint32_t id) const {
    const std::optional<WindowRecord> record = platform_->onScreenWindow(id);
    return record ? trackedWindow(*record, ownProcessID()) : std::nullopt;
}

std::optional<TrackedWindow> WindowTrackingService::trackedWindow(const WindowRecord& record,
                                                                  std::int32_t excludedProcessID) const {
    if (record.layer != WindowRecord::ordinaryLayer || !record.number || !record.ownerProcessID || !record.bounds) {
        return std::nullopt;
    }
    if (*record.ownerProcessID == excludedProcessID) {
        return std::nullopt;
    }
    const Size size = record.bounds->extent();
    if (!(size.width >= minimumWidth && size.height >= minimumHeight)) {
        return std::nullopt;
    }
    return TrackedWindow{.id = *record.number,
                         .ownerPID = *record.ownerProcessID,
                         .ownerName = record.ownerName.value_or("Unknown"),
                         .title = record.title.value_or(""),
                         .frame = screenFrame(*record.bounds)};
}

Rect WindowTrackingService::screenFrame(const Rect& bounds) const {
    const std::vector<Rect> screens = platform_->screenFrames();
    if (screens.empty()) {
        return bounds;
    }
    double top = screens.front().maxY();
    for (const Rect& screen : screens) {
        top = std::max(top, screen.maxY());
    }
    const Size size = bounds.extent();
    return {.x = bounds.minX(), .y = top - bounds.maxY(), .width = size.width, .height = size.height};
}

}  // namespace pallwick
