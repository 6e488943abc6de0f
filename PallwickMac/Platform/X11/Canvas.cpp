#include <PallwickMac/Platform/X11/Canvas.h>
#include <PallwickMac/Platform/X11/Connection.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string_view>

namespace pallwick::x11 {

namespace {

xcb_render_fixed_t toFixed(double value) {
    return static_cast<xcb_render_fixed_t>(std::lround(value * 65536));
}

}  // namespace

Canvas::Canvas(const Connection& connection, int width, int height, std::uint8_t depth, xcb_render_pictformat_t format)
    : width_(width), height_(height) {
    xcb_connection_t* xcb = connection.xcb();
    const auto width16 = static_cast<std::uint16_t>(width);
    const auto height16 = static_cast<std::uint16_t>(height);
    pixmap_ = PixmapHandle(xcb, xcb_generate_id(xcb));
    xcb_create_pixmap(xcb, depth, pixmap_.id(), connection.root(), width16, height16);
    picture_ = PictureHandle(xcb, xcb_generate_id(xcb));
    xcb_render_create_picture(xcb, picture_.id(), pixmap_.id(), format, 0, nullptr);
    // A new pixmap holds anything, even what some program showed long ago.
    const xcb_rectangle_t everything{.x = 0, .y = 0, .width = width16, .height = height16};
    const xcb_render_color_t black{.red = 0, .green = 0, .blue = 0, .alpha = 0xFFFF};
    xcb_render_fill_rectangles(xcb, XCB_RENDER_PICT_OP_SRC, picture_.id(), black, 1, &everything);
}

bool Canvas::resize(const Connection& connection, int width, int height, std::uint8_t depth,
                    xcb_render_pictformat_t format) {
    if (pixmap_ && width_ == width && height_ == height) {
        return false;
    }
    // The old one goes first: two large pixmaps at once would be one too many.
    *this = Canvas();
    *this = Canvas(connection, width, height, depth, format);
    return true;
}

void readFrom(xcb_connection_t* connection, xcb_render_picture_t source, double step, double x, double y,
              xcb_render_repeat_t beyond) {
    const xcb_render_transform_t transform{.matrix11 = toFixed(step),
                                           .matrix12 = 0,
                                           .matrix13 = toFixed(x),
                                           .matrix21 = 0,
                                           .matrix22 = toFixed(step),
                                           .matrix23 = toFixed(y),
                                           .matrix31 = 0,
                                           .matrix32 = 0,
                                           .matrix33 = toFixed(1)};
    constexpr std::string_view nearest = "nearest";
    constexpr std::string_view bilinear = "bilinear";
    const std::string_view filter = step == 1 ? nearest : bilinear;
    const auto repeat = static_cast<std::uint32_t>(beyond);
    xcb_render_set_picture_transform(connection, source, transform);
    xcb_render_set_picture_filter(connection, source, static_cast<std::uint16_t>(filter.size()), filter.data(), 0,
                                  nullptr);
    xcb_render_change_picture(connection, source, XCB_RENDER_CP_REPEAT, &repeat);
}

void clipTo(xcb_connection_t* connection, xcb_render_picture_t target, std::span<const xcb_rectangle_t> rectangles) {
    xcb_render_set_picture_clip_rectangles(connection, target, 0, 0, static_cast<std::uint32_t>(rectangles.size()),
                                           rectangles.data());
}

std::vector<xcb_rectangle_t> toServer(std::span<const PixelRect> rectangles) {
    std::vector<xcb_rectangle_t> result;
    result.reserve(rectangles.size());
    std::ranges::transform(rectangles, std::back_inserter(result), [](const PixelRect& rectangle) {
        return xcb_rectangle_t{.x = static_cast<std::int16_t>(rectangle.x),
                               .y = static_cast<std::int16_t>(rectangle.y),
                               .width = static_cast<std::uint16_t>(rectangle.width),
                               .height = static_cast<std::uint16_t>(rectangle.height)};
    });
    return result;
}

}  // namespace pallwick::x11
