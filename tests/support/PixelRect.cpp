#include "PixelRect.h"

#include <algorithm>
#include <ostream>

namespace pallwick::support {

bool PixelRect::contains(PixelPoint point) const {
    return point.x >= x && point.x < maxX() && point.y >= y && point.y < maxY();
}

bool PixelRect::intersects(const PixelRect& other) const {
    const PixelRect common = intersection(other);
    return common.width > 0 && common.height > 0;
}

PixelRect PixelRect::intersection(const PixelRect& other) const {
    const int left = std::max(x, other.x);
    const int top = std::max(y, other.y);
    return {.x = left,
            .y = top,
            .width = std::max(0, std::min(maxX(), other.maxX()) - left),
            .height = std::max(0, std::min(maxY(), other.maxY()) - top)};
}

std::string describe(const PixelRect& rect) {
    return std::to_string(rect.width) + "x" + std::to_string(rect.height) + " at " +
           describe(PixelPoint{rect.x, rect.y});
}

std::string describe(PixelPoint point) {
    return std::to_string(point.x) + "," + std::to_string(point.y);
}

void PrintTo(const PixelRect& rect, std::ostream* stream) {
    *stream << describe(rect);
}

void PrintTo(PixelPoint point, std::ostream* stream) {
    *stream << describe(point);
}

}  // namespace pallwick::support
