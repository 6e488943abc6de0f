#include <PallwickMac/Backdrop/GaussianBlur.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace pallwick::backdrop {

namespace {

constexpr int channels = 4;

// Beyond three and a half standard deviations a Gaussian holds less than a twentieth of a level of eight bits.
constexpr double reachInSigmas = 3.5;

// A channel with eight fractional bits, so that nothing is rounded to whole levels between the two passes. Sixteen bits
// are also what vector units multiply best.
using Channel = std::uint16_t;

struct Kernel {
    int reach = 0;
    /// Of the centre and of each distance from it, in 65536ths; over the whole kernel they add up to 65536.
    std::vector<Channel> weights;
};

Kernel makeKernel(double sigma) {
    Kernel kernel;
    kernel.reach = std::max(1, static_cast<int>(std::ceil(sigma * reachInSigmas)));
    std::vector<double> values;
    double sum = 0;
    for (int distance = 0; distance <= kernel.reach; ++distance) {
        values.push_back(std::exp(-0.5 * distance * distance / (sigma * sigma)));
        sum += values.back() * (distance == 0 ? 1 : 2);
    }
    std::uint32_t rest = 65536;
    kernel.weights.resize(values.size());
    for (int distance = kernel.reach; distance > 0; --distance) {
        const auto index = static_cast<std::size_t>(distance);
        kernel.weights[index] = static_cast<Channel>(std::lround(values[index] / sum * 65536));
        rest -= 2U * kernel.weights[index];
    }
    // What rounding has lost goes to the centre: a flat colour stays what it is. A sigma so small that everything is
    // in the centre must not wrap around sixteen bits.
    kernel.weights[0] = static_cast<Channel>(std::min(rest, 65535U));
    return kernel;
}

// Both factors of sixteen bits and the upper half of their product: one instruction of a vector unit.
Channel weighted(Channel value, Channel weight) {
    return static_cast<Channel>((std::uint32_t{value} * weight) >> 16);
}

// Adds up `count` channels at `centre` and at each distance of `step` channels on both sides of it.
void convolve(const Channel* centre, std::ptrdiff_t step, const Kernel& kernel, Channel* sums, int count) {
    // Each product is rounded down by half a unit on average.
    const auto lost = static_cast<Channel>(kernel.reach);
    const Channel centreWeight = kernel.weights[0];
    for (int i = 0; i < count; ++i) {
        sums[i] = static_cast<Channel>(weighted(centre[i], centreWeight) + lost);
    }
    for (int distance = 1; distance <= kernel.reach; ++distance) {
        const Channel weight = kernel.weights[static_cast<std::size_t>(distance)];
        const Channel* before = centre - distance * step;
        const Channel* after = centre + distance * step;
        for (int i = 0; i < count; ++i) {
            sums[i] = static_cast<Channel>(sums[i] + weighted(before[i], weight) + weighted(after[i], weight));
        }
    }
}

}  // namespace

PixelImage gaussianBlurred(const PixelImage& image, double sigma, Rounding rounding) {
    if (sigma <= 0 || image.isEmpty()) {
        return image;
    }
    const Kernel kernel = makeKernel(sigma);
    const int reach = kernel.reach;
    const int rowChannels = image.width * channels;
    const auto rowSize = static_cast<std::size_t>(rowChannels);
    const auto rowStart = [rowSize](int row) { return static_cast<std::size_t>(row) * rowSize; };

    // Both passes read beyond the edges, so rows and columns are continued there instead of being tested for.
    std::vector<Channel> padded(static_cast<std::size_t>(image.width + 2 * reach) * channels);
    std::vector<Channel> across(rowStart(image.height + 2 * reach));
    for (int y = 0; y < image.height; ++y) {
        const std::uint32_t* source = image.row(y);
        Channel* next = padded.data();
        for (int x = -reach; x < image.width + reach; ++x) {
            const std::uint32_t pixel = source[std::clamp(x, 0, image.width - 1)];
            for (int shift = 0; shift < 32; shift += 8) {
                *next++ = static_cast<Channel>(((pixel >> shift) & 0xFF) << 8);
            }
        }
        convolve(padded.data() + reach * channels, channels, kernel, across.data() + rowStart(y + reach), rowChannels);
    }
    for (int y = 0; y < reach; ++y) {
        std::copy_n(across.data() + rowStart(reach), rowSize, across.data() + rowStart(y));
        std::copy_n(across.data() + rowStart(reach + image.height - 1), rowSize,
                    across.data() + rowStart(reach + image.height + y));
    }

    // In 256ths; rounding up leaves a level that is whole already as it is.
    const std::uint32_t toWhole = rounding == Rounding::up ? 255 : 128;
    PixelImage blurred(image.width, image.height);
    std::vector<Channel> sums(rowSize);
    for (int y = 0; y < image.height; ++y) {
        convolve(across.data() + rowStart(y + reach), rowChannels, kernel, sums.data(), rowChannels);
        std::uint32_t* target = blurred.row(y);
        for (int x = 0; x < image.width; ++x) {
            const Channel* sum = sums.data() + static_cast<std::size_t>(x) * channels;
            std::uint32_t pixel = 0;
            for (int channel = 0; channel < channels; ++channel) {
                pixel |= std::min((sum[channel] + toWhole) >> 8, 255U) << (8 * channel);
            }
            target[x] = pixel;
        }
    }
    return blurred;
}

}  // namespace pallwick::backdrop
