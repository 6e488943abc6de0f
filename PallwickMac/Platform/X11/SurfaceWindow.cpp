#include <PallwickMac/Platform/X11/SurfaceWindow.h>
#include <xcb/shape.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <utility>

namespace pallwick::x11 {

namespace {

constexpr std::uint32_t opaqueBlack = 0xFF000000;

// How far beyond the root's edge a parked window ends: more than any shadow or blur reaches.
constexpr int parkingDistance = 256;

// Negative positions stay off the screen however large the root becomes.
PixelRect parkingPlace(int width, int height) {
    constexpr int lowest = std::numeric_limits<std::int16_t>::min();
    return {.x = std::max(lowest, -width - parkingDistance),
            .y = std::max(lowest, -height - parkingDistance),
            .width = width,
            .height = height};
}

}  // namespace

SurfaceWindow::SurfaceWindow(const Connection& connection)
    : connection_(connection), window_(xcb_generate_id(connection.xcb())), area_(parkingPlace(1, 1)) {
    xcb_create_window_value_list_t attributes{};
    attributes.background_pixel = opaqueBlack;
    attributes.border_pixel = 0;
    attributes.override_redirect = 1;
    attributes.event_mask = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                            XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW;
    attributes.colormap = connection.argbColormap();
    const std::uint32_t mask =
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP;
    xcb_create_window_aux(connection.xcb(), 32, window_, connection.root(), static_cast<std::int16_t>(area_.x),
                          static_cast<std::int16_t>(area_.y), static_cast<std::uint16_t>(area_.width),
                          static_cast<std::uint16_t>(area_.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          connection.argbVisual(), mask, &attributes);
    describe();
    xcb_map_window(connection.xcb(), window_);
}

SurfaceWindow::~SurfaceWindow() {
    xcb_destroy_window(connection_.xcb(), window_);
    connection_.flush();
}

void SurfaceWindow::describe() {
    xcb_connection_t* xcb = connection_.xcb();
    constexpr std::string_view name = "Pallwick overlay";
    constexpr std::string_view windowClass{"pallwick\0Pallwick\0", 18};
    xcb_icccm_set_wm_name(xcb, window_, XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(name.size()), name.data());
    xcb_icccm_set_wm_class(xcb, window_, static_cast<std::uint32_t>(windowClass.size()), windowClass.data());
    const auto setCardinal = [&](Atom property, xcb_atom_t type, std::uint32_t value) {
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window_, connection_.atom(property), type, 32, 1, &value);
    };
    setCardinal(Atom::windowType, XCB_ATOM_ATOM, connection_.atom(Atom::windowTypeUtility));
    // Compositing managers draw shadows around panels, and make windows that are never focused translucent, unless
    // told otherwise: the shadow would darken what is beside the panel, the translucency would show what is beneath.
    setCardinal(Atom::compositorShadow, XCB_ATOM_CARDINAL, 0);
    setCardinal(Atom::windowOpacity, XCB_ATOM_CARDINAL, 0xFFFFFFFF);
}

bool SurfaceWindow::isPlaceable(const PixelRect& area) {
    constexpr int lowest = std::numeric_limits<std::int16_t>::min();
    constexpr int highest = std::numeric_limits<std::int16_t>::max();
    // Sizes above what a coordinate can name would leave no parking place.
    return !area.isEmpty() && area.x >= lowest && area.y >= lowest && area.x <= highest && area.y <= highest &&
           area.width <= highest - parkingDistance && area.height <= highest - parkingDistance;
}

void SurfaceWindow::place(const PixelRect& area, std::optional<xcb_window_t> below) {
    if (!parked_ && area == area_ && !below) {
        return;
    }
    const bool wasParked = std::exchange(parked_, false);
    area_ = area;
    if (below) {
        // A request of its own: where `below` has just gone it fails, and the cover must come nevertheless.
        const std::array<std::uint32_t, 2> stacking{*below, XCB_STACK_MODE_ABOVE};
        xcb_configure_window(connection_.xcb(), window_, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                             stacking.data());
    }
    const std::array<std::uint32_t, 4> values{static_cast<std::uint32_t>(area.x), static_cast<std::uint32_t>(area.y),
                                              static_cast<std::uint32_t>(area.width),
                                              static_cast<std::uint32_t>(area.height)};
    const xcb_void_cookie_t placed = xcb_configure_window(
        connection_.xcb(), window_,
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values.data());
    if (wasParked) {
        shownAt_ = placed.sequence;
    }
}

void SurfaceWindow::stackBelow(xcb_window_t above) {
    const std::array<std::uint32_t, 2> stacking{above, XCB_STACK_MODE_BELOW};
    xcb_configure_window(connection_.xcb(), window_, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                         stacking.data());
}

void SurfaceWindow::park(int width, int height) {
    const PixelRect parking = parkingPlace(width, height);
    if (parked_ && parking == area_) {
        return;
    }
    place(parking);
    parked_ = true;
}

void SurfaceWindow::setPicture(xcb_pixmap_t picture) {
    xcb_change_window_attributes(connection_.xcb(), window_, XCB_CW_BACK_PIXMAP, &picture);
    xcb_clear_area(connection_.xcb(), 0, window_, 0, 0, 0, 0);
}

void SurfaceWindow::dropPicture() {
    xcb_change_window_attributes(connection_.xcb(), window_, XCB_CW_BACK_PIXEL, &opaqueBlack);
    xcb_clear_area(connection_.xcb(), 0, window_, 0, 0, 0, 0);
}

void SurfaceWindow::setBoundingShape(std::optional<std::vector<PixelRect>> rows) {
    if (rows == shape_) {
        return;
    }
    shape_ = std::move(rows);
    if (!shape_) {
        xcb_shape_mask(connection_.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window_, 0, 0, XCB_PIXMAP_NONE);
        return;
    }
    std::vector<xcb_rectangle_t> rectangles;
    rectangles.reserve(shape_->size());
    for (const PixelRect& row : *shape_) {
        rectangles.push_back({.x = static_cast<std::int16_t>(row.x),
                              .y = static_cast<std::int16_t>(row.y),
                              .width = static_cast<std::uint16_t>(row.width),
                              .height = static_cast<std::uint16_t>(row.height)});
    }
    xcb_shape_rectangles(connection_.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_YX_BANDED,
                         window_, 0, 0, static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

void SurfaceWindow::setTakesMouse(bool takesMouse) {
    if (takesMouse == takesMouse_) {
        return;
    }
    takesMouse_ = takesMouse;
    if (takesMouse) {
        xcb_shape_mask(connection_.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, window_, 0, 0, XCB_PIXMAP_NONE);
    } else {
        xcb_shape_rectangles(connection_.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                             window_, 0, 0, 0, nullptr);
    }
}

void SurfaceWindow::setCursor(xcb_cursor_t cursor) {
    if (cursor != cursor_) {
        cursor_ = cursor;
        xcb_change_window_attributes(connection_.xcb(), window_, XCB_CW_CURSOR, &cursor);
    }
}

}  // namespace pallwick::x11
