#pragma once

#include <PallwickMac/Backdrop/PixelImage.h>

namespace pallwick::backdrop {

/// `image` with `margin` pixels more on every side, and then as many more at the right and bottom as make both sides
/// multiples of `multiple`. The new pixels mirror the old ones at the edge, over and over where the image is small.
[[nodiscard]] PixelImage mirrored(const PixelImage& image, int margin, int multiple);

/// Half as large in both directions, rounded up: each pixel the mean of four. Beyond an odd edge its pixels go on.
[[nodiscard]] PixelImage halved(const PixelImage& image);

/// Exactly `halved(mirrored(image, margin, multiple))` for an even `multiple`, in a fraction of the time.
[[nodiscard]] PixelImage mirroredAndHalved(const PixelImage& image, int margin, int multiple);

/// A region of `image` enlarged by `factor` with bilinear interpolation between the centres of its pixels; beyond an
/// edge its pixels go on. `x`, `y`, `width` and `height` count enlarged pixels.
[[nodiscard]] PixelImage enlarged(const PixelImage& image, int factor, int x, int y, int width, int height);

}  // namespace pallwick::backdrop
