#pragma once

#include <PallwickMac/Platform/X11/Connection.h>

#include <cstdint>

class QWindow;

namespace pallwick::x11 {

/// Brings a window of the toolkit's, already shown, to the front and gives it the keyboard: by asking the window
/// manager
/// (`_NET_ACTIVE_WINDOW`, EWMH), which shows it from another workspace or brings it to this one, or by ourselves where
/// there is none. `time` is when a person asked, in milliseconds of the server's clock; 0 for not known.
void activateWindow(const Connection& connection, QWindow& window, std::uint32_t time);

}  // namespace pallwick::x11
