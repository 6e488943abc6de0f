#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pallwick::backdrop {

/// Pixels 0xAARRGGBB, premultiplied, rows from top to bottom without padding.
struct PixelImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;

    PixelImage() = default;
    /// All pixels clear. Neither side is negative.
    PixelImage(int imageWidth, int imageHeight)
        : width(imageWidth),
          height(imageHeight),
          pixels(static_cast<std::size_t>(imageWidth) * static_cast<std::size_t>(imageHeight)) {}

    [[nodiscard]] std::uint32_t* row(int y) {
        return pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
    [[nodiscard]] const std::uint32_t* row(int y) const {
        return pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
    [[nodiscard]] bool isEmpty() const { return pixels.empty(); }

    friend bool operator==(const PixelImage&, const PixelImage&) = default;
};

}  // namespace pallwick::backdrop
