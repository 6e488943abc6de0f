#pragma once

#include <PallwickMac/Platform/X11/PixelMapping.h>

#include <vector>

namespace pallwick::x11 {

/// What a panel or dock reserves along one edge of the root window, after `_NET_WM_STRUT_PARTIAL` (EWMH).
struct Strut {
    enum class Edge { left, right, top, bottom };

    Edge edge = Edge::top;
    /// Pixels from that edge of the root window inward.
    int thickness = 0;
    /// Half-open range along the edge, in root pixels.
    int begin = 0;
    int end = 0;

    friend bool operator==(const Strut&, const Strut&) = default;
};

/// `monitor` less the struts that end within it. A strut counts from the root's edge, so one that belongs to a farther
/// monitor spans nearer ones entirely; those it leaves alone.
[[nodiscard]] PixelRect workArea(const PixelRect& monitor, const PixelRect& root, const std::vector<Strut>& struts);

}  // namespace pallwick::x11
