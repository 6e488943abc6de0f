#pragma once

#include <PallwickMac/Platform/X11/Connection.h>

#include <cstdint>

class QWindow;

namespace pallwick::x11 {

/// Brings an open window of the toolkit's to the current workspace and to the front and gives it the keyboard: by
/// asking the window manager (EWMH), which also shows it where it was minimised, or by ourselves where there is none.
/// `time` is when a person asked, in milliseconds of the server's clock; 0 for not known.
///
/// The toolkit is not asked to undo a minimisation: some window managers call a window on another workspace minimised
/// (openbox does).
void activateWindow(const Connection& connection, QWindow& window, std::uint32_t time);

}  // namespace pallwick::x11
