#include <PallwickMac/Platform/X11/ImageTransfer.h>
#include <PallwickMac/Platform/X11/SystemTrayIcon.h>
#include <xcb/xcb_aux.h>
#include <xcb/xcb_icccm.h>

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace pallwick::x11 {

namespace {

// Until the panel gives it another one, and the least that it asks for.
constexpr std::uint16_t usualSide = 22;

// No panel is thicker, and the size comes from another program.
constexpr int largestSide = 512;

// XEmbed's protocol version, and the flag by which a window asks to be mapped.
constexpr std::uint32_t xembedVersion = 0;
constexpr std::uint32_t xembedMapped = 1;

constexpr std::uint32_t requestDock = 0;

}  // namespace

SystemTrayIcon::SystemTrayIcon(SystemTray& tray, const StatusItemDescription& description)
    : tray_(tray),
      connection_(tray.connection()),
      formats_(connection_.xcb()),
      icon_(description.icon),
      title_(description.title) {
    tray_.add(*this);
}

SystemTrayIcon::~SystemTrayIcon() {
    tray_.remove(*this);
    undock();
}

void SystemTrayIcon::setWanted(bool wanted) {
    if (std::exchange(wanted_, wanted) != wanted) {
        dockAnew();
    }
}

void SystemTrayIcon::setIcon(const QIcon& icon) {
    icon_ = icon;
    draw();
}

void SystemTrayIcon::dockAnew() {
    undock();
    if (wanted_ && tray_.manager() != XCB_WINDOW_NONE) {
        dock();
    }
}

void SystemTrayIcon::dock() {
    xcb_visualid_t visual = tray_.wantedVisual();
    if (formats_.ofVisual(visual) == XCB_NONE) {
        visual = connection_.screen().root_visual;
    }
    makeWindow(visual);
    describe();
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = tray_.manager();
    request.type = connection_.atom(Atom::systemTrayOpcode);
    request.data.data32[0] = XCB_CURRENT_TIME;
    request.data.data32[1] = requestDock;
    request.data.data32[2] = window_.id();
    xcb_send_event(connection_.xcb(), 0, tray_.manager(), XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&request));
    connection_.flush();
}

void SystemTrayIcon::makeWindow(xcb_visualid_t visual) {
    xcb_connection_t* xcb = connection_.xcb();
    format_ = formats_.ofVisual(visual);
    const bool isRootVisual = visual == connection_.screen().root_visual;
    if (!isRootVisual) {
        colormap_ = ColormapHandle(xcb, xcb_generate_id(xcb));
        xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colormap_.id(), connection_.root(), visual);
    }
    width_ = usualSide;
    height_ = usualSide;
    xcb_create_window_value_list_t attributes{};
    // The panel's own picture shows around the icon: through clear pixels where the panel asked for a visual that has
    // them, else as the background that is taken from it.
    attributes.background_pixmap = XCB_BACK_PIXMAP_PARENT_RELATIVE;
    attributes.background_pixel = 0;
    attributes.border_pixel = 0;
    // A panel that crashes leaves its icons on the root, mapped: no window manager may take such an icon for a window.
    attributes.override_redirect = 1;
    attributes.event_mask = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_BUTTON_PRESS |
                            XCB_EVENT_MASK_BUTTON_RELEASE;
    attributes.colormap = isRootVisual ? xcb_colormap_t{XCB_COPY_FROM_PARENT} : colormap_.id();
    const std::uint32_t mask = (isRootVisual ? XCB_CW_BACK_PIXMAP : XCB_CW_BACK_PIXEL) | XCB_CW_BORDER_PIXEL |
                               XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP;
    window_ = WindowHandle(xcb, xcb_generate_id(xcb));
    const std::uint8_t depth = xcb_aux_get_depth_of_visual(xcb_aux_get_screen(xcb, connection_.screenNumber()), visual);
    xcb_create_window_aux(xcb, depth, window_.id(), connection_.root(), 0, 0, usualSide, usualSide, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, visual, mask, &attributes);
}

void SystemTrayIcon::describe() {
    xcb_connection_t* xcb = connection_.xcb();
    const QByteArray title = title_.toUtf8();
    constexpr std::string_view windowClass{"pallwick\0Pallwick\0", 18};
    xcb_icccm_set_wm_class(xcb, window_.id(), static_cast<std::uint32_t>(windowClass.size()), windowClass.data());
    for (const xcb_atom_t name : {xcb_atom_t{XCB_ATOM_WM_NAME}, connection_.atom(Atom::windowName)}) {
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window_.id(), name, connection_.atom(Atom::utf8String), 8,
                            static_cast<std::uint32_t>(title.size()), title.constData());
    }
    xcb_size_hints_t hints{};
    xcb_icccm_size_hints_set_min_size(&hints, usualSide, usualSide);
    xcb_icccm_set_wm_normal_hints(xcb, window_.id(), &hints);
    const std::array<std::uint32_t, 2> info{xembedVersion, xembedMapped};
    const xcb_atom_t xembedInfo = connection_.atom(Atom::xembedInfo);
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window_.id(), xembedInfo, xembedInfo, 32, info.size(), info.data());
}

void SystemTrayIcon::undock() {
    setShown(false);
    if (window_) {
        window_ = {};
        colormap_ = {};
        // Whoever shows the icon elsewhere next may do so at once: the server has this behind it.
        connection_.sync();
    }
}

void SystemTrayIcon::draw() {
    const int side = std::min({width_, height_, largestSide});
    if (!shown_ || side <= 0) {
        return;
    }
    xcb_connection_t* xcb = connection_.xcb();
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    icon_.paint(&painter, image.rect());
    painter.end();

    const auto pixels = static_cast<std::uint16_t>(side);
    const PixmapHandle pixmap(xcb, xcb_generate_id(xcb));
    xcb_create_pixmap(xcb, 32, pixmap.id(), connection_.root(), pixels, pixels);
    putImage(xcb, pixmap.id(), 32, side, side, image.constBits(), static_cast<int>(image.bytesPerLine()));
    const PictureHandle source(xcb, xcb_generate_id(xcb));
    xcb_render_create_picture(xcb, source.id(), pixmap.id(), formats_.argb32(), 0, nullptr);
    const PictureHandle target(xcb, xcb_generate_id(xcb));
    xcb_render_create_picture(xcb, target.id(), window_.id(), format_, 0, nullptr);
    xcb_clear_area(xcb, 0, window_.id(), 0, 0, 0, 0);
    xcb_render_composite(xcb, XCB_RENDER_PICT_OP_OVER, source.id(), XCB_RENDER_PICTURE_NONE, target.id(), 0, 0, 0, 0,
                         static_cast<std::int16_t>((width_ - side) / 2),
                         static_cast<std::int16_t>((height_ - side) / 2), pixels, pixels);
    connection_.flush();
}

void SystemTrayIcon::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7F) {
        case XCB_REPARENT_NOTIFY: {
            const auto& reparent = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
            if (reparent.window != window_.id()) {
                break;
            }
            if (reparent.parent != connection_.root()) {
                setShown(true);
            } else if (shown_) {
                // The panel has let go of it, by a crash or on purpose.
                undock();
            }
            break;
        }
        case XCB_CONFIGURE_NOTIFY: {
            const auto& place = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            if (place.window == window_.id() && (place.width != width_ || place.height != height_)) {
                width_ = place.width;
                height_ = place.height;
                draw();
            }
            break;
        }
        case XCB_EXPOSE: {
            const auto& exposed = reinterpret_cast<const xcb_expose_event_t&>(event);
            if (exposed.window == window_.id() && exposed.count == 0) {
                draw();
            }
            break;
        }
        case XCB_DESTROY_NOTIFY:
            if (reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == window_.id()) {
                // The panel took it along when it went.
                undock();
            }
            break;
        case XCB_BUTTON_PRESS:
            handlePress(reinterpret_cast<const xcb_button_press_event_t&>(event));
            break;
        case XCB_BUTTON_RELEASE:
            handleRelease(reinterpret_cast<const xcb_button_release_event_t&>(event));
            break;
        default:
            break;
    }
}

void SystemTrayIcon::handlePress(const xcb_button_press_event_t& press) {
    if (press.event != window_.id() || press.detail != XCB_BUTTON_INDEX_3) {
        return;
    }
    // The press has given the pointer to this connection, and the menu needs it on the toolkit's.
    xcb_ungrab_pointer(connection_.xcb(), XCB_CURRENT_TIME);
    connection_.sync();
    Q_EMIT menuRequested();
}

void SystemTrayIcon::handleRelease(const xcb_button_release_event_t& release) {
    const bool isInside =
        release.event_x >= 0 && release.event_y >= 0 && release.event_x < width_ && release.event_y < height_;
    if (release.event == window_.id() && release.detail == XCB_BUTTON_INDEX_1 && isInside) {
        Q_EMIT activated({.id = {}, .time = release.time});
    }
}

void SystemTrayIcon::setShown(bool shown) {
    if (std::exchange(shown_, shown) != shown) {
        Q_EMIT shownChanged(shown);
    }
}

}  // namespace pallwick::x11
