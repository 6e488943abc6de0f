#include <PallwickMac/Platform/X11/SurfaceWindowPool.h>

#include <algorithm>

namespace pallwick::x11 {

namespace {

// Enough for what a person adds in a row before the next windows have faded in.
constexpr std::size_t spares = 3;

// Enough that clearing a list and loading it again maps nothing anew; each costs one pixel.
constexpr std::size_t mostKept = 32;

}  // namespace

SurfaceWindowPool::SurfaceWindowPool(const Connection& connection) : connection_(connection) {
    refillSoon_.setSingleShot(true);
    QObject::connect(&refillSoon_, &QTimer::timeout, &refillSoon_, [this] { refill(); });
    refill();
}

std::unique_ptr<SurfaceWindow> SurfaceWindowPool::take() {
    refillSoon_.start();
    if (windows_.empty()) {
        return std::make_unique<SurfaceWindow>(connection_);
    }
    // Ids are given out in ascending order, so the smallest one has been mapped for longest.
    const auto oldest = std::ranges::min_element(windows_, {}, [](const auto& window) { return window->id(); });
    std::unique_ptr<SurfaceWindow> window = std::move(*oldest);
    windows_.erase(oldest);
    return window;
}

void SurfaceWindowPool::renew() {
    windows_.clear();
    refill();
}

void SurfaceWindowPool::giveBack(std::unique_ptr<SurfaceWindow> window) {
    window->park(1, 1);
    window->dropPicture();
    window->setBoundingShape(std::nullopt);
    window->setTakesMouse(true);
    window->setCursor(XCB_CURSOR_NONE);
    if (windows_.size() < mostKept) {
        windows_.push_back(std::move(window));
    }
    connection_.flush();
}

void SurfaceWindowPool::refill() {
    while (windows_.size() < spares) {
        windows_.push_back(std::make_unique<SurfaceWindow>(connection_));
    }
    connection_.flush();
}

}  // namespace pallwick::x11
