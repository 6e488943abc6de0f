#pragma once

#include <PallwickMac/Backdrop/PixelImage.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace pallwick::backdrop {

/// The green channel under a Gaussian in double precision, the picture mirrored beyond its edges.
inline std::vector<double> trueGaussian(const PixelImage& image, double sigma) {
    const auto mirrored = [](int position, int size) {
        const int phase = ((position % (2 * size)) + 2 * size) % (2 * size);
        return phase < size ? phase : 2 * size - 1 - phase;
    };
    const int reach = static_cast<int>(std::ceil(5 * sigma));
    std::vector<double> weights;
    double sum = 0;
    for (int i = -reach; i <= reach; ++i) {
        weights.push_back(std::exp(-0.5 * i * i / (sigma * sigma)));
        sum += weights.back();
    }
    const auto at = [&image](int x, int y) {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) + static_cast<std::size_t>(x);
    };
    std::vector<double> across(image.pixels.size());
    std::vector<double> result(image.pixels.size());
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            for (int i = -reach; i <= reach; ++i) {
                const std::uint32_t pixel = image.row(y)[mirrored(x + i, image.width)];
                across[at(x, y)] += weights[static_cast<std::size_t>(i + reach)] / sum * ((pixel >> 8) & 0xFF);
            }
        }
    }
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            for (int i = -reach; i <= reach; ++i) {
                result[at(x, y)] +=
                    weights[static_cast<std::size_t>(i + reach)] / sum * across[at(x, mirrored(y + i, image.height))];
            }
        }
    }
    return result;
}

/// Half a level is what eight bits cannot show; a flat grey between two levels is off by just that everywhere.
inline constexpr double halfLevelSlack = 1e-6;

/// How far pixels are off, in levels of eight bits.
struct Deviation {
    double largest = 0;
    double mean = 0;
};

/// Compares the green channel of `actual` with the part of `expected` (rows of `width`) that begins at `x`, `y`.
inline Deviation deviation(const PixelImage& actual, const std::vector<double>& expected, int width, int x, int y) {
    Deviation deviation;
    for (int row = 0; row < actual.height; ++row) {
        for (int column = 0; column < actual.width; ++column) {
            const double level = (actual.row(row)[column] >> 8) & 0xFF;
            const double error =
                std::abs(level - expected[static_cast<std::size_t>(row + y) * static_cast<std::size_t>(width) +
                                          static_cast<std::size_t>(column + x)]);
            deviation.largest = std::max(deviation.largest, error);
            deviation.mean += error / static_cast<double>(actual.pixels.size());
        }
    }
    return deviation;
}

}  // namespace pallwick::backdrop
