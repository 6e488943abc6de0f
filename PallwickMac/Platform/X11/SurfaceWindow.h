#pragma once

#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/PixelMapping.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace pallwick::x11 {

/// The native window of a panel: override-redirect with an alpha channel, which no window manager moves, decorates,
/// focuses or stacks. Coordinates are root pixels, y down.
///
/// It is mapped once, outside the root's area, and hidden by moving it out again. A compositing manager may fade a
/// newly mapped window in for hundreds of milliseconds, with what it covers showing; a window that is mapped already
/// covers at once. Its picture is the window's background, so the server repaints it by itself wherever it is exposed.
class SurfaceWindow {
public:
    /// Made parked, one pixel large and opaque. `connection` is not owned and must outlive the object.
    explicit SurfaceWindow(const Connection& connection);
    ~SurfaceWindow();

    SurfaceWindow(const SurfaceWindow&) = delete;
    SurfaceWindow& operator=(const SurfaceWindow&) = delete;

    [[nodiscard]] xcb_window_t id() const { return window_; }

    /// Where it is or, while parked, was asked to be sized.
    [[nodiscard]] const PixelRect& area() const { return area_; }
    [[nodiscard]] bool isParked() const { return parked_; }

    /// The sequence number of the request that brought it onto the screen last: events from before that were meant for
    /// what the window showed then.
    [[nodiscard]] std::uint32_t shownAt() const { return shownAt_; }

    /// Whether a rectangle is one that X can place: 16-bit coordinates, at least one pixel large.
    [[nodiscard]] static bool isPlaceable(const PixelRect& area);

    /// Moves and resizes in one request; before that restacks directly above `below` where that is given, unless it is
    /// gone. `area` must be placeable.
    void place(const PixelRect& area, std::optional<xcb_window_t> below = std::nullopt);

    /// Goes directly beneath a sibling.
    void stackBelow(xcb_window_t above);

    /// Moves out of the root's area, sized for its next place.
    void park(int width, int height);

    /// Shows `picture`, of depth 32 and as large as the window is or is about to become. It must not be drawn into
    /// while it is shown: the server may repaint the window from it at any moment.
    void setPicture(xcb_pixmap_t picture);

    /// Gives the picture's memory on the server back; the window is opaque black until the next one.
    void dropPicture();

    /// Window pixels; none stands for the whole rectangle, an empty list for no pixel at all.
    void setBoundingShape(std::optional<std::vector<PixelRect>> rows);

    /// An empty input region lets every click through, whatever is drawn.
    void setTakesMouse(bool takesMouse);

    void setCursor(xcb_cursor_t cursor);

private:
    void describe();

    const Connection& connection_;
    xcb_window_t window_;
    PixelRect area_;
    bool parked_ = true;
    std::uint32_t shownAt_ = 0;
    std::optional<std::vector<PixelRect>> shape_;
    bool takesMouse_ = true;
    xcb_cursor_t cursor_ = XCB_CURSOR_NONE;
};

}  // namespace pallwick::x11
