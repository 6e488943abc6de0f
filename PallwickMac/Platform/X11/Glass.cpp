#include <PallwickMac/Backdrop/GaussianBlur.h>
#include <PallwickMac/Platform/X11/Glass.h>
#include <PallwickMac/Platform/X11/ImageTransfer.h>
#include <PallwickMac/Platform/X11/XcbReply.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>

namespace pallwick::x11 {

namespace {

constexpr std::uint8_t captureDepth = 24;
constexpr std::uint8_t drawingDepth = 32;

xcb_render_fixed_t toFixed(double value) {
    return static_cast<xcb_render_fixed_t>(std::lround(value * 65536));
}

int floorToMultiple(int value, int multiple) {
    return static_cast<int>(std::floor(static_cast<double>(value) / multiple)) * multiple;
}

PixelRect alignedToGrid(const PixelRect& area, int factor) {
    const int x = floorToMultiple(area.x, factor);
    const int y = floorToMultiple(area.y, factor);
    return {.x = x,
            .y = y,
            .width = floorToMultiple(area.maxX() + factor - 1, factor) - x,
            .height = floorToMultiple(area.maxY() + factor - 1, factor) - y};
}

PixelRect grown(const PixelRect& area, int distance) {
    return {.x = area.x - distance,
            .y = area.y - distance,
            .width = area.width + 2 * distance,
            .height = area.height + 2 * distance};
}

std::uint16_t size16(int size) {
    return static_cast<std::uint16_t>(size);
}

}  // namespace

Glass::Glass(const Connection& connection, WindowLayers& layers, BackdropCapture& capture)
    : connection_(connection), layers_(layers), capture_(capture) {}

bool Glass::capture(const Request& request) {
    request_ = request;
    contents_.reset();
    factor_ = request.sigma ? backdrop::downscaling(*request.sigma) : 1;
    const int margin = request.sigma ? backdrop::blurMargin(*request.sigma) : 0;
    // What is off the screen is seen by nobody; a panel wholly off it needs no picture at all.
    const PixelRect visible = request.area.intersected(request.root);
    if (visible.isEmpty()) {
        capturedArea_ = {};
        contents_.emplace();
        return true;
    }
    grid_ = alignedToGrid(grown(visible, margin), factor_);
    capturedArea_ = grid_.intersected(request.root);
    if (factor_ == 1) {
        grid_ = capturedArea_;
    }
    contents_ = capture_.contents(request.panel, capturedArea_, request.topmost);
    if (!contents_) {
        return false;
    }
    resize(beneath_, capturedArea_.width, capturedArea_.height, captureDepth, layers_.formats().rgb24());
    capture_.draw(*contents_, capturedArea_, beneath_.picture.id());
    return !request.sigma || frost(*request.sigma, request.material);
}

void Glass::forget() {
    contents_.reset();
    capturedArea_ = {};
    beneath_ = {};
    halves_ = {};
    frosted_ = {};
    wholes_ = {};
}

bool Glass::isOutdated() {
    return contents_ && !capturedArea_.isEmpty() && capture_.contents(request_.panel, capturedArea_) != contents_;
}

bool Glass::dependsOn(xcb_window_t window, const PixelRect& area) const {
    return contents_ && !capturedArea_.intersected(area).isEmpty() &&
           std::ranges::find(contents_->windows, window, &BackdropCapture::Contents::Window::window) !=
               contents_->windows.end();
}

bool Glass::frost(double sigma, const backdrop::Material& material) {
    xcb_connection_t* xcb = connection_.xcb();
    const Canvas* source = &beneath_;
    // Beyond the screen's edges the picture goes on as its mirror image.
    double x = grid_.x - capturedArea_.x;
    double y = grid_.y - capturedArea_.y;
    PixelRect smaller = grid_;
    std::size_t step = 0;
    for (int scale = 1; scale < factor_; scale *= 2, ++step) {
        smaller = {.x = 0, .y = 0, .width = smaller.width / 2, .height = smaller.height / 2};
        Canvas& half = halves_[step];
        resize(half, smaller.width, smaller.height, captureDepth, layers_.formats().rgb24());
        // Halving three times keeps what one bilinear step by eight would skip over.
        sample(*source, 2, x, y, XCB_RENDER_REPEAT_REFLECT);
        xcb_render_composite(xcb, XCB_RENDER_PICT_OP_SRC, source->picture.id(), XCB_NONE, half.picture.id(), 0, 0, 0, 0,
                             0, 0, size16(smaller.width), size16(smaller.height));
        source = &half;
        x = 0;
        y = 0;
    }
    const auto reply = own(xcb_get_image_reply(xcb,
                                               xcb_get_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, source->pixmap.id(), 0, 0,
                                                             size16(source->width), size16(source->height), 0xFFFFFFFF),
                                               nullptr));
    backdrop::PixelImage image(source->width, source->height);
    const std::size_t bytes = image.pixels.size() * sizeof(std::uint32_t);
    if (!reply || static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) < bytes) {
        return false;
    }
    std::memcpy(image.pixels.data(), xcb_get_image_data(reply.get()), bytes);
    // The server rounds down, both on the way here and when it enlarges.
    image = backdrop::gaussianBlurred(image, backdrop::sigmaAtScale(sigma, factor_), backdrop::Rounding::up);
    backdrop::apply(material, image);

    // Opaque all the same: with an alpha channel, servers that draw by the processor enlarge it through the mask in
    // vectors, and several times faster than without.
    resize(frosted_, image.width, image.height, drawingDepth, layers_.formats().argb32());
    putImage(xcb, frosted_.pixmap.id(), drawingDepth, image.width, image.height,
             reinterpret_cast<const std::uint8_t*>(image.pixels.data()), image.width * 4);
    return true;
}

void Glass::setMask(const QImage& mask) {
    resize(mask_, mask.width(), mask.height(), 8, layers_.formats().alpha8());
    putImage(connection_.xcb(), mask_.pixmap.id(), 8, mask.width(), mask.height(), mask.constBits(),
             static_cast<int>(mask.bytesPerLine()));
}

void Glass::setDrawing(const QImage& drawing) {
    resize(drawing_, drawing.width(), drawing.height(), drawingDepth, layers_.formats().argb32());
    putImage(connection_.xcb(), drawing_.pixmap.id(), drawingDepth, drawing.width(), drawing.height(),
             drawing.constBits(), static_cast<int>(drawing.bytesPerLine()));
}

xcb_pixmap_t Glass::compose() {
    xcb_connection_t* xcb = connection_.xcb();
    const PixelRect& area = request_.area;
    Canvas& whole = wholes_[nextWhole_];
    nextWhole_ = 1 - nextWhole_;
    resize(whole, drawing_.width, drawing_.height, drawingDepth, layers_.formats().argb32());
    const std::uint16_t width = size16(whole.width);
    const std::uint16_t height = size16(whole.height);
    const PixelRect visible = area.intersected(capturedArea_);
    const bool drawnAllOver = request_.sharp && visible == area;
    if (!drawnAllOver) {
        // Off the screen, black: nobody sees it, and clear pixels must not be left where nothing else is drawn.
        const xcb_rectangle_t everything{.x = 0, .y = 0, .width = width, .height = height};
        const xcb_render_color_t start{
            .red = 0, .green = 0, .blue = 0, .alpha = static_cast<std::uint16_t>(request_.sharp ? 0xFFFF : 0)};
        xcb_render_fill_rectangles(xcb, XCB_RENDER_PICT_OP_SRC, whole.picture.id(), start, 1, &everything);
    }
    if (!capturedArea_.isEmpty()) {
        if (request_.sharp) {
            sample(beneath_, 1, 0, 0, XCB_RENDER_REPEAT_NONE);
            xcb_render_composite(xcb, XCB_RENDER_PICT_OP_SRC, beneath_.picture.id(), XCB_NONE, whole.picture.id(),
                                 static_cast<std::int16_t>(visible.x - capturedArea_.x),
                                 static_cast<std::int16_t>(visible.y - capturedArea_.y), 0, 0,
                                 static_cast<std::int16_t>(visible.x - area.x),
                                 static_cast<std::int16_t>(visible.y - area.y), size16(visible.width),
                                 size16(visible.height));
        }
        if (request_.sigma) {
            sample(frosted_, 1.0 / factor_, static_cast<double>(area.x - grid_.x) / factor_,
                   static_cast<double>(area.y - grid_.y) / factor_, XCB_RENDER_REPEAT_PAD);
            xcb_render_composite(xcb, XCB_RENDER_PICT_OP_OVER, frosted_.picture.id(), mask_.picture.id(),
                                 whole.picture.id(), 0, 0, 0, 0, 0, 0, width, height);
        }
    }
    xcb_render_composite(xcb, XCB_RENDER_PICT_OP_OVER, drawing_.picture.id(), XCB_NONE, whole.picture.id(), 0, 0, 0, 0,
                         0, 0, width, height);
    return whole.pixmap.id();
}

void Glass::resize(Canvas& canvas, int width, int height, std::uint8_t depth, xcb_render_pictformat_t format) {
    if (canvas.pixmap && canvas.width == width && canvas.height == height) {
        return;
    }
    xcb_connection_t* xcb = connection_.xcb();
    canvas.picture = {};
    canvas.pixmap = PixmapHandle(xcb, xcb_generate_id(xcb));
    xcb_create_pixmap(xcb, depth, canvas.pixmap.id(), connection_.root(), size16(width), size16(height));
    canvas.picture = PictureHandle(xcb, xcb_generate_id(xcb));
    xcb_render_create_picture(xcb, canvas.picture.id(), canvas.pixmap.id(), format, 0, nullptr);
    // A new pixmap holds anything, even what some program showed long ago.
    const xcb_rectangle_t everything{.x = 0, .y = 0, .width = size16(width), .height = size16(height)};
    const xcb_render_color_t black{.red = 0, .green = 0, .blue = 0, .alpha = 0xFFFF};
    xcb_render_fill_rectangles(xcb, XCB_RENDER_PICT_OP_SRC, canvas.picture.id(), black, 1, &everything);
    canvas.width = width;
    canvas.height = height;
}

void Glass::sample(const Canvas& source, double step, double x, double y, xcb_render_repeat_t beyond) {
    xcb_connection_t* xcb = connection_.xcb();
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
    xcb_render_set_picture_transform(xcb, source.picture.id(), transform);
    xcb_render_set_picture_filter(xcb, source.picture.id(), static_cast<std::uint16_t>(filter.size()), filter.data(), 0,
                                  nullptr);
    xcb_render_change_picture(xcb, source.picture.id(), XCB_RENDER_CP_REPEAT, &repeat);
}

}  // namespace pallwick::x11
