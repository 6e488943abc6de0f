#pragma once

#include <PallwickMacCore/Models/RawRepresentable.h>

#include <string_view>

namespace pallwick {

/// What an overlay is tied to.
enum class OverlayAnchor {
    /// Stays where it was placed on its display.
    screen,
    /// Accepted in records and files; treated exactly like `screen`.
    application,
    /// Follows another application's window, and is shown only while that window's owner is frontmost.
    window,
};

/// The value used in JSON.
[[nodiscard]] std::string_view rawValue(OverlayAnchor anchor);

template <>
std::optional<OverlayAnchor> fromRawValue<OverlayAnchor>(std::string_view rawValue);

}  // namespace pallwick
