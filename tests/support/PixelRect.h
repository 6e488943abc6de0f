#pragma once

#include <string>

namespace pallwick::support {

/// A point of the root window in device pixels, y down from its top-left corner.
struct PixelPoint {
    int x = 0;
    int y = 0;

    friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

/// A half-open rectangle of the root window in device pixels, y down from its top-left corner.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] int maxX() const { return x + width; }
    [[nodiscard]] int maxY() const { return y + height; }
    [[nodiscard]] PixelPoint centre() const { return {.x = x + width / 2, .y = y + height / 2}; }
    [[nodiscard]] PixelRect inset(int by) const { return {x + by, y + by, width - 2 * by, height - 2 * by}; }
    [[nodiscard]] bool contains(PixelPoint point) const;
    [[nodiscard]] bool intersects(const PixelRect& other) const;
    /// Empty, at an unspecified place, where the two share no pixel.
    [[nodiscard]] PixelRect intersection(const PixelRect& other) const;

    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// "320x180 at 40,60", for messages.
[[nodiscard]] std::string describe(const PixelRect& rect);
[[nodiscard]] std::string describe(PixelPoint point);

/// GoogleTest prints both with `describe`.
void PrintTo(const PixelRect& rect, std::ostream* stream);
void PrintTo(PixelPoint point, std::ostream* stream);

}  // namespace pallwick::support
