#include <PallwickMac/Backdrop/Frost.h>
#include <PallwickMac/Backdrop/GaussianBlur.h>
#include <PallwickMac/Backdrop/Rescaling.h>

#include <algorithm>
#include <cmath>

namespace pallwick::backdrop {

namespace {

// Fixed point with twelve fractional bits, for the material's factors.
constexpr int one = 4096;

int fixed(double value) {
    return static_cast<int>(std::lround(value * one));
}

}  // namespace

Material materialFor(bool darkScheme) {
    return {.saturation = 1.25, .wash = static_cast<std::uint8_t>(darkScheme ? 0 : 255), .washAlpha = 0.12};
}

void apply(const Material& material, PixelImage& image) {
    const int saturation = fixed(material.saturation);
    const int keep = fixed(1 - material.washAlpha);
    const int wash = fixed(material.washAlpha) * material.wash;
    for (std::uint32_t& pixel : image.pixels) {
        const int red = static_cast<int>((pixel >> 16) & 0xFF);
        const int green = static_cast<int>((pixel >> 8) & 0xFF);
        const int blue = static_cast<int>(pixel & 0xFF);
        // Luma after ITU-R BT.709, the weights in 256ths.
        const int luma = (54 * red + 183 * green + 19 * blue + 128) / 256;
        const auto washed = [&](int channel) {
            const int saturated = std::clamp(luma * one + saturation * (channel - luma), 0, 255 * one) / one;
            return static_cast<std::uint32_t>((saturated * keep + wash + one / 2) / one);
        };
        pixel = 0xFF000000U | (washed(red) << 16) | (washed(green) << 8) | washed(blue);
    }
}

PixelImage tinted(const PixelImage& image, std::uint8_t coverage, std::uint32_t tint) {
    constexpr std::uint32_t whole = 255 * 255;
    const std::uint32_t share = coverage * (255 - (tint >> 24));
    PixelImage result(image.width, image.height);
    std::ranges::transform(image.pixels, result.pixels.begin(), [share, tint](std::uint32_t pixel) {
        std::uint32_t mixed = 0;
        for (int shift = 0; shift < 32; shift += 8) {
            const std::uint32_t channel = (pixel >> shift) & 0xFF;
            const std::uint32_t colour = (tint >> shift) & 0xFF;
            mixed |= std::min((channel * share + whole / 2) / whole + colour, 255U) << shift;
        }
        return mixed;
    });
    return result;
}

int downscaling(double sigma) {
    int factor = 1;
    // Below two and a half small pixels of sigma the steps of the interpolation begin to show.
    while (factor < 8 && sigma / (2 * factor) >= 2.5) {
        factor *= 2;
    }
    return factor;
}

double sigmaAtScale(double sigma, int factor) {
    // Variances add up: a box of n pixels has (n^2 - 1) / 12, a triangle over two small pixels n^2 / 6.
    const double n = factor;
    const double lost = factor == 1 ? 0 : (n * n - 1) / 12 + n * n / 6;
    return std::sqrt(std::max(0.0, sigma * sigma - lost)) / n;
}

int blurMargin(double sigma) {
    return static_cast<int>(std::ceil(3 * sigma));
}

PixelImage frosted(const PixelImage& image, double sigma, const Material& material) {
    if (image.isEmpty()) {
        return image;
    }
    const int factor = downscaling(sigma);
    const int margin = blurMargin(sigma);
    PixelImage small = factor > 1 ? mirroredAndHalved(image, margin, factor) : mirrored(image, margin, factor);
    for (int scale = 2; scale < factor; scale *= 2) {
        small = halved(small);
    }
    small = gaussianBlurred(small, sigmaAtScale(sigma, factor));
    apply(material, small);
    return enlarged(small, factor, margin, margin, image.width, image.height);
}

}  // namespace pallwick::backdrop
