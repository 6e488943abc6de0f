#pragma once

#include <optional>
#include <string_view>

namespace pallwick {

/// The case whose raw value equals `rawValue` exactly (case-sensitive, no trimming), or none.
/// Each enumeration that has raw values specializes this in its own header.
template <typename Enumeration>
std::optional<Enumeration> fromRawValue(std::string_view rawValue) = delete;

/// Every case in declaration order, for enumerations that offer the list.
template <typename Enumeration>
struct AllCases;

template <typename Enumeration>
constexpr const auto& allCases() {
    return AllCases<Enumeration>::values;
}

}  // namespace pallwick
