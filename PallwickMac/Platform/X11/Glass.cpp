#include <PallwickMac/Backdrop/GaussianBlur.h>
#include <PallwickMac/Platform/X11/Glass.h>
#include <PallwickMac/Platform/X11/ImageTransfer.h>
#include <PallwickMac/Platform/X11/XcbReply.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace pallwick::x11 {

namespace {

constexpr std::uint8_t captureDepth = 24;
constexpr std::uint8_t drawingDepth = 32;

// Pixels. With the round corners of an overlay, at twice the scale too, and the cells that they are looked at in.
constexpr int widestRim = 32;

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

bool contains(const PixelRect& outer, const PixelRect& inner) {
    return outer.intersected(inner) == inner;
}

PixelRect grown(const PixelRect& area, int distance) {
    return {.x = area.x - distance,
            .y = area.y - distance,
            .width = area.width + 2 * distance,
            .height = area.height + 2 * distance};
}

PixelRect largestOf(const std::vector<PixelRect>& rectangles) {
    const auto largest = std::ranges::max_element(
        rectangles, {}, [](const PixelRect& rectangle) { return std::int64_t{rectangle.width} * rectangle.height; });
    return largest == rectangles.end() ? PixelRect() : *largest;
}

std::uint16_t size16(int size) {
    return static_cast<std::uint16_t>(size);
}

void fill(xcb_connection_t* xcb, const Canvas& canvas, std::uint16_t alpha,
          const std::vector<xcb_rectangle_t>& rectangles) {
    const xcb_render_color_t black{.red = 0, .green = 0, .blue = 0, .alpha = alpha};
    xcb_render_fill_rectangles(xcb, XCB_RENDER_PICT_OP_SRC, canvas.picture(), black,
                               static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

std::vector<xcb_rectangle_t> allOf(const Canvas& canvas) {
    return toServer(std::array{PixelRect{.x = 0, .y = 0, .width = canvas.width(), .height = canvas.height()}});
}

}  // namespace

Glass::Glass(const Connection& connection, WindowLayers& layers, BackdropCapture& capture)
    : connection_(connection), layers_(layers), capture_(capture) {}

bool Glass::capture(const Request& request) {
    // The capture may show elsewhere and through another glass.
    if (request.sigma.has_value() != request_.sigma.has_value() || request.sharp != request_.sharp) {
        tiles_.reset();
    }
    request_ = request;
    contents_.reset();
    onlyWindow_.reset();
    hasHiddenChanges_ = false;
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
    // Beyond the screen's edges the picture is mirrored, which takes one that ends there.
    if (grid_ == capturedArea_) {
        onlyWindow_ = capture_.onlySource(*contents_, capturedArea_);
    }
    if (!onlyWindow_) {
        beneath_.resize(connection_, capturedArea_.width, capturedArea_.height, captureDepth,
                        layers_.formats().rgb24());
        capture_.draw(*contents_, capturedArea_, beneath_.picture());
    }
    return !request.sigma || frost(*request.sigma, request.material);
}

void Glass::forget() {
    contents_.reset();
    capturedArea_ = {};
    onlyWindow_.reset();
    beneath_ = {};
    halves_ = {};
    blurred_ = {};
    frosted_ = {};
    tinted_ = {};
    wholes_ = {};
}

bool Glass::isOutdated() {
    return contents_ && !capturedArea_.isEmpty() && capture_.contents(request_.panel, capturedArea_) != contents_;
}

bool Glass::noteChange(xcb_window_t window, const PixelRect& area) {
    const PixelRect changed = capturedArea_.intersected(area);
    if (!contents_ || changed.isEmpty() ||
        std::ranges::find(contents_->windows, window, &BackdropCapture::Contents::Window::window) ==
            contents_->windows.end()) {
        return false;
    }
    const PixelRect inWindow{.x = changed.x - request_.area.x,
                             .y = changed.y - request_.area.y,
                             .width = changed.width,
                             .height = changed.height};
    const bool hidden = contains(hidden_, inWindow);
    hasHiddenChanges_ = hasHiddenChanges_ || hidden;
    return !hidden;
}

Glass::Sharp Glass::sharp() const {
    return onlyWindow_ ? Sharp{.picture = onlyWindow_->pixels->picture.id(), .origin = onlyWindow_->origin}
                       : Sharp{.picture = beneath_.picture(), .origin = {}};
}

bool Glass::frost(double sigma, const backdrop::Material& material) {
    xcb_connection_t* xcb = connection_.xcb();
    const Sharp whole = sharp();
    xcb_render_picture_t source = whole.picture;
    xcb_pixmap_t smallest = onlyWindow_ ? onlyWindow_->pixels->pixmap.id() : beneath_.pixmap();
    // Beyond the screen's edges the picture goes on as its mirror image.
    double x = whole.origin.x + grid_.x - capturedArea_.x;
    double y = whole.origin.y + grid_.y - capturedArea_.y;
    PixelRect smaller{.x = static_cast<int>(x), .y = static_cast<int>(y), .width = grid_.width, .height = grid_.height};
    std::size_t step = 0;
    for (int scale = 1; scale < factor_; scale *= 2, ++step) {
        smaller = {.x = 0, .y = 0, .width = smaller.width / 2, .height = smaller.height / 2};
        Canvas& half = halves_[step];
        half.resize(connection_, smaller.width, smaller.height, captureDepth, layers_.formats().rgb24());
        // Halving three times keeps what one bilinear step by eight would skip over.
        readFrom(xcb, source, 2, x, y, XCB_RENDER_REPEAT_REFLECT);
        xcb_render_composite(xcb, XCB_RENDER_PICT_OP_SRC, source, XCB_NONE, half.picture(), 0, 0, 0, 0, 0, 0,
                             size16(smaller.width), size16(smaller.height));
        source = half.picture();
        smallest = half.pixmap();
        x = 0;
        y = 0;
    }
    if (onlyWindow_) {
        readFrom(xcb, whole.picture, 1, 0, 0, XCB_RENDER_REPEAT_NONE);
    }
    const auto reply = own(xcb_get_image_reply(
        xcb,
        xcb_get_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, smallest, static_cast<std::int16_t>(smaller.x),
                      static_cast<std::int16_t>(smaller.y), size16(smaller.width), size16(smaller.height), 0xFFFFFFFF),
        nullptr));
    backdrop::PixelImage image(smaller.width, smaller.height);
    const std::size_t bytes = image.pixels.size() * sizeof(std::uint32_t);
    if (!reply || static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) < bytes) {
        return false;
    }
    std::memcpy(image.pixels.data(), xcb_get_image_data(reply.get()), bytes);
    // The server rounds down, both on the way here and when it enlarges.
    blurred_ = backdrop::gaussianBlurred(image, backdrop::sigmaAtScale(sigma, factor_), backdrop::Rounding::up);
    backdrop::apply(material, blurred_);
    areFrostedOutdated_ = true;
    return true;
}

void Glass::setMask(const QImage& mask) {
    mask_.resize(connection_, mask.width(), mask.height(), 8, layers_.formats().alpha8());
    putImage(connection_.xcb(), mask_.pixmap(), 8, mask.width(), mask.height(), mask.constBits(),
             static_cast<int>(mask.bytesPerLine()));
    maskSummary_ = summarised(mask);
    tiles_.reset();
}

void Glass::setDrawing(const QImage& drawing) {
    drawing_.resize(connection_, drawing.width(), drawing.height(), drawingDepth, layers_.formats().argb32());
    putImage(connection_.xcb(), drawing_.pixmap(), drawingDepth, drawing.width(), drawing.height(), drawing.constBits(),
             static_cast<int>(drawing.bytesPerLine()));
    drawingSummary_ = summarised(drawing);
    tiles_.reset();
}

void Glass::cutUp() {
    tiles_ = tilesOf(drawing_.width(), drawing_.height(), drawingSummary_,
                     request_.sigma ? std::optional(maskSummary_) : std::nullopt);
    mixed_ = toServer(tiles_->mixed);
    plain_ = toServer(tiles_->plain);
    changing_ = toServer(tiles_->clear);
    changing_.insert(changing_.end(), mixed_.begin(), mixed_.end());
    changing_.insert(changing_.end(), plain_.begin(), plain_.end());
    areFrostedOutdated_ = true;
    for (Whole& whole : wholes_) {
        whole.begun = false;
    }
    const PixelRect covered = largestOf(tiles_->opaque);
    // Beyond the blur's reach, and that of the pixels of the small picture that enlarging mixes.
    const int reach = request_.sigma ? backdrop::blurMargin(*request_.sigma) + 2 * factor_ : 0;
    hidden_ = grown(covered, -reach);
    if (hidden_.isEmpty()) {
        hidden_ = {};
    }
    const PixelRect window{.x = 0, .y = 0, .width = drawing_.width(), .height = drawing_.height()};
    showsOnlyItsRim_ = !covered.isEmpty() && contains(grown(covered, widestRim), window);
}

void Glass::begin(Whole& whole) {
    clipTo(connection_.xcb(), whole.canvas.picture(), allOf(whole.canvas));
    xcb_render_composite(connection_.xcb(), XCB_RENDER_PICT_OP_SRC, drawing_.picture(), XCB_NONE,
                         whole.canvas.picture(), 0, 0, 0, 0, 0, 0, size16(whole.canvas.width()),
                         size16(whole.canvas.height()));
    whole.begun = true;
}

void Glass::drawSharp(const Whole& whole, const PixelRect& visible) {
    const PixelRect& area = request_.area;
    const Sharp beneath = sharp();
    clipTo(connection_.xcb(), whole.canvas.picture(), changing_);
    if (!onlyWindow_) {
        readFrom(connection_.xcb(), beneath.picture, 1, 0, 0, XCB_RENDER_REPEAT_NONE);
    }
    xcb_render_composite(connection_.xcb(), XCB_RENDER_PICT_OP_SRC, beneath.picture, XCB_NONE, whole.canvas.picture(),
                         static_cast<std::int16_t>(beneath.origin.x + visible.x - capturedArea_.x),
                         static_cast<std::int16_t>(beneath.origin.y + visible.y - capturedArea_.y), 0, 0,
                         static_cast<std::int16_t>(visible.x - area.x), static_cast<std::int16_t>(visible.y - area.y),
                         size16(visible.width), size16(visible.height));
}

void Glass::drawFrosted(const Whole& whole) {
    xcb_connection_t* xcb = connection_.xcb();
    const auto upload = [&](Canvas& canvas, const backdrop::PixelImage& image) {
        // Opaque or not: with an alpha channel, servers that draw by the processor enlarge it in vectors, and several
        // times faster than without.
        canvas.resize(connection_, image.width, image.height, drawingDepth, layers_.formats().argb32());
        putImage(xcb, canvas.pixmap(), drawingDepth, image.width, image.height,
                 reinterpret_cast<const std::uint8_t*>(image.pixels.data()), image.width * 4);
    };
    const auto enlarge = [&](const Canvas& canvas, std::uint8_t operation, xcb_render_picture_t mask,
                             const std::vector<xcb_rectangle_t>& tiles) {
        readFrom(xcb, canvas.picture(), 1.0 / factor_, static_cast<double>(request_.area.x - grid_.x) / factor_,
                 static_cast<double>(request_.area.y - grid_.y) / factor_, XCB_RENDER_REPEAT_PAD);
        clipTo(xcb, whole.canvas.picture(), tiles);
        xcb_render_composite(xcb, operation, canvas.picture(), mask, whole.canvas.picture(), 0, 0, 0, 0, 0, 0,
                             size16(whole.canvas.width()), size16(whole.canvas.height()));
    };
    if (std::exchange(areFrostedOutdated_, false)) {
        if (!mixed_.empty()) {
            upload(frosted_, blurred_);
        }
        if (!plain_.empty()) {
            upload(tinted_, backdrop::tinted(blurred_, tiles_->coverage, tiles_->tint));
        }
    }
    if (!mixed_.empty()) {
        enlarge(frosted_, XCB_RENDER_PICT_OP_OVER, mask_.picture(), mixed_);
    }
    if (!plain_.empty()) {
        // Over something opaque "over" would come to the same, and takes servers that draw by the processor half as
        // long again.
        enlarge(tinted_, request_.sharp ? XCB_RENDER_PICT_OP_ATOP : XCB_RENDER_PICT_OP_SRC, XCB_NONE, plain_);
    }
}

xcb_pixmap_t Glass::compose() {
    xcb_connection_t* xcb = connection_.xcb();
    if (!tiles_) {
        cutUp();
    }
    Whole& whole = wholes_[nextWhole_];
    nextWhole_ = 1 - nextWhole_;
    if (whole.canvas.resize(connection_, drawing_.width(), drawing_.height(), drawingDepth,
                            layers_.formats().argb32()) ||
        !whole.begun) {
        begin(whole);
    }
    const bool frosted = request_.sigma && !capturedArea_.isEmpty();
    const std::vector<xcb_rectangle_t>& drawn = frosted ? mixed_ : changing_;
    const PixelRect visible = request_.area.intersected(capturedArea_);
    if (!request_.sharp || visible != request_.area) {
        // Off the screen, black: nobody sees it, and clear pixels must not be left where nothing else is drawn.
        clipTo(xcb, whole.canvas.picture(), allOf(whole.canvas));
        fill(xcb, whole.canvas, request_.sharp ? 0xFFFF : 0, request_.sharp ? changing_ : drawn);
    }
    if (request_.sharp && !visible.isEmpty()) {
        drawSharp(whole, visible);
    }
    if (frosted) {
        drawFrosted(whole);
    }
    clipTo(xcb, whole.canvas.picture(), drawn);
    xcb_render_composite(xcb, XCB_RENDER_PICT_OP_OVER, drawing_.picture(), XCB_NONE, whole.canvas.picture(), 0, 0, 0, 0,
                         0, 0, size16(whole.canvas.width()), size16(whole.canvas.height()));
    return whole.canvas.pixmap();
}

}  // namespace pallwick::x11
