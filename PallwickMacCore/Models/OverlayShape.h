#pragma once

#include <PallwickMacCore/Models/RawRepresentable.h>

#include <array>
#include <string_view>

namespace pallwick {

enum class OverlayShape { rectangle, circle };

/// The value used in JSON.
[[nodiscard]] std::string_view rawValue(OverlayShape shape);

/// The name shown to people.
[[nodiscard]] std::string_view title(OverlayShape shape);

template <>
std::optional<OverlayShape> fromRawValue<OverlayShape>(std::string_view rawValue);

template <>
struct AllCases<OverlayShape> {
    static constexpr std::array values{OverlayShape::rectangle, OverlayShape::circle};
};

}  // namespace pallwick
