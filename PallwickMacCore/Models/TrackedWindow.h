#pragma once

#include <PallwickMacCore/Models/Geometry.h>

#include <cstdint>
#include <string>

namespace pallwick {

/// One on-screen window of another application, as it was when the window server was asked.
struct TrackedWindow {
    /// Window number.
    std::uint32_t id = 0;
    std::int32_t ownerPID = 0;
    std::string ownerName;
    /// May be empty.
    std::string title;
    /// Window bounds in global screen coordinates, unchanged.
    Rect frame;

    /// The owner's name, followed by " - " and the title where there is one.
    [[nodiscard]] std::string displayName() const;

    friend bool operator==(const TrackedWindow&, const TrackedWindow&) = default;
};

}  // namespace pallwick
