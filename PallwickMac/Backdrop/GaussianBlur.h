#pragma once

#include <PallwickMac/Backdrop/PixelImage.h>

namespace pallwick::backdrop {

enum class Rounding {
    nearest,
    /// For a picture that is next handed to something that rounds down.
    up,
};

/// `image` under a Gaussian of standard deviation `sigma` pixels, cut off where its weights fall below what eight bits
/// can show. Beyond an edge the edge's pixels go on. A sigma of 0 or less changes nothing.
[[nodiscard]] PixelImage gaussianBlurred(const PixelImage& image, double sigma, Rounding rounding = Rounding::nearest);

}  // namespace pallwick::backdrop
