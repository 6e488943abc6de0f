#pragma once

#include <PallwickMacCore/Models/Geometry.h>

namespace pallwick {

/// How a drag of the bottom-right handle resizes a frame.
struct OverlayResizePolicy {
    OverlayResizePolicy() = delete;

    static constexpr double minimumWidth = 120.0;
    static constexpr double minimumHeight = 40.0;

    /// `frame` as it was when the drag began and `delta`, the pointer's way since then, y upward. The left and the top
    /// edge stay; the result is neither rounded nor clamped to a screen.
    [[nodiscard]] static Rect resizedFrame(const Rect& frame, const Point& delta);
};

}  // namespace pallwick
