#include <PallwickMac/Platform/X11/PixelMapping.h>

#include <algorithm>
#include <cmath>

namespace pallwick::x11 {

namespace {

// Far outside what X can address, and far enough from the limits of int that sizes cannot overflow.
constexpr double farthestPixel = 1e9;

// A whole pixel edge that went through points comes back a few units in the last place beside itself; rounding it
// outward then would add a pixel.
constexpr double edgeTolerance = 1e-6;

// What is no number has no place; it counts as 0, for no int could hold it.
double held(double value) {
    return std::isnan(value) ? 0 : std::clamp(value, -farthestPixel, farthestPixel);
}

int floorToInt(double value) {
    return static_cast<int>(std::floor(held(value) + edgeTolerance));
}

int ceilToInt(double value) {
    return static_cast<int>(std::ceil(held(value) - edgeTolerance));
}

}  // namespace

PixelRect PixelRect::intersected(const PixelRect& other) const {
    const int left = std::max(x, other.x);
    const int top = std::max(y, other.y);
    return {.x = left,
            .y = top,
            .width = std::max(0, std::min(maxX(), other.maxX()) - left),
            .height = std::max(0, std::min(maxY(), other.maxY()) - top)};
}

PixelMapping::PixelMapping(const PixelRect& primary, double scale) : primary_(primary), scale_(scale) {}

PixelRect PixelMapping::pixels(const Rect& frame) const {
    const Point topLeft = exactTopLeft(frame);
    // Edges are rounded, not the size: rounding a width would let the right edge creep while dragging.
    const int x = floorToInt(topLeft.x);
    const int y = floorToInt(topLeft.y);
    const int right = ceilToInt(primary_.x + frame.maxX() * scale_);
    const int bottom = ceilToInt(primary_.maxY() - frame.minY() * scale_);
    return {.x = x, .y = y, .width = std::max(0, right - x), .height = std::max(0, bottom - y)};
}

Rect PixelMapping::points(const PixelRect& pixels) const {
    const Point bottomLeft = point({.x = pixels.x, .y = pixels.maxY()});
    return {.x = bottomLeft.x, .y = bottomLeft.y, .width = pixels.width / scale_, .height = pixels.height / scale_};
}

Rect PixelMapping::serverBounds(const PixelRect& pixels, double top) const {
    const Rect frame = points(pixels);
    return {.x = frame.x, .y = top - frame.maxY(), .width = frame.width, .height = frame.height};
}

Point PixelMapping::point(const PixelPoint& pixel) const {
    return {.x = (pixel.x - primary_.x) / scale_, .y = (primary_.maxY() - pixel.y) / scale_};
}

Point PixelMapping::exactTopLeft(const Rect& frame) const {
    return {.x = primary_.x + frame.minX() * scale_, .y = primary_.maxY() - frame.maxY() * scale_};
}

}  // namespace pallwick::x11
