#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "XConnection.h"

namespace pallwick::support {

/// A pixel as it is seen.
struct Colour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const Colour&, const Colour&) = default;
};

/// "#ff8000".
[[nodiscard]] std::string describe(Colour colour);
void PrintTo(Colour colour, std::ostream* stream);

/// The largest difference of the three channels, 0 to 255.
[[nodiscard]] int difference(Colour a, Colour b);

/// A set of root pixels. A pixel belongs to it when its centre lies inside the shape.
/// Two points in from an edge at scale s: build the area of `rect.inset(2 * s)`.
class PixelArea {
public:
    static PixelArea rectangle(const PixelRect& bounds) { return {bounds, 0}; }
    /// `radius` in pixels.
    static PixelArea roundedRectangle(const PixelRect& bounds, double radius) { return {bounds, radius}; }
    static PixelArea ellipse(const PixelRect& bounds);

    [[nodiscard]] const PixelRect& bounds() const { return bounds_; }
    [[nodiscard]] bool contains(PixelPoint point) const;

private:
    PixelArea(const PixelRect& bounds, double radius) : bounds_(bounds), radiusX_(radius), radiusY_(radius) {}

    PixelRect bounds_;
    double radiusX_;
    double radiusY_;
};

using ColourTest = std::function<bool(Colour)>;

/// True for colours that differ from `colour` by at most `tolerance` in each channel.
[[nodiscard]] ColourTest isNear(Colour colour, int tolerance);

/// What the screen showed at one moment, with everything a compositor did.
class Screenshot {
public:
    /// Of the whole root window.
    static Screenshot take(XConnection& x);

    [[nodiscard]] const PixelRect& rect() const { return rect_; }
    /// `point` on the root window; throws `std::out_of_range` outside it.
    [[nodiscard]] Colour at(PixelPoint point) const;
    /// The first pixel of the area, row by row, that passes. Parts of an area outside the screen are skipped.
    [[nodiscard]] std::optional<PixelPoint> find(const PixelArea& area, const ColourTest& test) const;
    [[nodiscard]] int count(const PixelArea& area, const ColourTest& test) const;
    [[nodiscard]] int distinctColours(const PixelArea& area) const;
    /// The mean of each channel; black for an area that is not on the screen.
    [[nodiscard]] Colour mean(const PixelArea& area) const;
    /// What of it lies in `rect`, which need not be all on the screen; its points stay those of the root window.
    [[nodiscard]] Screenshot part(const PixelRect& rect) const;
    /// Throws `std::runtime_error` when the file cannot be written.
    void savePng(const std::filesystem::path& file) const;

private:
    Screenshot() = default;
    template <typename Visit>
    void visit(const PixelArea& area, const Visit& each) const;

    PixelRect rect_;
    /// Rows from the top, 0x00RRGGBB.
    std::vector<std::uint32_t> pixels_;
};

/// Returns the first screenshot that passes; looks again after each change on the screen.
/// Throws `Timeout` with `what` when none does.
Screenshot awaitPixels(XConnection& x, const std::string& what, const std::function<bool(const Screenshot&)>& test);

}  // namespace pallwick::support
