#pragma once

#include <PallwickMac/Platform/OverlaySurface.h>
#include <PallwickMac/Platform/X11/PixelMapping.h>

#include <vector>

namespace pallwick::x11 {

/// The pixels that a shape touches, as bands of equal rows from top to bottom.
///
/// `bounds` is the shape's rectangle in window pixels, y down, not rounded; `cornerRadius` in pixels, at most half of
/// the shorter side. Every pixel that the shape touches at all is in the result, so that a cover cut to it hides no
/// less than the shape. The result lies within `window`.
[[nodiscard]] std::vector<PixelRect> shapeRows(EffectLayer::Shape shape, const Rect& bounds, double cornerRadius,
                                               const PixelRect& window);

}  // namespace pallwick::x11
