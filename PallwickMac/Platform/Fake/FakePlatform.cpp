#include <PallwickMac/Platform/Fake/FakePlatform.h>

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <utility>

namespace pallwick {

namespace {

std::string text(const Rect& rect) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << '(' << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << ')';
    return stream.str();
}

int pixels(double points, double scale) {
    return std::max(1, static_cast<int>(std::ceil(points * scale)));
}

}  // namespace

FakeOverlaySurface::FakeOverlaySurface(FakePlatform& platform, OverlaySurfaceContent& content)
    : platform_(&platform), content_(content), number_(++platform.surfacesMade_) {
    platform_->surfaces_.push_back(this);
}

FakeOverlaySurface::~FakeOverlaySurface() {
    std::erase(platform_->surfaces_, this);
}

void FakeOverlaySurface::setFrame(const Rect& frame) {
    record("setFrame", text(frame));
    frame_ = frame;
}

void FakeOverlaySurface::show() {
    record("show");
    visible_ = true;
}

void FakeOverlaySurface::hide() {
    record("hide");
    visible_ = false;
    cancelGesture();
}

void FakeOverlaySurface::setIgnoresMouseEvents(bool ignores) {
    record("setIgnoresMouseEvents", ignores ? "true" : "false");
    ignoresMouseEvents_ = ignores;
    if (ignores) {
        cancelGesture();
    }
}

void FakeOverlaySurface::setCursorRegions(std::vector<CursorRegion> regions) {
    record("setCursorRegions", std::to_string(regions.size()));
    cursorRegions_ = std::move(regions);
}

void FakeOverlaySurface::setEffectLayer(const EffectLayer& layer) {
    record("setEffectLayer");
    effectLayer_ = layer;
}

void FakeOverlaySurface::setNeedsDisplay() {
    record("setNeedsDisplay");
    ++displayRequests_;
}

void FakeOverlaySurface::setAccessibleName(const QString& name) {
    record("setAccessibleName", name.toStdString());
    accessibleName_ = name;
}

void FakeOverlaySurface::enter() {
    if (takesMouse()) {
        content_.mouseEntered();
    }
}

void FakeOverlaySurface::leave() {
    content_.mouseExited();
}

void FakeOverlaySurface::press(const Point& locationInView) {
    if (!takesMouse()) {
        return;
    }
    pressedAt_ = Point{.x = frame_.minX() + locationInView.x, .y = frame_.maxY() - locationInView.y};
    platform_->pointerLocation_ = *pressedAt_;
    content_.mouseDown({.locationInView = locationInView, .mouseLocation = *pressedAt_});
}

void FakeOverlaySurface::dragTo(const Point& delta) {
    if (!pressedAt_) {
        return;
    }
    platform_->pointerLocation_ = {.x = pressedAt_->x + delta.x, .y = pressedAt_->y + delta.y};
    content_.mouseDragged(pointerEvent(platform_->pointerLocation_));
}

void FakeOverlaySurface::release() {
    if (std::exchange(pressedAt_, std::nullopt)) {
        content_.mouseUp();
    }
}

QImage FakeOverlaySurface::render(double scale) const {
    const Size size = frame_.extent();
    QImage image(pixels(size.width, scale), pixels(size.height, scale), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(scale, scale);
    content_.draw(painter);
    return image;
}

void FakeOverlaySurface::record(const std::string& call, const std::string& argument) const {
    const std::string line = call + ' ' + std::to_string(number_);
    platform_->calls_.push_back(argument.empty() ? line : line + ' ' + argument);
}

PointerEvent FakeOverlaySurface::pointerEvent(const Point& mouseLocation) const {
    return {.locationInView = {.x = mouseLocation.x - frame_.minX(), .y = frame_.maxY() - mouseLocation.y},
            .mouseLocation = mouseLocation};
}

void FakeOverlaySurface::cancelGesture() {
    if (std::exchange(pressedAt_, std::nullopt)) {
        content_.gestureCancelled();
    }
}

FakeStatusItem::FakeStatusItem(FakePlatform& platform, StatusItemDescription description)
    : platform_(platform), description_(std::move(description)) {
    platform_.statusItem_ = this;
}

FakeStatusItem::~FakeStatusItem() {
    platform_.statusItem_ = nullptr;
}

void FakeStatusItem::setIcon(const QIcon& icon) {
    description_.icon = icon;
    ++iconChanges_;
}

void FakeStatusItem::setShown(bool shown) {
    if (std::exchange(shown_, shown) != shown) {
        Q_EMIT shownChanged(shown);
    }
}

FakePlatform::FakePlatform()
    : screens_{{.frame = {.x = 0, .y = 0, .width = 1440, .height = 900},
                .visibleFrame = {.x = 0, .y = 25, .width = 1440, .height = 875},
                .scale = 1,
                .displayID = 1,
                .name = "Fake"}} {}

FakePlatform::~FakePlatform() {
    for (FakeOverlaySurface* const surface : surfaces_) {
        surface->platform_ = nullptr;
    }
}

std::unique_ptr<OverlaySurface> FakePlatform::makeOverlaySurface(OverlaySurfaceContent& content) {
    return std::make_unique<FakeOverlaySurface>(*this, content);
}

std::unique_ptr<StatusItem> FakePlatform::makeStatusItem(const StatusItemDescription& description) {
    return std::make_unique<FakeStatusItem>(*this, description);
}

std::vector<Rect> FakePlatform::screenFrames() const {
    std::vector<Rect> frames;
    for (const Screen& screen : screens_) {
        frames.push_back(screen.frame);
    }
    return frames;
}

std::optional<std::vector<WindowRecord>> FakePlatform::onScreenWindows() const {
    ++wholeListQueries_;
    return windows_;
}

std::optional<WindowRecord> FakePlatform::onScreenWindow(std::uint32_t number) const {
    ++singleWindowQueries_;
    if (!windows_) {
        return std::nullopt;
    }
    const auto window = std::ranges::find(*windows_, std::optional(number), &WindowRecord::number);
    return window == windows_->end() ? std::nullopt : std::optional(*window);
}

std::optional<std::int32_t> FakePlatform::frontmostProcessID() const {
    return frontmost_ ? frontmost_->processID : std::nullopt;
}

std::optional<std::string> FakePlatform::frontmostBundleID() const {
    return frontmost_ ? frontmost_->bundleID : std::nullopt;
}

void FakePlatform::setScreens(std::vector<Screen> screens) {
    screens_ = std::move(screens);
    Q_EMIT screensChanged();
}

void FakePlatform::setFrontmostApplication(std::optional<FrontmostApplication> application) {
    frontmost_ = std::move(application);
}

void FakePlatform::loseConnection(const QString& reason) {
    Q_EMIT disconnected(reason);
}

}  // namespace pallwick
