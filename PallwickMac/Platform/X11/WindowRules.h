#pragma once

#include <PallwickMac/Platform/X11/ClientWindow.h>

#include <cstdint>
#include <optional>

namespace pallwick::x11 {

// What a person sees of a client window, judged from what is said about it.

/// Whether the window is on the screen: viewable, neither minimised nor hidden, and on the current workspace or on all.
/// Window managers differ in which of these they use. `currentDesktop` is none where there are no workspaces.
[[nodiscard]] bool isOnScreen(const Connection& connection, const ClientWindow& window,
                              std::optional<std::uint32_t> currentDesktop);

/// `WindowRecord::ordinaryLayer` for ordinary, dialog and utility windows that are kept neither above nor below; lower
/// for what lies beneath them, higher for docks, menus, notifications and whatever else lies above.
[[nodiscard]] std::int32_t layerOf(const Connection& connection, const ClientWindow& window);

/// The part of the root that the window fills to the eye: with its title bar, without an invisible shadow. Root pixels.
[[nodiscard]] PixelRect visibleArea(const ClientWindow& window);

}  // namespace pallwick::x11
