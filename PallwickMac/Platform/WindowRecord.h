#pragma once

#include <PallwickMacCore/Models/Geometry.h>

#include <cstdint>
#include <optional>
#include <string>

namespace pallwick {

/// One on-screen window as the window server reports it, unfiltered. Any field may be missing.
struct WindowRecord {
    /// The layer of ordinary windows, among which a person works.
    static constexpr std::int32_t ordinaryLayer = 0;

    /// Windows of a higher layer cover those of a lower one.
    std::optional<std::int32_t> layer;
    /// Window number; names the window for as long as it exists.
    std::optional<std::uint32_t> number;
    std::optional<std::int32_t> ownerProcessID;
    /// What a person calls the application, UTF-8.
    std::optional<std::string> ownerName;
    /// UTF-8; may be empty.
    std::optional<std::string> title;
    /// Points, y down: x = 0 at the primary display's left edge, y = 0 at the top edge of the union of all screens.
    std::optional<Rect> bounds;

    friend bool operator==(const WindowRecord&, const WindowRecord&) = default;
};

}  // namespace pallwick
