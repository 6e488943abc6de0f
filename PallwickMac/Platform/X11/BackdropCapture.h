#pragma once

#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/PixelMapping.h>
#include <PallwickMac/Platform/X11/WindowLayers.h>

#include <memory>
#include <optional>
#include <vector>

namespace pallwick::x11 {

/// Draws, on the server, what a person would see beneath a panel: every window below it in stacking order and every
/// client, our own lower panels included, over the desktop's ground.
class BackdropCapture {
public:
    /// Which windows lie beneath, where, and in which of their states. While two are equal and no window of it is
    /// damaged, a capture would come out the same.
    struct Contents {
        struct Window {
            xcb_window_t window = XCB_WINDOW_NONE;
            PixelRect area;
            std::uint64_t revision = 0;
            bool own = false;

            friend bool operator==(const Window&, const Window&) = default;
        };

        /// No window hides all of the ground.
        bool hasGround = true;
        xcb_pixmap_t ground = XCB_NONE;
        /// Bottom to top, only those that reach into the area.
        std::vector<Window> windows;

        friend bool operator==(const Contents&, const Contents&) = default;
    };

    /// Neither is owned; both must outlive the object.
    BackdropCapture(const Connection& connection, WindowLayers& layers);

    /// What is beneath `panel` in `area` (root pixels); none if the panel is not on the screen. With `topmost` it is
    /// that window and all below it instead, for a panel on its way to the place above it.
    [[nodiscard]] std::optional<Contents> contents(xcb_window_t panel, const PixelRect& area,
                                                   std::optional<xcb_window_t> topmost = std::nullopt);

    /// Where all of an area can be read without drawing anything first.
    struct Source {
        std::shared_ptr<const WindowPixels> pixels;
        /// Of the area's top-left corner in them.
        PixelPoint origin;
    };

    /// The pixels of the one window that `contents` are made of, without an alpha channel; none where it takes more
    /// than one, or its pixels have such a channel. Whoever reads them leaves their picture without a transformation.
    [[nodiscard]] std::optional<Source> onlySource(const Contents& contents, const PixelRect& area);

    /// Draws `contents` into `target`, whose top-left corner is that of `area`.
    void draw(const Contents& contents, const PixelRect& area, xcb_render_picture_t target);

private:
    void drawGround(xcb_pixmap_t ground, const PixelRect& area, xcb_render_picture_t target);
    void drawLayer(WindowLayer& layer, const PixelRect& area, xcb_render_picture_t target);

    const Connection& connection_;
    WindowLayers& layers_;
};

}  // namespace pallwick::x11
