#include "SeenThroughGlass.h"

#include <cmath>
#include <cstdlib>
#include <sstream>

namespace pallwick::desktop {

using support::Colour;
using support::PixelArea;
using support::PixelPoint;
using support::PixelRect;
using support::Screenshot;

namespace {

constexpr double sigma = 20;
constexpr int tolerance = 4;

// A test client's stripes.
constexpr int stripe = 4;
constexpr int distance = 16;

}  // namespace

double GlassStyle::level(double sharp, double blurred) const {
    constexpr double wash = 0.12;
    const double frosted = blurred * (1 - wash) + wash * (dark ? 0 : 255);
    return (1 - opacity / 100.0) * (effect() * frosted + (1 - effect()) * sharp);
}

Colour grey(int level) {
    const auto channel = static_cast<std::uint8_t>(level);
    return {.red = channel, .green = channel, .blue = channel};
}

GreyPicture stripes(const PixelRect& client, int ground, int mark) {
    const double mean = mark + static_cast<double>((ground - mark) * (distance - stripe)) / distance;
    return {.sharp = [=](PixelPoint point) { return (point.x - client.x) % distance < stripe ? mark : ground; },
            .blurred = [=](PixelPoint) { return mean; }};
}

GreyPicture plain(int level) {
    return {.sharp = [=](PixelPoint) { return level; }, .blurred = [=](PixelPoint) { return level; }};
}

GreyPicture halves(int edge, int left, int right, double scale) {
    return {.sharp = [=](PixelPoint point) { return point.x < edge ? left : right; },
            .blurred =
                [=](PixelPoint point) {
                    const double deviations = (point.x + 0.5 - edge) / (sigma * scale);
                    return left + (right - left) * (1 + std::erf(deviations / std::sqrt(2.0))) / 2;
                }};
}

std::string deviation(const Screenshot& screen, const PixelArea& area, const GreyPicture& beneath,
                      const GlassStyle& style) {
    const PixelRect bounds = screen.rect().intersection(area.bounds());
    for (int y = bounds.y; y < bounds.maxY(); ++y) {
        for (int x = bounds.x; x < bounds.maxX(); ++x) {
            const PixelPoint point{.x = x, .y = y};
            if (!area.contains(point)) {
                continue;
            }
            const double level = style.level(beneath.sharp(point), beneath.blurred(point));
            const Colour expected = grey(static_cast<int>(std::lround(level)));
            if (support::difference(screen.at(point), expected) > tolerance) {
                return support::describe(screen.at(point)) + " at " + support::describe(point) + " instead of " +
                       support::describe(expected);
            }
        }
    }
    return {};
}

std::string sharperThan(const Screenshot& screen, const PixelArea& area, const GlassStyle& style) {
    constexpr int apart = 8;
    const double allowed = 255 * style.sharpness() + tolerance;
    const PixelRect bounds = screen.rect().intersection(area.bounds());
    for (int y = bounds.y; y < bounds.maxY(); ++y) {
        for (int x = bounds.x; x + apart < bounds.maxX(); ++x) {
            const PixelPoint here{.x = x, .y = y};
            const PixelPoint there{.x = x + apart, .y = y};
            if (area.contains(here) && area.contains(there) &&
                support::difference(screen.at(here), screen.at(there)) > allowed) {
                return support::describe(screen.at(here)) + " at " + support::describe(here) + " and " +
                       support::describe(screen.at(there)) + " next to it";
            }
        }
    }
    return {};
}

}  // namespace pallwick::desktop
