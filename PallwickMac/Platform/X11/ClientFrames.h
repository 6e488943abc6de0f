#pragma once

#include <PallwickMac/Platform/X11/Connection.h>

#include <optional>
#include <vector>

namespace pallwick::x11 {

/// The children of the root window, bottom to top. Empty once the server is gone.
[[nodiscard]] std::vector<xcb_window_t> rootChildren(const Connection& connection);

/// The topmost client frame among `children` (bottom to top): a viewable one with `WM_STATE` on itself or within two
/// levels (ICCCM, section 4.1.3.1); or one of the window manager's around a window of another program; or, where no
/// window manager runs, one that is not override-redirect. `panels` are passed over, and so is all that lies beneath
/// the lowest of them, unless none of them is there.
[[nodiscard]] std::optional<xcb_window_t> topmostClientFrame(const Connection& connection,
                                                             const std::vector<xcb_window_t>& children,
                                                             const std::vector<xcb_window_t>& panels);

}  // namespace pallwick::x11
