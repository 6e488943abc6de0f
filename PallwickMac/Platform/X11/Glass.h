#pragma once

#include <PallwickMac/Backdrop/Frost.h>
#include <PallwickMac/Platform/X11/BackdropCapture.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/Resources.h>

#include <QImage>

#include <array>
#include <optional>

namespace pallwick::x11 {

/// One panel's picture over what lies beneath it, put together on the server: the sharp picture of what lies beneath
/// where that would otherwise not show, the frosted one through a mask over it, and the panel's own drawing on top.
///
/// Other programs' pixels are scaled down and up on the server; only a small picture, some sixty times smaller, comes
/// here to be blurred. It is gone when the object is, and nothing of it is ever kept elsewhere.
class Glass {
public:
    /// None is owned; all must outlive the object.
    Glass(const Connection& connection, WindowLayers& layers, BackdropCapture& capture);

    struct Request {
        xcb_window_t panel = XCB_WINDOW_NONE;
        /// The panel's window in root pixels.
        PixelRect area;
        PixelRect root;
        /// Standard deviation of the blur in pixels; none without a frosted layer.
        std::optional<double> sigma;
        backdrop::Material material;
        /// Whether the sharp picture is to be drawn too.
        bool sharp = false;
        /// Captures what is beneath this window and the window itself instead of what is beneath the panel.
        std::optional<xcb_window_t> topmost;

        friend bool operator==(const Request&, const Request&) = default;
    };

    /// Captures what lies beneath and keeps it for `compose`. False if that was impossible.
    [[nodiscard]] bool capture(const Request& request);

    /// Lets go of every picture of other programs.
    void forget();

    /// Whether windows have come, gone or moved beneath the panel since the capture.
    [[nodiscard]] bool isOutdated();

    /// Whether the capture shows some of `area` (root pixels) of that window.
    [[nodiscard]] bool dependsOn(xcb_window_t window, const PixelRect& area) const;

    /// Coverage times opacity of the frosted layer, as large as the panel's window, format Alpha8.
    void setMask(const QImage& mask);

    /// The panel's own drawing, as large as its window, premultiplied.
    void setDrawing(const QImage& drawing);

    /// The whole picture. It stays as it is through the next call but not the one after that, so that it can be shown
    /// while the next one is made. `setMask` (for a frosted layer) and `setDrawing` come first.
    [[nodiscard]] xcb_pixmap_t compose();

    /// The panel's own drawing alone.
    [[nodiscard]] xcb_pixmap_t drawing() const { return drawing_.pixmap.id(); }

private:
    /// A pixmap that is drawn with and into, as large as it needs to be.
    struct Canvas {
        int width = 0;
        int height = 0;
        PixmapHandle pixmap;
        PictureHandle picture;
    };

    void resize(Canvas& canvas, int width, int height, std::uint8_t depth, xcb_render_pictformat_t format);
    /// Makes the bilinear samples of `source` taken every `step` pixels from `(x, y)` on its own coordinates.
    void sample(const Canvas& source, double step, double x, double y, xcb_render_repeat_t beyond);
    [[nodiscard]] bool frost(double sigma, const backdrop::Material& material);

    const Connection& connection_;
    WindowLayers& layers_;
    BackdropCapture& capture_;
    Request request_;
    std::optional<BackdropCapture::Contents> contents_;
    PixelRect capturedArea_;
    /// The grid of the small picture in root pixels: fixed to the root, or the blur would shimmer during a drag.
    PixelRect grid_;
    int factor_ = 1;
    Canvas beneath_;
    std::array<Canvas, 3> halves_;
    Canvas frosted_;
    Canvas mask_;
    Canvas drawing_;
    /// The one that is shown and the one to be drawn next.
    std::array<Canvas, 2> wholes_;
    std::size_t nextWhole_ = 0;
};

}  // namespace pallwick::x11
