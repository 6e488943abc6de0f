#pragma once

#include <PallwickMac/Backdrop/PixelImage.h>

#include <cstdint>

namespace pallwick::backdrop {

/// What frosted glass does to the blurred light that comes through it.
struct Material {
    /// 1 leaves the colours as they are, more makes them livelier.
    double saturation = 1;
    /// A grey laid over the picture, 0 black to 255 white, and how much of it, 0 to 1.
    std::uint8_t wash = 0;
    double washAlpha = 0;

    friend bool operator==(const Material&, const Material&) = default;
};

/// The material for a light or a dark colour scheme.
[[nodiscard]] Material materialFor(bool darkScheme);

/// Applies the material to opaque pixels in place.
void apply(const Material& material, PixelImage& image);

/// What opaque `image`, at a coverage of 0 to 255 and beneath the premultiplied colour `tint`, lays over a picture:
/// premultiplied, to be drawn over it in one step.
[[nodiscard]] PixelImage tinted(const PixelImage& image, std::uint8_t coverage, std::uint32_t tint);

/// How many times smaller than the screen the picture is that a Gaussian of `sigma` screen pixels is taken of: a power
/// of two from 1 to 8. The smaller picture costs less, and what is lost of it is finer than the Gaussian leaves.
[[nodiscard]] int downscaling(double sigma);

/// The Gaussian to take of the smaller picture. Averaging on the way down and interpolating on the way up blur too, so
/// less than `sigma / factor` is left to do.
[[nodiscard]] double sigmaAtScale(double sigma, int factor);

/// How many pixels beyond what is shown the blur looks: three standard deviations.
[[nodiscard]] int blurMargin(double sigma);

/// `image` behind frosted glass: downscaled, blurred, the material applied, and enlarged again. `sigma` in pixels.
/// Beyond the image's edges it goes on as its mirror image; a part of a larger picture needs a margin of `blurMargin`
/// around it, or its edges are wrong.
[[nodiscard]] PixelImage frosted(const PixelImage& image, double sigma, const Material& material);

}  // namespace pallwick::backdrop
