#include <PallwickMac/Platform/X11/BackdropCapture.h>
#include <xcb/shape.h>

#include <algorithm>
#include <utility>

namespace pallwick::x11 {

namespace {

constexpr std::uint32_t fullOpacity = 0xFFFFFFFF;

// What compositing managers paint where nobody has left a ground (xcompmgr and its many descendants do so).
constexpr xcb_render_color_t managersGround{.red = 0x8080, .green = 0x8080, .blue = 0x8080, .alpha = 0xFFFF};

bool covers(const PixelRect& outer, const PixelRect& inner) {
    return outer.intersected(inner) == inner;
}

}  // namespace

BackdropCapture::BackdropCapture(const Connection& connection, WindowLayers& layers)
    : connection_(connection), layers_(layers) {}

std::optional<BackdropCapture::Contents> BackdropCapture::contents(xcb_window_t panel, const PixelRect& area,
                                                                   std::optional<xcb_window_t> topmost) {
    const std::vector<WindowLayer>& layers = layers_.layersWith(topmost.value_or(panel));
    const auto place = std::ranges::find(layers, topmost.value_or(panel), &WindowLayer::window);
    if (place == layers.end()) {
        return std::nullopt;
    }
    // A client that was just raised is above the panel until the stack guard has answered, and beneath it already in
    // every picture that a person will have the time to see.
    const auto isSeenClient = [](const WindowLayer& layer) { return layer.client && layer.onScreen; };
    const auto topmostClient = std::ranges::find_if(layers.rbegin(), layers.rend(), isSeenClient);
    const auto end = std::max(topmost ? place + 1 : place, topmostClient.base());
    Contents contents{.hasGround = true, .ground = XCB_NONE, .windows = {}};
    for (auto layer = layers.begin(); layer < end; ++layer) {
        const bool higherPanel = layer->own && layer > place;
        if (!layer->onScreen || higherPanel || layer->window == panel || layer->format == XCB_NONE ||
            layer->area.intersected(area).isEmpty()) {
            continue;
        }
        // What an opaque window hides need not be drawn.
        if (layer->opaque && !layer->shaped && layer->opacity == fullOpacity && covers(layer->area, area)) {
            contents.hasGround = false;
            contents.windows.clear();
        }
        contents.windows.push_back(
            {.window = layer->window, .area = layer->area, .revision = layer->revision, .own = layer->own});
    }
    if (contents.hasGround) {
        contents.ground = layers_.ground();
    }
    return contents;
}

std::optional<BackdropCapture::Source> BackdropCapture::onlySource(const Contents& contents, const PixelRect& area) {
    // Contents begin with an opaque window that covers the whole area where they have no ground.
    if (contents.hasGround || contents.windows.size() != 1) {
        return std::nullopt;
    }
    std::vector<WindowLayer>& layers = layers_.layers();
    const auto layer = std::ranges::find(layers, contents.windows.front().window, &WindowLayer::window);
    // Without a compositing manager an alpha channel counts for nothing and may hold anything; it must not get on.
    if (layer == layers.end() || layer->format != layers_.formats().rgb24()) {
        return std::nullopt;
    }
    std::shared_ptr<const WindowPixels> pixels = layers_.pixelsOf(*layer);
    if (!pixels) {
        return std::nullopt;
    }
    layers_.acknowledgeDamage(layer->window);
    return Source{.pixels = std::move(pixels), .origin = {.x = area.x - layer->area.x, .y = area.y - layer->area.y}};
}

void BackdropCapture::draw(const Contents& contents, const PixelRect& area, xcb_render_picture_t target) {
    // Before they are drawn: what changes from then on is told again, though it lies where changes were told before.
    for (const Contents::Window& window : contents.windows) {
        layers_.acknowledgeDamage(window.window);
    }
    if (contents.hasGround) {
        drawGround(contents.ground, area, target);
    }
    std::vector<WindowLayer>& layers = layers_.layers();
    auto layer = layers.begin();
    for (const Contents::Window& window : contents.windows) {
        layer = std::ranges::find(layer, layers.end(), window.window, &WindowLayer::window);
        if (layer == layers.end()) {
            return;
        }
        drawLayer(*layer, area, target);
    }
}

void BackdropCapture::drawGround(xcb_pixmap_t ground, const PixelRect& area, xcb_render_picture_t target) {
    xcb_connection_t* xcb = connection_.xcb();
    const xcb_rectangle_t whole{.x = 0,
                                .y = 0,
                                .width = static_cast<std::uint16_t>(area.width),
                                .height = static_cast<std::uint16_t>(area.height)};
    xcb_render_fill_rectangles(xcb, XCB_RENDER_PICT_OP_SRC, target, managersGround, 1, &whole);
    if (ground == XCB_NONE) {
        return;
    }
    // A wallpaper smaller than the screen is a tile.
    const std::uint32_t repeat = XCB_RENDER_REPEAT_NORMAL;
    const PictureHandle picture(xcb, xcb_generate_id(xcb));
    xcb_render_create_picture(xcb, picture.id(), ground, layers_.formats().ofVisual(connection_.screen().root_visual),
                              XCB_RENDER_CP_REPEAT, &repeat);
    xcb_render_composite(xcb, XCB_RENDER_PICT_OP_SRC, picture.id(), XCB_NONE, target, static_cast<std::int16_t>(area.x),
                         static_cast<std::int16_t>(area.y), 0, 0, 0, 0, whole.width, whole.height);
}

void BackdropCapture::drawLayer(WindowLayer& layer, const PixelRect& area, xcb_render_picture_t target) {
    xcb_connection_t* xcb = connection_.xcb();
    const std::shared_ptr<const WindowPixels> pixels = layers_.pixelsOf(layer);
    const PixelRect part = layer.area.intersected(area);
    if (!pixels || part.isEmpty()) {
        return;
    }
    PictureHandle opacity;
    if (layer.opacity != fullOpacity) {
        opacity = PictureHandle(xcb, xcb_generate_id(xcb));
        const auto alpha = static_cast<std::uint16_t>(layer.opacity >> 16);
        xcb_render_create_solid_fill(xcb, opacity.id(), {.red = alpha, .green = alpha, .blue = alpha, .alpha = alpha});
    }
    RegionHandle shape;
    if (layer.shaped) {
        // Its pixmap is the full rectangle, whatever the window's shape.
        shape = RegionHandle(xcb, xcb_generate_id(xcb));
        xcb_xfixes_create_region_from_window(xcb, shape.id(), layer.window, XCB_SHAPE_SK_BOUNDING);
        xcb_xfixes_set_picture_clip_region(xcb, target, shape.id(),
                                           static_cast<std::int16_t>(layer.area.x + layer.borderWidth - area.x),
                                           static_cast<std::int16_t>(layer.area.y + layer.borderWidth - area.y));
    }
    const bool mixed = !layer.opaque || layer.opacity != fullOpacity;
    xcb_render_composite(xcb, mixed ? XCB_RENDER_PICT_OP_OVER : XCB_RENDER_PICT_OP_SRC, pixels->picture.id(),
                         opacity.id(), target, static_cast<std::int16_t>(part.x - layer.area.x),
                         static_cast<std::int16_t>(part.y - layer.area.y), 0, 0,
                         static_cast<std::int16_t>(part.x - area.x), static_cast<std::int16_t>(part.y - area.y),
                         static_cast<std::uint16_t>(part.width), static_cast<std::uint16_t>(part.height));
    if (layer.shaped) {
        xcb_xfixes_set_picture_clip_region(xcb, target, XCB_NONE, 0, 0);
    }
}

}  // namespace pallwick::x11
