#pragma once

#include <xcb/render.h>
#include <xcb/xcb.h>

#include <unordered_map>

namespace pallwick::x11 {

/// The picture formats of one server (Render extension).
class RenderFormats {
public:
    /// One round trip.
    explicit RenderFormats(xcb_connection_t* connection);

    /// Premultiplied 0xAARRGGBB.
    [[nodiscard]] xcb_render_pictformat_t argb32() const { return argb32_; }
    /// 0xRRGGBB of depth 24.
    [[nodiscard]] xcb_render_pictformat_t rgb24() const { return rgb24_; }
    /// Coverage only.
    [[nodiscard]] xcb_render_pictformat_t alpha8() const { return alpha8_; }
    /// XCB_NONE for a visual that pictures cannot have.
    [[nodiscard]] xcb_render_pictformat_t ofVisual(xcb_visualid_t visual) const;

private:
    xcb_render_pictformat_t argb32_ = XCB_NONE;
    xcb_render_pictformat_t rgb24_ = XCB_NONE;
    xcb_render_pictformat_t alpha8_ = XCB_NONE;
    std::unordered_map<xcb_visualid_t, xcb_render_pictformat_t> byVisual_;
};

}  // namespace pallwick::x11
