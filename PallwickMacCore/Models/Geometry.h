#pragma once

#include <algorithm>

namespace pallwick {

// All values are points. Unless a declaration says otherwise they are global screen coordinates:
// origin at the bottom-left corner of the primary display, x to the right, y upward.

struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
    double width = 0;
    double height = 0;

    friend bool operator==(const Size&, const Size&) = default;
};

/// A rectangle as it is stored: `width` and `height` may be negative until it is standardized.
/// The derived values (`minX` and its like) are those of the standardized rectangle.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] constexpr double minX() const { return std::min(x, x + width); }
    [[nodiscard]] constexpr double minY() const { return std::min(y, y + height); }
    [[nodiscard]] constexpr double maxX() const { return std::max(x, x + width); }
    [[nodiscard]] constexpr double maxY() const { return std::max(y, y + height); }
    [[nodiscard]] constexpr double midX() const { return x + width / 2; }
    [[nodiscard]] constexpr double midY() const { return y + height / 2; }

    /// The extents of the covered area, never negative.
    [[nodiscard]] constexpr Size extent() const {
        return {.width = width < 0 ? -width : width, .height = height < 0 ? -height : height};
    }

    /// The same area with a width and a height that are not negative.
    [[nodiscard]] constexpr Rect standardized() const {
        return {.x = minX(), .y = minY(), .width = extent().width, .height = extent().height};
    }

    /// Half-open: the minimum edges are inside, the maximum edges outside.
    [[nodiscard]] constexpr bool contains(const Point& point) const {
        return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
    }

    /// Every edge moved inward by `distance`; outward where it is negative. Expects a standardized rectangle.
    [[nodiscard]] constexpr Rect inset(double distance) const {
        return {.x = x + distance, .y = y + distance, .width = width - 2 * distance, .height = height - 2 * distance};
    }

    friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace pallwick
