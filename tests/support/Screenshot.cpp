#include "Screenshot.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <set>
#include <stdexcept>

namespace pallwick::support {
namespace {

Colour colourOf(std::uint32_t pixel) {
    return {.red = static_cast<std::uint8_t>(pixel >> 16U),
            .green = static_cast<std::uint8_t>(pixel >> 8U),
            .blue = static_cast<std::uint8_t>(pixel)};
}

}  // namespace

std::string describe(Colour colour) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02x%02x%02x", colour.red, colour.green, colour.blue);
    return text.data();
}

void PrintTo(Colour colour, std::ostream* stream) {
    *stream << describe(colour);
}

int difference(Colour a, Colour b) {
    return std::max({std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)});
}

ColourTest isNear(Colour colour, int tolerance) {
    return [colour, tolerance](Colour other) { return difference(colour, other) <= tolerance; };
}

PixelArea PixelArea::ellipse(const PixelRect& bounds) {
    PixelArea area(bounds, 0);
    area.radiusX_ = bounds.width / 2.0;
    area.radiusY_ = bounds.height / 2.0;
    return area;
}

bool PixelArea::contains(PixelPoint point) const {
    if (!bounds_.contains(point)) {
        return false;
    }
    if (radiusX_ <= 0 || radiusY_ <= 0) {
        return true;
    }
    // How far the pixel's centre lies beyond the corner's centre, as a part of the radius; not positive on the straight
    // edges.
    const auto beyond = [](double centre, double low, double high, double radius) {
        return std::max({low + radius - centre, centre - (high - radius), 0.0}) / radius;
    };
    const double across = beyond(point.x + 0.5, bounds_.x, bounds_.maxX(), radiusX_);
    const double down = beyond(point.y + 0.5, bounds_.y, bounds_.maxY(), radiusY_);
    return across * across + down * down < 1;
}

Screenshot Screenshot::take(XConnection& x) {
    // What was asked for on the other connection is part of the picture.
    x.roundTrip();
    Screenshot result;
    result.rect_ = x.rootRect();
    const Reply<xcb_get_image_reply_t> reply(
        xcb_get_image_reply(x.forPictures(),
                            xcb_get_image(x.forPictures(), XCB_IMAGE_FORMAT_Z_PIXMAP, x.root(), 0, 0,
                                          static_cast<std::uint16_t>(result.rect_.width),
                                          static_cast<std::uint16_t>(result.rect_.height), ~0U),
                            nullptr));
    const std::size_t count =
        static_cast<std::size_t>(result.rect_.width) * static_cast<std::size_t>(result.rect_.height);
    if (!reply || reply->depth != 24 ||
        static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) != count * sizeof(std::uint32_t)) {
        throw std::runtime_error("the screen cannot be read");
    }
    result.pixels_.resize(count);
    std::memcpy(result.pixels_.data(), xcb_get_image_data(reply.get()), count * sizeof(std::uint32_t));
    return result;
}

Colour Screenshot::at(PixelPoint point) const {
    if (!rect_.contains(point)) {
        throw std::out_of_range(describe(point) + " is not on the screen");
    }
    return colourOf(pixels_[static_cast<std::size_t>(point.y - rect_.y) * static_cast<std::size_t>(rect_.width) +
                            static_cast<std::size_t>(point.x - rect_.x)]);
}

template <typename Visit>
void Screenshot::visit(const PixelArea& area, const Visit& each) const {
    const PixelRect visible = area.bounds().intersection(rect_);
    for (int y = visible.y; y < visible.maxY(); ++y) {
        for (int x = visible.x; x < visible.maxX(); ++x) {
            if (area.contains({x, y}) && !each(PixelPoint{x, y}, at({x, y}))) {
                return;
            }
        }
    }
}

std::optional<PixelPoint> Screenshot::find(const PixelArea& area, const ColourTest& test) const {
    std::optional<PixelPoint> found;
    visit(area, [&](PixelPoint point, Colour colour) {
        if (test(colour)) {
            found = point;
        }
        return !found;
    });
    return found;
}

int Screenshot::count(const PixelArea& area, const ColourTest& test) const {
    int total = 0;
    visit(area, [&](PixelPoint, Colour colour) {
        total += test(colour) ? 1 : 0;
        return true;
    });
    return total;
}

int Screenshot::distinctColours(const PixelArea& area) const {
    std::set<int> colours;
    visit(area, [&](PixelPoint, Colour colour) {
        colours.insert(colour.red << 16 | colour.green << 8 | colour.blue);
        return true;
    });
    return static_cast<int>(colours.size());
}

Colour Screenshot::mean(const PixelArea& area) const {
    std::array<std::uint64_t, 3> sums{};
    std::uint64_t pixels = 0;
    visit(area, [&](PixelPoint, Colour colour) {
        sums[0] += colour.red;
        sums[1] += colour.green;
        sums[2] += colour.blue;
        ++pixels;
        return true;
    });
    if (pixels == 0) {
        return {};
    }
    return {.red = static_cast<std::uint8_t>(sums[0] / pixels),
            .green = static_cast<std::uint8_t>(sums[1] / pixels),
            .blue = static_cast<std::uint8_t>(sums[2] / pixels)};
}

Screenshot Screenshot::part(const PixelRect& rect) const {
    Screenshot result;
    result.rect_ = rect.intersection(rect_);
    for (int y = result.rect_.y; y < result.rect_.maxY(); ++y) {
        const auto row = pixels_.begin() + static_cast<std::ptrdiff_t>(y - rect_.y) * rect_.width;
        result.pixels_.insert(result.pixels_.end(), row + (result.rect_.x - rect_.x),
                              row + (result.rect_.maxX() - rect_.x));
    }
    return result;
}

void Screenshot::savePng(const std::filesystem::path& file) const {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(pixels_.size() * 3);
    for (const std::uint32_t pixel : pixels_) {
        const Colour colour = colourOf(pixel);
        bytes.insert(bytes.end(), {colour.red, colour.green, colour.blue});
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(rect_.width);
    image.height = static_cast<png_uint_32>(rect_.height);
    image.format = PNG_FORMAT_RGB;
    image.flags = PNG_IMAGE_FLAG_FAST;
    if (png_image_write_to_file(&image, file.c_str(), 0, bytes.data(), 0, nullptr) == 0) {
        throw std::runtime_error(file.string() + ": " + std::string(image.message));
    }
}

Screenshot awaitPixels(XConnection& x, const std::string& what, const std::function<bool(const Screenshot&)>& test) {
    x.listenToPixels();
    std::optional<Screenshot> latest;
    x.await("on the screen: " + what, [&] {
        latest = Screenshot::take(x);
        return test(*latest);
    });
    return *latest;
}

}  // namespace pallwick::support
