#include <PallwickMac/Platform/X11/ClientFrames.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>
#include <PallwickMac/Platform/X11/XcbReply.h>

#include <algorithm>

namespace pallwick::x11 {

namespace {

struct WindowRequests {
    std::size_t rootChild;
    xcb_window_t window;
    xcb_get_property_cookie_t state;
    xcb_query_tree_cookie_t tree;
};

}  // namespace

std::vector<xcb_window_t> rootChildren(const Connection& connection) {
    const auto tree =
        own(xcb_query_tree_reply(connection.xcb(), xcb_query_tree(connection.xcb(), connection.root()), nullptr));
    if (!tree) {
        return {};
    }
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    return {children, children + xcb_query_tree_children_length(tree.get())};
}

std::optional<xcb_window_t> topmostClientFrame(const Connection& connection, const std::vector<xcb_window_t>& children,
                                               const std::vector<xcb_window_t>& panels) {
    xcb_connection_t* xcb = connection.xcb();
    const xcb_atom_t windowState = connection.atom(Atom::windowState);
    const auto ask = [&](std::size_t rootChild, xcb_window_t window) {
        return WindowRequests{.rootChild = rootChild,
                              .window = window,
                              .state = xcb_get_property(xcb, 0, window, windowState, XCB_GET_PROPERTY_TYPE_ANY, 0, 1),
                              .tree = xcb_query_tree(xcb, window)};
    };
    const auto isPanel = [&](xcb_window_t window) { return std::ranges::find(panels, window) != panels.end(); };
    const auto lowestPanel = std::ranges::find_if(children, isPanel);
    const auto first =
        lowestPanel == children.end() ? std::size_t{0} : static_cast<std::size_t>(lowestPanel - children.begin());

    CardinalsRequest windowManager(connection, connection.root(), connection.atom(Atom::supportingCheck),
                                   XCB_ATOM_WINDOW, 1);
    std::vector<xcb_get_window_attributes_cookie_t> attributes;
    std::vector<WindowRequests> level;
    for (std::size_t i = first; i < children.size(); ++i) {
        if (!isPanel(children[i])) {
            attributes.push_back(xcb_get_window_attributes(xcb, children[i]));
            level.push_back(ask(i, children[i]));
        }
    }
    std::vector<bool> viewable(children.size());
    std::vector<bool> unmanaged(children.size());
    for (std::size_t i = 0; i < level.size(); ++i) {
        const auto reply = own(xcb_get_window_attributes_reply(xcb, attributes[i], nullptr));
        viewable[level[i].rootChild] = reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
        unmanaged[level[i].rootChild] =
            reply && reply->override_redirect == 0 && reply->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
    }

    const std::vector<std::uint32_t> manager = windowManager.get();
    // A window manager may map a frame before it says that the window in there is a client's.
    const auto isFrame = [&](xcb_window_t outer, xcb_window_t inner) {
        return !manager.empty() && connection.clientOf(outer) == connection.clientOf(manager.front()) &&
               connection.clientOf(outer) != connection.clientOf(inner);
    };

    std::optional<std::size_t> topmost;
    constexpr int levels = 3;  // the frame itself and two levels within
    for (int depth = 0; depth < levels; ++depth) {
        std::vector<WindowRequests> next;
        for (const WindowRequests& request : level) {
            const auto state = own(xcb_get_property_reply(xcb, request.state, nullptr));
            const auto tree = own(xcb_query_tree_reply(xcb, request.tree, nullptr));
            const std::size_t rootChild = request.rootChild;
            if (!viewable[rootChild] || (topmost && rootChild <= *topmost)) {
                continue;
            }
            if (unmanaged[rootChild] || (state && state->type != XCB_ATOM_NONE)) {
                topmost = rootChild;
            } else if (tree && depth + 1 < levels) {
                const xcb_window_t* inner = xcb_query_tree_children(tree.get());
                for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
                    if (isFrame(request.window, inner[i])) {
                        topmost = rootChild;
                    } else {
                        next.push_back(ask(rootChild, inner[i]));
                    }
                }
            }
        }
        level = std::move(next);
    }
    return topmost ? std::optional(children[*topmost]) : std::nullopt;
}

}  // namespace pallwick::x11
