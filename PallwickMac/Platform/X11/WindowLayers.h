#pragma once

#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/PixelMapping.h>
#include <PallwickMac/Platform/X11/RenderFormats.h>
#include <PallwickMac/Platform/X11/Resources.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace pallwick::x11 {

/// A window's pixels as they are at any time, covered parts included, border and all. They stay readable while somebody
/// holds on to them, as they last were, though the window be resized or closed.
struct WindowPixels {
    PixmapHandle pixmap;
    PictureHandle picture;
};

/// One window of the screen as a layer of the picture that a person sees.
struct WindowLayer {
    xcb_window_t window = XCB_WINDOW_NONE;
    /// Root pixels, border included.
    PixelRect area;
    /// Seen now: viewable, neither minimised nor hidden, and on the current workspace.
    bool onScreen = false;
    /// Its alpha channel counts for nothing, or it has none.
    bool opaque = false;
    bool shaped = false;
    int borderWidth = 0;
    xcb_render_pictformat_t format = XCB_NONE;
    /// What the compositing manager is asked to draw it with, 0xFFFFFFFF for all, and where there is none.
    std::uint32_t opacity = 0xFFFFFFFF;
    /// Another number whenever its pixels have to be named anew or it is to be drawn in another way.
    std::uint64_t revision = 0;
    /// One of our own panels: it changes by our own doing only, and no damage is reported for it.
    bool own = false;
    /// A window manager's client, or would be one if there were a window manager: the panels stay above it.
    bool client = false;
    /// Named at first use and again after a resize.
    std::shared_ptr<const WindowPixels> pixels;
    DamageHandle damage;
    /// The server has told of damage and will not tell of more within the same bounds.
    bool damageReported = false;
};

/// The children of the root window in stacking order, with what it takes to draw each, kept up to date by events.
///
/// While it is active, the server keeps the pixels of every one of them in memory of its own (Composite's automatic
/// redirection, which goes along with any compositing manager) and tells what changes (Damage). It is active only as
/// long as somebody needs it.
class WindowLayers {
public:
    /// `connection` is not owned and must outlive the object.
    explicit WindowLayers(const Connection& connection);

    WindowLayers(const WindowLayers&) = delete;
    WindowLayers& operator=(const WindowLayers&) = delete;
    ~WindowLayers();

    [[nodiscard]] const RenderFormats& formats() const { return formats_; }

    [[nodiscard]] bool isActive() const { return active_; }
    void setActive(bool active);

    /// What an event says about the picture on the screen.
    struct Change {
        /// Windows have come, gone, moved or changed their state.
        bool structure = false;
        /// The window whose pixels have changed, and where on the root; none for no such change.
        xcb_window_t damaged = XCB_WINDOW_NONE;
        PixelRect area;
    };

    /// Takes any event.
    [[nodiscard]] Change handle(const xcb_generic_event_t& event);

    /// Bottom to top. Asks the server again if windows have come, gone or changed their state.
    [[nodiscard]] std::vector<WindowLayer>& layers();

    /// The same, asked for again if `window`, which is ours and new, is not among them yet.
    [[nodiscard]] std::vector<WindowLayer>& layersWith(xcb_window_t window);

    /// Null for a window that has none.
    [[nodiscard]] std::shared_ptr<const WindowPixels> pixelsOf(WindowLayer& layer);

    /// The desktop's ground, a pixmap as large as the root or a tile of it. XCB_NONE where nobody has left one and a
    /// compositing manager draws a ground of its own.
    [[nodiscard]] xcb_pixmap_t ground();

    /// Whether a compositing manager puts the layers together.
    void setCompositing(bool compositing);

    /// The root has another size, and its ground another picture.
    void forgetGround();

    /// Lets the server tell of changes in places that it has told of before. A window whose changes matter to nobody is
    /// best left alone: then it soon has nothing new to tell.
    void acknowledgeDamage(xcb_window_t window);

    /// From now on a window of ours is no layer of the picture, though it is on the screen.
    void leaveOut(xcb_window_t window);

private:
    [[nodiscard]] WindowLayer* find(xcb_window_t window);
    void forgetPixels(WindowLayer& layer);
    /// To be called before a window is asked about: what changes after the answer is told.
    void watchState(xcb_window_t window) const;
    void refresh();
    void acknowledge(WindowLayer& layer);
    void handleConfigure(const xcb_configure_notify_event_t& event);
    [[nodiscard]] Change handleDamage(const xcb_damage_notify_event_t& event);
    [[nodiscard]] bool isAboutVisibility(const xcb_property_notify_event_t& event) const;

    const Connection& connection_;
    RenderFormats formats_;
    bool active_ = false;
    bool stale_ = true;
    std::vector<WindowLayer> layers_;
    bool compositing_ = false;
    /// Set by whoever has painted the root.
    xcb_pixmap_t rootPixmap_ = XCB_NONE;
    PixmapHandle rootBackground_;
    std::vector<xcb_window_t> leftOut_;
    std::uint64_t revisions_ = 0;
    /// The request that the layers were last asked for with; events from before it tell nothing new.
    std::uint32_t refreshedAt_ = 0;
};

}  // namespace pallwick::x11
