#include <PallwickMac/Platform/WindowRecord.h>
#include <PallwickMac/Platform/X11/WindowRules.h>

#include <algorithm>
#include <array>
#include <utility>

namespace pallwick::x11 {

namespace {

constexpr std::uint32_t iconicState = 3;           // ICCCM, section 4.1.3.1
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;  // EWMH, _NET_WM_DESKTOP

constexpr std::int32_t desktopLayer = WindowRecord::ordinaryLayer - 2;
constexpr std::int32_t keptBelowLayer = WindowRecord::ordinaryLayer - 1;
constexpr std::int32_t keptAboveLayer = WindowRecord::ordinaryLayer + 1;
constexpr std::int32_t dockLayer = WindowRecord::ordinaryLayer + 2;
constexpr std::int32_t popUpLayer = WindowRecord::ordinaryLayer + 3;

constexpr std::array layersOfTypes{std::pair{Atom::windowTypeNormal, WindowRecord::ordinaryLayer},
                                   std::pair{Atom::windowTypeDialog, WindowRecord::ordinaryLayer},
                                   std::pair{Atom::windowTypeUtility, WindowRecord::ordinaryLayer},
                                   std::pair{Atom::windowTypeDesktop, desktopLayer},
                                   std::pair{Atom::windowTypeDock, dockLayer},
                                   std::pair{Atom::windowTypeToolbar, dockLayer},
                                   std::pair{Atom::windowTypeMenu, dockLayer},
                                   std::pair{Atom::windowTypeSplash, popUpLayer},
                                   std::pair{Atom::windowTypeDropdownMenu, popUpLayer},
                                   std::pair{Atom::windowTypePopupMenu, popUpLayer},
                                   std::pair{Atom::windowTypeTooltip, popUpLayer},
                                   std::pair{Atom::windowTypeNotification, popUpLayer},
                                   std::pair{Atom::windowTypeCombo, popUpLayer},
                                   std::pair{Atom::windowTypeDnd, popUpLayer}};

bool hasState(const Connection& connection, const ClientWindow& window, Atom state) {
    return std::ranges::find(window.netStates, connection.atom(state)) != window.netStates.end();
}

// The first type that is known counts; a window that names none is an ordinary one (EWMH, _NET_WM_WINDOW_TYPE).
std::int32_t layerOfType(const Connection& connection, const ClientWindow& window) {
    for (const xcb_atom_t type : window.types) {
        const auto* layer = std::ranges::find_if(
            layersOfTypes, [&](const auto& entry) { return connection.atom(entry.first) == type; });
        if (layer != layersOfTypes.end()) {
            return layer->second;
        }
    }
    return WindowRecord::ordinaryLayer;
}

}  // namespace

bool isOnScreen(const Connection& connection, const ClientWindow& window, std::optional<std::uint32_t> currentDesktop) {
    const bool elsewhere =
        currentDesktop && window.desktop && *window.desktop != allDesktops && *window.desktop != *currentDesktop;
    return window.viewable && window.state != iconicState &&
           !hasState(connection, window, Atom::netWindowStateHidden) && !elsewhere;
}

std::int32_t layerOf(const Connection& connection, const ClientWindow& window) {
    if (window.overrideRedirect) {
        return popUpLayer;
    }
    const std::int32_t layer = layerOfType(connection, window);
    if (layer != WindowRecord::ordinaryLayer) {
        return layer;
    }
    if (hasState(connection, window, Atom::netWindowStateAbove)) {
        return keptAboveLayer;
    }
    return hasState(connection, window, Atom::netWindowStateBelow) ? keptBelowLayer : WindowRecord::ordinaryLayer;
}

PixelRect visibleArea(const ClientWindow& window) {
    const Borders outside = window.decoration.value_or(Borders());
    const Borders inside = window.shadow.value_or(Borders());
    const PixelRect& area = window.area;
    return {.x = area.x - outside.left + inside.left,
            .y = area.y - outside.top + inside.top,
            .width = std::max(0, area.width + outside.left + outside.right - inside.left - inside.right),
            .height = std::max(0, area.height + outside.top + outside.bottom - inside.top - inside.bottom)};
}

}  // namespace pallwick::x11
