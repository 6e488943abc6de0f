#pragma once

#include <PallwickMac/Platform/X11/ApplicationNames.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/PixelMapping.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pallwick::x11 {

/// What a window manager or a client draws around a window, in pixels.
struct Borders {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;

    friend bool operator==(const Borders&, const Borders&) = default;
};

/// What the server, the window manager and its owner say about a client window. Each may be absent or a lie.
struct ClientWindow {
    xcb_window_t window = XCB_WINDOW_NONE;
    /// Root pixels, the window's own border included.
    PixelRect area;
    bool viewable = false;
    bool overrideRedirect = false;
    /// The first value of WM_STATE.
    std::optional<std::uint32_t> state;
    std::vector<xcb_atom_t> netStates;
    /// The kinds of window it is, the most fitting first.
    std::vector<xcb_atom_t> types;
    std::optional<std::uint32_t> desktop;
    /// The window manager's decoration outside `area`.
    std::optional<Borders> decoration;
    /// The invisible margin within `area` that a client draws its shadow in.
    std::optional<Borders> shadow;
    ApplicationNames names;
    /// Clean UTF-8; empty where `_NET_WM_NAME` is not set.
    std::string title;
};

/// All of that about one window. Sent when it is made and answered at `get`, so that any number of windows share one
/// round trip.
class ClientWindowRequest {
public:
    ClientWindowRequest(const Connection& connection, xcb_window_t window);

    /// To be called once. None where the window is gone by now.
    [[nodiscard]] std::optional<ClientWindow> get();

private:
    const Connection& connection_;
    xcb_window_t window_;
    xcb_get_window_attributes_cookie_t attributes_;
    xcb_get_geometry_cookie_t geometry_;
    xcb_translate_coordinates_cookie_t origin_;
    CardinalsRequest state_;
    CardinalsRequest netStates_;
    CardinalsRequest types_;
    CardinalsRequest desktop_;
    CardinalsRequest decoration_;
    CardinalsRequest shadow_;
    ApplicationNamesRequest names_;
    TextRequest title_;
};

/// A window's title by its type: UTF-8, ISO 8859-1 or compound text.
[[nodiscard]] std::string cleanText(const Connection& connection, const std::string& text, xcb_atom_t type);

}  // namespace pallwick::x11
