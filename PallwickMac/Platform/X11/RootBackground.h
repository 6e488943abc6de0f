#pragma once

#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/Resources.h>

namespace pallwick::x11 {

/// A copy of what the root window itself is painted with, a colour or a tile, as large as the root: the desktop's
/// ground where nobody has left the pixmap that he painted it with. No request tells what that is, but a window whose
/// background is its parent's (ParentRelative, X protocol, section 4) gets it from the server. The picture is that of
/// the moment; later changes of the ground are told to nobody.
[[nodiscard]] PixmapHandle copyRootBackground(const Connection& connection);

}  // namespace pallwick::x11
