#pragma once

#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/PixelMapping.h>
#include <PallwickMac/Platform/X11/WorkArea.h>

#include <cstdint>
#include <string>
#include <vector>

namespace pallwick::x11 {

/// One monitor as RandR 1.5 defines it, in root pixels.
struct Monitor {
    PixelRect frame;
    /// The connector's name, or the name a person gave to a monitor without one.
    std::string name;
    std::uint32_t displayNumber = 0;

    friend bool operator==(const Monitor&, const Monitor&) = default;
};

/// The active monitors, the primary one first; where none is marked primary, in the server's own order.
[[nodiscard]] std::vector<Monitor> queryMonitors(const Connection& connection);

/// The root window's current size, which RandR may change at any time.
[[nodiscard]] PixelRect queryRootArea(const Connection& connection);

/// What every panel and dock reserves now.
[[nodiscard]] std::vector<Strut> queryStruts(const Connection& connection, const PixelRect& root);

}  // namespace pallwick::x11
