#include <PallwickMac/Platform/X11/ImageTransfer.h>

#include <algorithm>

namespace pallwick::x11 {

namespace {

// A put-image request's own fields; the rest of a request is room for pixels.
constexpr std::uint32_t putImageHeader = 64;

}  // namespace

void putImage(xcb_connection_t* connection, xcb_pixmap_t pixmap, std::uint8_t depth, int width, int height,
              const std::uint8_t* pixels, int bytesPerLine) {
    const xcb_gcontext_t gc = xcb_generate_id(connection);
    xcb_create_gc(connection, gc, pixmap, 0, nullptr);
    const auto lineSize = static_cast<std::uint32_t>(bytesPerLine);
    const std::uint32_t maxBytes = xcb_get_maximum_request_length(connection) * 4 - putImageHeader;
    const int maxLines = static_cast<int>(std::max(1U, maxBytes / lineSize));
    for (int y = 0; y < height; y += maxLines) {
        const int lines = std::min(maxLines, height - y);
        xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, gc, static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(lines), 0, static_cast<std::int16_t>(y), 0, depth,
                      lineSize * static_cast<std::uint32_t>(lines),
                      pixels + static_cast<std::ptrdiff_t>(y) * bytesPerLine);
    }
    xcb_free_gc(connection, gc);
}

}  // namespace pallwick::x11
