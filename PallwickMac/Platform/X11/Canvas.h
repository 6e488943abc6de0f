#pragma once

#include <PallwickMac/Platform/X11/PixelMapping.h>
#include <PallwickMac/Platform/X11/Resources.h>

#include <cstdint>
#include <span>
#include <vector>

namespace pallwick::x11 {

class Connection;

/// A pixmap that is drawn with and into.
class Canvas {
public:
    Canvas() = default;
    /// The pixmap is there once the server has read the requests, and black.
    Canvas(const Connection& connection, int width, int height, std::uint8_t depth, xcb_render_pictformat_t format);

    /// As the constructor, unless it has that size already; then its pixels stay. False then.
    bool resize(const Connection& connection, int width, int height, std::uint8_t depth,
                xcb_render_pictformat_t format);

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    [[nodiscard]] xcb_pixmap_t pixmap() const { return pixmap_.id(); }
    [[nodiscard]] xcb_render_picture_t picture() const { return picture_.id(); }

private:
    int width_ = 0;
    int height_ = 0;
    PixmapHandle pixmap_;
    PictureHandle picture_;
};

/// From now on `source` is read every `step` pixels from `(x, y)` on, with bilinear interpolation unless that meets
/// whole pixels only.
void readFrom(xcb_connection_t* connection, xcb_render_picture_t source, double step, double x, double y,
              xcb_render_repeat_t beyond);

/// From now on drawing into `target` changes these rectangles alone.
void clipTo(xcb_connection_t* connection, xcb_render_picture_t target, std::span<const xcb_rectangle_t> rectangles);

/// As the protocol has them: sixteen bits a number.
[[nodiscard]] std::vector<xcb_rectangle_t> toServer(std::span<const PixelRect> rectangles);

}  // namespace pallwick::x11
