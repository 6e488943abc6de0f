#include <PallwickMac/Platform/X11/ShapeRows.h>

#include <algorithm>
#include <cmath>

namespace pallwick::x11 {

namespace {

// How far an ellipse with the given radii is left and right of its centre at distance `dy` above or below it.
double halfChord(double radiusX, double radiusY, double dy) {
    const double t = radiusY > 0 ? dy / radiusY : 0;
    return t >= 1 ? 0 : radiusX * std::sqrt(1 - t * t);
}

// The distance of the row's nearest edge from `y`: the chord is widest there.
double distance(double rowTop, double y) {
    return std::abs(std::clamp(y, rowTop, rowTop + 1) - y);
}

// How far the row's content is moved in from the left and right edges of `bounds`.
double indent(EffectLayer::Shape shape, const Rect& bounds, double cornerRadius, double rowTop) {
    if (shape == EffectLayer::Shape::ellipse) {
        return bounds.width / 2 - halfChord(bounds.width / 2, bounds.height / 2, distance(rowTop, bounds.midY()));
    }
    const double radius = std::clamp(cornerRadius, 0.0, std::min(bounds.width, bounds.height) / 2);
    const double upperCentre = bounds.minY() + radius;
    // The two meet where the ends are half circles; rounding must not let them pass each other.
    const double lowerCentre = std::max(upperCentre, bounds.maxY() - radius);
    const double nearestCentre = std::clamp(rowTop + 0.5, upperCentre, lowerCentre);
    const bool betweenCorners = rowTop + 1 > upperCentre && rowTop < lowerCentre;
    return betweenCorners ? 0 : radius - halfChord(radius, radius, distance(rowTop, nearestCentre));
}

// Edges held within the window's, where an int can name them. One that is no number leaves the whole window covered.
int heldBegin(double value, int lowest, int highest) {
    return value > lowest ? static_cast<int>(std::min<double>(value, highest)) : lowest;
}

int heldEnd(double value, int lowest, int highest) {
    return value < highest ? static_cast<int>(std::max<double>(value, lowest)) : highest;
}

}  // namespace

std::vector<PixelRect> shapeRows(EffectLayer::Shape shape, const Rect& bounds, double cornerRadius,
                                 const PixelRect& window) {
    std::vector<PixelRect> rows;
    const int top = heldBegin(std::floor(bounds.minY()), window.y, window.maxY());
    const int bottom = heldEnd(std::ceil(bounds.maxY()), window.y, window.maxY());
    for (int y = top; y < bottom; ++y) {
        const double in = indent(shape, bounds, cornerRadius, y);
        const int left = heldBegin(std::floor(bounds.minX() + in), window.x, window.maxX());
        const int right = heldEnd(std::ceil(bounds.maxX() - in), window.x, window.maxX());
        if (left >= right) {
            continue;
        }
        if (!rows.empty() && rows.back().x == left && rows.back().maxX() == right && rows.back().maxY() == y) {
            ++rows.back().height;
        } else {
            rows.push_back({.x = left, .y = y, .width = right - left, .height = 1});
        }
    }
    return rows;
}

}  // namespace pallwick::x11
