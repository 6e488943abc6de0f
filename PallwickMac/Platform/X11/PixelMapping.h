#pragma once

#include <PallwickMacCore/Models/Geometry.h>

namespace pallwick::x11 {

/// A position in device pixels, y down, origin at the root window's top-left corner.
struct PixelPoint {
    int x = 0;
    int y = 0;

    friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

/// Half-open rectangle of device pixels, y down, origin at the root window's top-left corner.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] constexpr int maxX() const { return x + width; }
    [[nodiscard]] constexpr int maxY() const { return y + height; }
    [[nodiscard]] constexpr bool isEmpty() const { return width <= 0 || height <= 0; }
    [[nodiscard]] PixelRect intersected(const PixelRect& other) const;

    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// The one affine map between screen points and root pixels.
///
/// Screen points have their origin at the bottom-left corner of the primary display and y upward.
/// One scale, the primary display's, serves the whole root window: per-display scales would leave
/// holes between neighbouring displays that no point could name.
class PixelMapping {
public:
    /// One pixel per point, the root's top-left corner as the primary display's.
    PixelMapping() = default;

    /// `primary` in root pixels; `scale` in pixels per point, greater than 0.
    PixelMapping(const PixelRect& primary, double scale);

    [[nodiscard]] double scale() const { return scale_; }

    /// The smallest pixel rectangle that covers `frame`, so that a cover never falls short by a fraction of a pixel.
    /// `frame` may lie outside every display; edges beyond a billion pixels are held there.
    [[nodiscard]] PixelRect pixels(const Rect& frame) const;

    /// The exact inverse for whole pixels; `pixels(points(r)) == r` for every `r`.
    [[nodiscard]] Rect points(const PixelRect& pixels) const;

    /// The same in the window server's way: y down, with 0 at `top`, the top edge of the union of all screens in points
    /// (y up).
    [[nodiscard]] Rect serverBounds(const PixelRect& pixels, double top) const;

    /// The point at a pixel's top-left corner.
    [[nodiscard]] Point point(const PixelPoint& pixel) const;

    /// Where the frame's top-left corner really lies, in root pixels, y down; not rounded.
    [[nodiscard]] Point exactTopLeft(const Rect& frame) const;

    friend bool operator==(const PixelMapping&, const PixelMapping&) = default;

private:
    PixelRect primary_;
    double scale_ = 1;
};

}  // namespace pallwick::x11
