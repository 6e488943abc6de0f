#include <PallwickMac/Platform/X11/RootBackground.h>
#include <PallwickMac/Platform/X11/WindowLayers.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <xcb/composite.h>
#include <xcb/shape.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace pallwick::x11 {

namespace {

constexpr std::uint32_t iconicState = 3;           // ICCCM, section 4.1.3.1
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;  // EWMH, _NET_WM_DESKTOP
constexpr std::uint32_t maxStates = 32;
constexpr std::uint32_t fullOpacity = 0xFFFFFFFF;

// A client is its frame or lies within two levels of it.
constexpr int clientLevels = 3;

// What decides whether a window that may be a client is seen.
struct StateRequests {
    std::size_t rootChild;
    CardinalsRequest state;
    CardinalsRequest netStates;
    CardinalsRequest desktop;
    CardinalsRequest opacity;
    xcb_window_t window;
    xcb_query_tree_cookie_t tree;

    StateRequests(const Connection& connection, std::size_t child, xcb_window_t candidate)
        : rootChild(child),
          state(connection, candidate, connection.atom(Atom::windowState), XCB_NONE, 1),
          netStates(connection, candidate, connection.atom(Atom::netWindowState), XCB_ATOM_ATOM, maxStates),
          desktop(connection, candidate, connection.atom(Atom::desktop), XCB_ATOM_CARDINAL, 1),
          opacity(connection, candidate, connection.atom(Atom::windowOpacity), XCB_ATOM_CARDINAL, 1),
          window(candidate),
          tree(xcb_query_tree(connection.xcb(), candidate)) {}
};

struct ChildRequests {
    xcb_window_t window;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
    xcb_shape_query_extents_cookie_t shape;
};

}  // namespace

WindowLayers::WindowLayers(const Connection& connection) : connection_(connection), formats_(connection.xcb()) {}

WindowLayers::~WindowLayers() {
    setActive(false);
}

void WindowLayers::leaveOut(xcb_window_t window) {
    leftOut_.push_back(window);
    stale_ = true;
}

void WindowLayers::setActive(bool active) {
    if (std::exchange(active_, active) == active) {
        return;
    }
    if (active) {
        xcb_composite_redirect_subwindows(connection_.xcb(), connection_.root(), XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        stale_ = true;
    } else {
        layers_.clear();
        forgetGround();
        xcb_composite_unredirect_subwindows(connection_.xcb(), connection_.root(), XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    }
    connection_.flush();
}

xcb_pixmap_t WindowLayers::ground() {
    if (rootPixmap_ != XCB_NONE || compositing_) {
        return rootPixmap_;
    }
    if (!rootBackground_) {
        rootBackground_ = copyRootBackground(connection_);
    }
    return rootBackground_.id();
}

void WindowLayers::setCompositing(bool compositing) {
    if (std::exchange(compositing_, compositing) != compositing) {
        stale_ = true;
    }
    forgetGround();
}

void WindowLayers::forgetGround() {
    rootBackground_ = {};
}

WindowLayer* WindowLayers::find(xcb_window_t window) {
    const auto layer = std::ranges::find(layers_, window, &WindowLayer::window);
    return layer == layers_.end() ? nullptr : &*layer;
}

void WindowLayers::forgetPixels(WindowLayer& layer) {
    layer.pixels.reset();
    layer.revision = ++revisions_;
}

WindowLayers::Change WindowLayers::handle(const xcb_generic_event_t& event) {
    if (!active_) {
        return {};
    }
    const int type = event.response_type & 0x7F;
    if (type == connection_.damageFirstEvent() + XCB_DAMAGE_NOTIFY) {
        return handleDamage(reinterpret_cast<const xcb_damage_notify_event_t&>(event));
    }
    if (type == connection_.shapeFirstEvent() + XCB_SHAPE_NOTIFY) {
        const auto& shape = reinterpret_cast<const xcb_shape_notify_event_t&>(event);
        stale_ = stale_ || shape.shape_kind == XCB_SHAPE_SK_BOUNDING;
        return {.structure = shape.shape_kind == XCB_SHAPE_SK_BOUNDING};
    }
    if (type == XCB_PROPERTY_NOTIFY) {
        const bool changed = isAboutVisibility(reinterpret_cast<const xcb_property_notify_event_t&>(event));
        stale_ = stale_ || changed;
        return {.structure = changed};
    }
    // Sequence numbers wrap around; their difference does not mind.
    const bool isKnown = static_cast<std::int32_t>(event.full_sequence - refreshedAt_) < 0;
    switch (type) {
        case XCB_CONFIGURE_NOTIFY:
            if (!isKnown) {
                handleConfigure(reinterpret_cast<const xcb_configure_notify_event_t&>(event));
            }
            // The pictures may be older than the layers.
            return {.structure = true};
        case XCB_MAP_NOTIFY:
        case XCB_UNMAP_NOTIFY:
            // The pixels of a window that was unmapped are gone, and its next ones are others.
            if (WindowLayer* layer = find(reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window);
                layer != nullptr && !isKnown) {
                forgetPixels(*layer);
            }
            stale_ = stale_ || !isKnown;
            return {.structure = true};
        case XCB_CREATE_NOTIFY:
        case XCB_DESTROY_NOTIFY:
        case XCB_REPARENT_NOTIFY:
        case XCB_CIRCULATE_NOTIFY:
            stale_ = stale_ || !isKnown;
            return {.structure = true};
        default:
            return {};
    }
}

void WindowLayers::handleConfigure(const xcb_configure_notify_event_t& event) {
    const auto layer = std::ranges::find(layers_, event.window, &WindowLayer::window);
    if (layer == layers_.end()) {
        stale_ = true;
        return;
    }
    const PixelRect area{.x = event.x,
                         .y = event.y,
                         .width = event.width + 2 * event.border_width,
                         .height = event.height + 2 * event.border_width};
    if (area.width != layer->area.width || area.height != layer->area.height) {
        forgetPixels(*layer);
        // A shape follows its window's size in ways of its own.
        stale_ = stale_ || layer->shaped;
    }
    layer->area = area;
    layer->borderWidth = event.border_width;

    const bool atBottom = event.above_sibling == XCB_WINDOW_NONE;
    const auto below = std::ranges::find(layers_, event.above_sibling, &WindowLayer::window);
    if (below == layers_.end() && !atBottom) {
        stale_ = true;
        return;
    }
    const auto place = atBottom ? layers_.begin() : below + 1;
    if (place <= layer) {
        std::rotate(place, layer, layer + 1);
    } else {
        std::rotate(layer, layer + 1, place);
    }
}

WindowLayers::Change WindowLayers::handleDamage(const xcb_damage_notify_event_t& event) {
    WindowLayer* layer = find(event.drawable);
    if (layer == nullptr) {
        return {};
    }
    layer->damageReported = true;
    return {.damaged = layer->window,
            .area = {.x = layer->area.x + layer->borderWidth + event.area.x,
                     .y = layer->area.y + layer->borderWidth + event.area.y,
                     .width = event.area.width,
                     .height = event.area.height}};
}

bool WindowLayers::isAboutVisibility(const xcb_property_notify_event_t& event) const {
    using enum Atom;
    const auto is = [&](Atom atom) { return event.atom == connection_.atom(atom); };
    return event.window == connection_.root()
               ? is(currentDesktop) || is(rootPixmap)
               : is(windowState) || is(netWindowState) || is(desktop) || is(windowOpacity);
}

std::vector<WindowLayer>& WindowLayers::layers() {
    if (std::exchange(stale_, false)) {
        refresh();
    }
    return layers_;
}

std::vector<WindowLayer>& WindowLayers::layersWith(xcb_window_t window) {
    stale_ = stale_ || find(window) == nullptr;
    return layers();
}

void WindowLayers::watchState(xcb_window_t window) const {
    // Ours have masks of their own, and change by our doing only.
    if (!connection_.isOwn(window)) {
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(connection_.xcb(), window, XCB_CW_EVENT_MASK, &mask);
    }
}

void WindowLayers::refresh() {
    xcb_connection_t* xcb = connection_.xcb();
    CardinalsRequest currentDesktop(connection_, connection_.root(), connection_.atom(Atom::currentDesktop),
                                    XCB_ATOM_CARDINAL, 1);
    CardinalsRequest ground(connection_, connection_.root(), connection_.atom(Atom::rootPixmap), XCB_ATOM_PIXMAP, 1);
    const xcb_query_tree_cookie_t treeCookie = xcb_query_tree(xcb, connection_.root());
    refreshedAt_ = treeCookie.sequence;
    const auto tree = own(xcb_query_tree_reply(xcb, treeCookie, nullptr));
    const std::vector<std::uint32_t> desktops = currentDesktop.get();
    const std::vector<std::uint32_t> grounds = ground.get();
    const std::uint32_t desktopNow = desktops.empty() ? allDesktops : desktops.front();
    rootPixmap_ = grounds.empty() ? XCB_NONE : grounds.front();

    std::unordered_map<xcb_window_t, WindowLayer> known;
    for (WindowLayer& layer : layers_) {
        known.emplace(layer.window, std::move(layer));
    }
    layers_.clear();
    if (!tree) {
        return;
    }

    std::vector<ChildRequests> requests;
    std::vector<StateRequests> level;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    // The ids of windows that are gone may come back one day.
    std::erase_if(leftOut_, [&](xcb_window_t window) {
        return std::find(children, children + xcb_query_tree_children_length(tree.get()), window) ==
               children + xcb_query_tree_children_length(tree.get());
    });
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        watchState(children[i]);
        xcb_shape_select_input(xcb, children[i], 1);
        requests.push_back({.window = children[i],
                            .attributes = xcb_get_window_attributes(xcb, children[i]),
                            .geometry = xcb_get_geometry(xcb, children[i]),
                            .shape = xcb_shape_query_extents(xcb, children[i])});
        level.emplace_back(connection_, static_cast<std::size_t>(i), children[i]);
    }
    std::vector<bool> drawable;
    for (const ChildRequests& request : requests) {
        const auto attributes = own(xcb_get_window_attributes_reply(xcb, request.attributes, nullptr));
        const auto geometry = own(xcb_get_geometry_reply(xcb, request.geometry, nullptr));
        const auto shape = own(xcb_shape_query_extents_reply(xcb, request.shape, nullptr));
        WindowLayer layer;
        if (const auto old = known.find(request.window); old != known.end()) {
            layer = std::move(old->second);
        }
        layer.window = request.window;
        layer.onScreen = attributes && geometry && shape && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                         attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT &&
                         std::ranges::find(leftOut_, request.window) == leftOut_.end();
        drawable.push_back(layer.onScreen);
        if (layer.onScreen) {
            const PixelRect area{.x = geometry->x,
                                 .y = geometry->y,
                                 .width = geometry->width + 2 * geometry->border_width,
                                 .height = geometry->height + 2 * geometry->border_width};
            if (area.width != layer.area.width || area.height != layer.area.height) {
                forgetPixels(layer);
            }
            layer.area = area;
            layer.borderWidth = geometry->border_width;
            // Nobody else reads an alpha channel: the server shows such a window's colours as they are.
            layer.opaque = !compositing_ || geometry->depth != 32;
            layer.client = attributes->override_redirect == 0;
            layer.own = connection_.isOwn(layer.window);
            layer.shaped = shape->bounding_shaped != 0;
            // Of a shape only that it has changed is known.
            layer.revision = layer.shaped ? ++revisions_ : layer.revision;
            layer.format = formats_.ofVisual(attributes->visual);
            if (!layer.damage && !layer.own) {
                layer.damage = DamageHandle(xcb, xcb_generate_id(xcb));
                xcb_damage_create(xcb, layer.damage.id(), layer.window, XCB_DAMAGE_REPORT_LEVEL_BOUNDING_BOX);
            }
        }
        layers_.push_back(std::move(layer));
    }

    // Window managers differ in how they hide a window of theirs: some unmap it, some only say so on the client.
    std::vector<bool> isClient(layers_.size());
    std::vector<std::uint32_t> opacities(layers_.size(), fullOpacity);
    for (int depth = 0; depth < clientLevels; ++depth) {
        std::vector<StateRequests> next;
        for (StateRequests& request : level) {
            const std::vector<std::uint32_t> state = request.state.get();
            const std::vector<std::uint32_t> netStates = request.netStates.get();
            const std::vector<std::uint32_t> desktop = request.desktop.get();
            const std::vector<std::uint32_t> opacity = request.opacity.get();
            const auto inner = own(xcb_query_tree_reply(xcb, request.tree, nullptr));
            WindowLayer& layer = layers_[request.rootChild];
            if (!drawable[request.rootChild] || isClient[request.rootChild]) {
                continue;
            }
            if (compositing_ && !opacity.empty()) {
                opacities[request.rootChild] = opacity.front();
            }
            if (!state.empty()) {
                isClient[request.rootChild] = true;
                const bool hidden =
                    std::ranges::find(netStates, connection_.atom(Atom::netWindowStateHidden)) != netStates.end();
                const std::uint32_t desktopOfClient = desktop.empty() ? allDesktops : desktop.front();
                const bool elsewhere =
                    desktopNow != allDesktops && desktopOfClient != allDesktops && desktopOfClient != desktopNow;
                layer.onScreen = state.front() != iconicState && !hidden && !elsewhere;
            } else if (inner && depth + 1 < clientLevels) {
                const xcb_window_t* windows = xcb_query_tree_children(inner.get());
                for (int i = 0; i < xcb_query_tree_children_length(inner.get()); ++i) {
                    watchState(windows[i]);
                    next.emplace_back(connection_, request.rootChild, windows[i]);
                }
            }
        }
        level = std::move(next);
    }
    for (std::size_t i = 0; i < layers_.size(); ++i) {
        layers_[i].client = layers_[i].client || isClient[i];
        if (std::exchange(layers_[i].opacity, opacities[i]) != opacities[i]) {
            layers_[i].revision = ++revisions_;
        }
    }
}

std::shared_ptr<const WindowPixels> WindowLayers::pixelsOf(WindowLayer& layer) {
    if (!layer.pixels && layer.format != XCB_NONE) {
        xcb_connection_t* xcb = connection_.xcb();
        PixmapHandle pixmap(xcb, xcb_generate_id(xcb));
        xcb_composite_name_window_pixmap(xcb, layer.window, pixmap.id());
        PictureHandle picture(xcb, xcb_generate_id(xcb));
        xcb_render_create_picture(xcb, picture.id(), pixmap.id(), layer.format, 0, nullptr);
        layer.pixels =
            std::make_shared<WindowPixels>(WindowPixels{.pixmap = std::move(pixmap), .picture = std::move(picture)});
    }
    return layer.pixels;
}

void WindowLayers::acknowledgeDamage(xcb_window_t window) {
    if (WindowLayer* layer = find(window)) {
        acknowledge(*layer);
    }
}

void WindowLayers::acknowledge(WindowLayer& layer) {
    if (std::exchange(layer.damageReported, false)) {
        xcb_damage_subtract(connection_.xcb(), layer.damage.id(), XCB_NONE, XCB_NONE);
    }
}

}  // namespace pallwick::x11
