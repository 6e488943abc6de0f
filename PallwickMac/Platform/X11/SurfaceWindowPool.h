#pragma once

#include <PallwickMac/Platform/X11/SurfaceWindow.h>

#include <QTimer>

#include <memory>
#include <vector>

namespace pallwick::x11 {

/// Native windows mapped ahead of time, so that a compositing manager has long finished fading them in when a panel
/// needs one. Windows of closed panels come back to it.
class SurfaceWindowPool {
public:
    /// `connection` is not owned and must outlive the object.
    explicit SurfaceWindowPool(const Connection& connection);

    SurfaceWindowPool(const SurfaceWindowPool&) = delete;
    SurfaceWindowPool& operator=(const SurfaceWindowPool&) = delete;

    /// A parked window that takes the mouse, the longest mapped one there is.
    [[nodiscard]] std::unique_ptr<SurfaceWindow> take();

    /// Maps new windows in place of those in stock.
    void renew();

    void giveBack(std::unique_ptr<SurfaceWindow> window);

private:
    void refill();

    const Connection& connection_;
    std::vector<std::unique_ptr<SurfaceWindow>> windows_;
    QTimer refillSoon_;
};

}  // namespace pallwick::x11
