#include "Windows.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>

namespace pallwick::support {
namespace {

/// In 32-bit units; long enough for every property that is read here.
constexpr std::uint32_t longestProperty = 4096;

Reply<xcb_get_property_reply_t> property(XConnection& x, xcb_window_t window, const std::string& name) {
    return Reply<xcb_get_property_reply_t>(xcb_get_property_reply(
        x.get(), xcb_get_property(x.get(), 0, window, x.atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty),
        nullptr));
}

Reply<xcb_get_window_attributes_reply_t> attributes(XConnection& x, xcb_window_t window) {
    return Reply<xcb_get_window_attributes_reply_t>(
        xcb_get_window_attributes_reply(x.get(), xcb_get_window_attributes(x.get(), window), nullptr));
}

Reply<xcb_get_geometry_reply_t> geometry(XConnection& x, xcb_window_t window) {
    return Reply<xcb_get_geometry_reply_t>(xcb_get_geometry_reply(x.get(), xcb_get_geometry(x.get(), window), nullptr));
}

Reply<xcb_query_tree_reply_t> tree(XConnection& x, xcb_window_t window) {
    return Reply<xcb_query_tree_reply_t>(xcb_query_tree_reply(x.get(), xcb_query_tree(x.get(), window), nullptr));
}

}  // namespace

std::vector<xcb_window_t> Windows::stacking() {
    const Reply<xcb_query_tree_reply_t> reply = tree(x_, x_.root());
    if (!reply) {
        return {};
    }
    const xcb_window_t* children = xcb_query_tree_children(reply.get());
    return {children, children + xcb_query_tree_children_length(reply.get())};
}

std::vector<xcb_window_t> Windows::clients() {
    if (windowManagerName()) {
        return cardinals(x_.root(), "_NET_CLIENT_LIST");
    }
    std::vector<xcb_window_t> windows = stacking();
    std::erase_if(windows, [this](xcb_window_t window) {
        return !isViewable(window) || isOverrideRedirect(window) || title(window).empty();
    });
    return windows;
}

std::optional<xcb_window_t> Windows::client(const std::string& wanted) {
    for (const xcb_window_t window : clients()) {
        if (title(window) == wanted) {
            return window;
        }
    }
    return std::nullopt;
}

xcb_window_t Windows::awaitClient(const std::string& wanted) {
    std::optional<xcb_window_t> found;
    x_.await(
        "a window titled \"" + wanted + "\" on screen",
        [&] {
            found = client(wanted);
            return found && isViewable(*found);
        },
        [this] {
            std::string titles;
            for (const xcb_window_t window : clients()) {
                titles += "\"" + title(window) + "\" ";
            }
            return titles;
        });
    return *found;
}

std::string Windows::title(xcb_window_t window) {
    const std::string name = text(window, "_NET_WM_NAME");
    return name.empty() ? text(window, "WM_NAME") : name;
}

std::vector<std::string> Windows::windowClass(xcb_window_t window) {
    std::vector<std::string> parts;
    const std::string whole = text(window, "WM_CLASS");
    std::size_t start = 0;
    for (std::size_t end = 0; (end = whole.find('\0', start)) != std::string::npos; start = end + 1) {
        parts.push_back(whole.substr(start, end - start));
    }
    return parts;
}

std::optional<PixelRect> Windows::rect(xcb_window_t window) {
    const Reply<xcb_get_geometry_reply_t> size = geometry(x_, window);
    const Reply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
        x_.get(), xcb_translate_coordinates(x_.get(), window, x_.root(), 0, 0), nullptr));
    if (!size || !origin) {
        return std::nullopt;
    }
    return PixelRect{.x = origin->dst_x, .y = origin->dst_y, .width = size->width, .height = size->height};
}

std::optional<PixelRect> Windows::frame(xcb_window_t window) {
    std::optional<PixelRect> result = rect(window);
    const std::vector<std::uint32_t> extents = cardinals(window, "_NET_FRAME_EXTENTS");
    if (result && extents.size() == 4) {
        const int left = static_cast<int>(extents[0]);
        const int right = static_cast<int>(extents[1]);
        const int top = static_cast<int>(extents[2]);
        const int bottom = static_cast<int>(extents[3]);
        result = PixelRect{.x = result->x - left,
                           .y = result->y - top,
                           .width = result->width + left + right,
                           .height = result->height + top + bottom};
    }
    return result;
}

xcb_window_t Windows::rootChild(xcb_window_t window) {
    xcb_window_t child = window;
    for (;;) {
        const Reply<xcb_query_tree_reply_t> reply = tree(x_, child);
        if (!reply || reply->parent == noWindow || reply->parent == x_.root()) {
            return child;
        }
        child = reply->parent;
    }
}

bool Windows::isViewable(xcb_window_t window) {
    const auto reply = attributes(x_, window);
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool Windows::isOverrideRedirect(xcb_window_t window) {
    const auto reply = attributes(x_, window);
    return reply && reply->override_redirect != 0;
}

int Windows::depth(xcb_window_t window) {
    const auto reply = geometry(x_, window);
    return reply ? reply->depth : 0;
}

bool Windows::isAbove(xcb_window_t upper, xcb_window_t lower) {
    const std::vector<xcb_window_t> order = stacking();
    const auto lowerPlace = std::find(order.begin(), order.end(), rootChild(lower));
    return std::find(lowerPlace, order.end(), rootChild(upper)) != order.end() && rootChild(upper) != rootChild(lower);
}

xcb_window_t Windows::active() {
    const std::vector<std::uint32_t> value = cardinals(x_.root(), "_NET_ACTIVE_WINDOW");
    return value.empty() ? noWindow : value.front();
}

xcb_window_t Windows::focus() {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(x_.get(), xcb_get_input_focus(x_.get()), nullptr));
    return reply ? reply->focus : noWindow;
}

bool Windows::hasFocus(xcb_window_t window) {
    xcb_window_t current = focus();
    // PointerRoot is 1 and None is 0; neither is a window.
    while (current > XCB_INPUT_FOCUS_POINTER_ROOT && current != window) {
        const Reply<xcb_query_tree_reply_t> reply = tree(x_, current);
        current = reply ? reply->parent : noWindow;
    }
    return current == window;
}

std::vector<std::string> Windows::state(xcb_window_t window) {
    std::vector<std::string> names;
    for (const std::uint32_t atom : cardinals(window, "_NET_WM_STATE")) {
        names.push_back(x_.atomName(atom));
    }
    return names;
}

bool Windows::hasState(xcb_window_t window, const std::string& name) {
    const std::vector<std::string> names = state(window);
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::uint32_t Windows::wmState(xcb_window_t window) {
    const std::vector<std::uint32_t> value = cardinals(window, "WM_STATE");
    return value.empty() ? 0 : value.front();
}

std::uint32_t Windows::workspace() {
    const std::vector<std::uint32_t> value = cardinals(x_.root(), "_NET_CURRENT_DESKTOP");
    return value.empty() ? 0 : value.front();
}

void Windows::activate(xcb_window_t window) {
    // Source 2 is a pager: it acts for the user, and no window manager holds that back as focus stealing.
    tellWindowManager(window, "_NET_ACTIVE_WINDOW", 2, XCB_CURRENT_TIME);
    x_.await(
        "\"" + title(window) + "\" active", [&] { return active() == window; },
        [&] { return "\"" + title(active()) + "\" active"; });
}

void Windows::setFullScreen(xcb_window_t window, bool on) {
    changeState(window, "_NET_WM_STATE_FULLSCREEN", on);
    x_.await("\"" + title(window) + "\" over the whole screen: " + (on ? "yes" : "no"),
             [&] { return (rect(window) == x_.rootRect()) == on; });
}

void Windows::setKeptAbove(xcb_window_t window, bool on) {
    changeState(window, "_NET_WM_STATE_ABOVE", on);
}

void Windows::minimise(xcb_window_t window) {
    tellWindowManager(window, "WM_CHANGE_STATE", XCB_ICCCM_WM_STATE_ICONIC);
    x_.await("\"" + title(window) + "\" minimised",
             [&] { return wmState(window) == XCB_ICCCM_WM_STATE_ICONIC || hasState(window, "_NET_WM_STATE_HIDDEN"); });
}

void Windows::switchToWorkspace(std::uint32_t index) {
    tellWindowManager(x_.root(), "_NET_CURRENT_DESKTOP", index);
    x_.await("workspace " + std::to_string(index), [&] { return workspace() == index; });
}

void Windows::setWorkspaceCount(std::uint32_t count) {
    tellWindowManager(x_.root(), "_NET_NUMBER_OF_DESKTOPS", count);
    x_.await(std::to_string(count) + " workspaces",
             [&] { return cardinals(x_.root(), "_NET_NUMBER_OF_DESKTOPS") == std::vector<std::uint32_t>{count}; });
}

void Windows::sendToWorkspace(xcb_window_t window, std::uint32_t index) {
    constexpr std::uint32_t pager = 2;
    tellWindowManager(window, "_NET_WM_DESKTOP", index, pager);
    x_.await("\"" + title(window) + "\" on workspace " + std::to_string(index),
             [&] { return cardinals(window, "_NET_WM_DESKTOP") == std::vector<std::uint32_t>{index}; });
}

void Windows::move(xcb_window_t window, PixelPoint point) {
    // Static gravity (10) places the client itself, not its frame; bits 8 and 9 say that x and y are given.
    constexpr std::uint32_t staticGravityWithPosition = 10U | 1U << 8U | 1U << 9U;
    tellWindowManager(window, "_NET_MOVERESIZE_WINDOW", staticGravityWithPosition, static_cast<std::uint32_t>(point.x),
                      static_cast<std::uint32_t>(point.y));
}

void Windows::close(xcb_window_t window) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = x_.atom("WM_PROTOCOLS");
    event.data.data32[0] = x_.atom("WM_DELETE_WINDOW");
    xcb_send_event(x_.get(), 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&event));
    x_.roundTrip();
}

bool Windows::hasSelectionOwner(const std::string& selection) {
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x_.get(), xcb_get_selection_owner(x_.get(), x_.atom(selection)), nullptr));
    return reply && reply->owner != noWindow;
}

std::optional<std::string> Windows::windowManagerName() {
    // The root's property outlives a window manager that was killed; the window it names does not.
    const std::string check = "_NET_SUPPORTING_WM_CHECK";
    const std::vector<std::uint32_t> window = cardinals(x_.root(), check);
    if (window.empty() || cardinals(window.front(), check) != window) {
        return std::nullopt;
    }
    return text(window.front(), "_NET_WM_NAME");
}

std::vector<std::uint32_t> Windows::cardinals(xcb_window_t window, const std::string& name) {
    const Reply<xcb_get_property_reply_t> reply = property(x_, window, name);
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

std::string Windows::text(xcb_window_t window, const std::string& name) {
    const Reply<xcb_get_property_reply_t> reply = property(x_, window, name);
    if (!reply || reply->format != 8) {
        return {};
    }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

void Windows::setText(xcb_window_t window, const std::string& name, const std::string& value) {
    xcb_change_property(x_.get(), XCB_PROP_MODE_REPLACE, window, x_.atom(name), XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(value.size()), value.data());
    x_.roundTrip();
}

void Windows::setCardinal(xcb_window_t window, const std::string& name, std::uint32_t value) {
    constexpr std::uint8_t bits = 32;
    xcb_change_property(x_.get(), XCB_PROP_MODE_REPLACE, window, x_.atom(name), XCB_ATOM_CARDINAL, bits, 1, &value);
    x_.roundTrip();
}

void Windows::tellWindowManager(xcb_window_t window, const std::string& message, std::uint32_t first,
                                std::uint32_t second, std::uint32_t third) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = x_.atom(message);
    event.data.data32[0] = first;
    event.data.data32[1] = second;
    event.data.data32[2] = third;
    xcb_send_event(x_.get(), 0, x_.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    x_.roundTrip();
}

void Windows::changeState(xcb_window_t window, const std::string& name, bool on) {
    tellWindowManager(window, "_NET_WM_STATE", on ? 1 : 0, x_.atom(name));
    x_.await("\"" + title(window) + "\" " + (on ? "with " : "without ") + name,
             [&] { return hasState(window, name) == on; });
}

}  // namespace pallwick::support
