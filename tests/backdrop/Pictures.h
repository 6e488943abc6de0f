#pragma once

#include <PallwickMac/Backdrop/PixelImage.h>

#include <cstdint>
#include <functional>
#include <random>

namespace pallwick::backdrop {

inline std::uint32_t grey(int level) {
    return 0xFF000000U | static_cast<std::uint32_t>(level) * 0x010101U;
}

inline PixelImage picture(int width, int height, const std::function<std::uint32_t(int x, int y)>& pixel) {
    PixelImage image(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.row(y)[x] = pixel(x, y);
        }
    }
    return image;
}

inline PixelImage checkerboard(int width, int height, int side) {
    return picture(width, height, [side](int x, int y) { return grey((x / side + y / side) % 2 == 0 ? 255 : 0); });
}

/// The same noise at every run.
inline PixelImage noise(int width, int height) {
    std::mt19937 random(20260307);
    return picture(width, height, [&random](int, int) { return grey((random() & 1U) == 0 ? 0 : 255); });
}

/// Dark strokes of a letter's size on white.
inline PixelImage text(int width, int height) {
    return picture(width, height, [](int x, int y) {
        const bool inWord = x % 60 < 44;
        const bool inLine = y % 22 < 12;
        const bool inStroke = (x * 7 + y * 3) % 11 < 4;
        return grey(inWord && inLine && inStroke ? 0 : 255);
    });
}

}  // namespace pallwick::backdrop
