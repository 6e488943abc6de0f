#include "SecretClient.h"

#include <algorithm>
#include <cmath>

namespace pallwick::desktop {

using support::Colour;
using support::PixelArea;
using support::PixelPoint;
using support::PixelRect;
using support::Screenshot;
using support::TestClient;

bool isSecret(Colour colour) {
    constexpr int noticeable = 8;
    return colour.green > std::max(colour.red, colour.blue) + noticeable;
}

TestClient::Options secretOptions(const std::string& title, const PixelRect& rect) {
    return {.title = title, .rect = rect, .ground = secretGround, .mark = secretMark};
}

PixelArea inside(const PixelRect& overlay, Shape shape, double scale) {
    constexpr double rim = 2;
    constexpr double cornerRadius = 12;
    const PixelRect bounds = overlay.inset(static_cast<int>(std::lround(rim * scale)));
    return shape == Shape::circle ? PixelArea::ellipse(bounds)
                                  : PixelArea::roundedRectangle(bounds, (cornerRadius - rim) * scale);
}

std::string leak(const Screenshot& screen, const std::vector<PixelArea>& areas) {
    PixelRect bounds = screen.rect();
    for (const PixelArea& area : areas) {
        bounds = bounds.intersection(area.bounds());
    }
    for (int y = bounds.y; y < bounds.maxY(); ++y) {
        for (int x = bounds.x; x < bounds.maxX(); ++x) {
            const PixelPoint point{.x = x, .y = y};
            if (isSecret(screen.at(point)) &&
                std::ranges::all_of(areas, [&](const PixelArea& area) { return area.contains(point); })) {
                return support::describe(screen.at(point)) + " at " + support::describe(point);
            }
        }
    }
    return {};
}

}  // namespace pallwick::desktop
