#pragma once

#include <xcb/xcb.h>

#include <cstdint>

namespace pallwick::x11 {

/// Copies rows of pixels into a pixmap of the same size and depth, in as many requests as it takes. Rows are
/// `bytesPerLine` bytes apart, a multiple of four.
void putImage(xcb_connection_t* connection, xcb_pixmap_t pixmap, std::uint8_t depth, int width, int height,
              const std::uint8_t* pixels, int bytesPerLine);

}  // namespace pallwick::x11
