#pragma once

#include <PallwickMac/Backdrop/Frost.h>
#include <PallwickMac/Platform/X11/BackdropCapture.h>
#include <PallwickMac/Platform/X11/Canvas.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/PanelTiles.h>

#include <QImage>

#include <array>
#include <optional>
#include <vector>

namespace pallwick::x11 {

/// One panel's picture over what lies beneath it, put together on the server: the sharp picture of what lies beneath
/// where that would otherwise not show, the frosted one through a mask over it, and the panel's own drawing on top.
/// What the drawing hides is neither captured again when it changes nor drawn.
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

    /// The drawing hides what lies beneath, but for a narrow rim and the corners.
    [[nodiscard]] bool showsOnlyItsRim() const { return showsOnlyItsRim_; }

    /// Captures what lies beneath and keeps it for `compose`. False if that was impossible.
    [[nodiscard]] bool capture(const Request& request);

    /// Lets go of every picture of other programs.
    void forget();

    /// Whether windows have come, gone or moved beneath the panel since the capture.
    [[nodiscard]] bool isOutdated();

    /// That window's pixels have changed in `area` (root pixels). Whether that shows: if it does, the next picture
    /// needs a new capture.
    [[nodiscard]] bool noteChange(xcb_window_t window, const PixelRect& area);

    /// Whether something has changed since the capture that the drawing hides, and another drawing might not.
    [[nodiscard]] bool hasHiddenChanges() const { return hasHiddenChanges_; }

    /// Coverage times opacity of the frosted layer, as large as the panel's window, format Alpha8.
    void setMask(const QImage& mask);

    /// The panel's own drawing, as large as its window, premultiplied.
    void setDrawing(const QImage& drawing);

    /// The whole picture. It stays as it is through the next call but not the one after that, so that it can be shown
    /// while the next one is made. `setMask` (for a frosted layer) and `setDrawing` come first.
    [[nodiscard]] xcb_pixmap_t compose();

    /// The panel's own drawing alone.
    [[nodiscard]] xcb_pixmap_t drawing() const { return drawing_.pixmap(); }

private:
    /// One of two pictures that are made in turns.
    struct Whole {
        Canvas canvas;
        /// What never changes in it has been drawn.
        bool begun = false;
    };

    /// What lies beneath, sharp: the one window that it consists of, or what was drawn of several.
    struct Sharp {
        xcb_render_picture_t picture = XCB_NONE;
        /// Of the captured area's top-left corner.
        PixelPoint origin;
    };

    [[nodiscard]] Sharp sharp() const;
    [[nodiscard]] bool frost(double sigma, const backdrop::Material& material);
    /// Makes the tiles, and what is derived from them.
    void cutUp();
    /// Draws what never changes.
    void begin(Whole& whole);
    void drawSharp(const Whole& whole, const PixelRect& visible);
    void drawFrosted(const Whole& whole);

    const Connection& connection_;
    WindowLayers& layers_;
    BackdropCapture& capture_;
    Request request_;
    std::optional<BackdropCapture::Contents> contents_;
    PixelRect capturedArea_;
    /// The grid of the small picture in root pixels: fixed to the root, or the blur would shimmer during a drag.
    PixelRect grid_;
    int factor_ = 1;
    std::optional<BackdropCapture::Source> onlyWindow_;
    Canvas beneath_;
    std::array<Canvas, 3> halves_;
    /// What came here to be blurred.
    backdrop::PixelImage blurred_;
    /// `blurred_` on the server again: as it is, and as it shows through the plain tiles.
    Canvas frosted_;
    Canvas tinted_;
    bool areFrostedOutdated_ = true;
    Canvas mask_;
    Canvas drawing_;
    CellSummary maskSummary_;
    CellSummary drawingSummary_;
    /// None while they are to be made anew.
    std::optional<PanelTiles> tiles_;
    /// The tiles in which something shows of what lies beneath, and those that need the mask, in window pixels.
    std::vector<xcb_rectangle_t> changing_;
    std::vector<xcb_rectangle_t> mixed_;
    std::vector<xcb_rectangle_t> plain_;
    /// Window pixels that have no part in what is seen, neither sharp nor blurred.
    PixelRect hidden_;
    bool showsOnlyItsRim_ = false;
    bool hasHiddenChanges_ = false;
    /// The one that is shown and the one to be drawn next.
    std::array<Whole, 2> wholes_;
    std::size_t nextWhole_ = 0;
};

}  // namespace pallwick::x11
