#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace pallwick {

/// A universally unique identifier (RFC 4122). The nil UUID unless made otherwise.
class UUID {
public:
    constexpr UUID() = default;
    explicit constexpr UUID(const std::array<std::uint8_t, 16>& bytes) : bytes_(bytes) {}

    /// A fresh version-4 UUID from the system's random source.
    [[nodiscard]] static UUID random();

    /// Reads the 36-character form 8-4-4-4-12 in either letter case; none for any other text.
    [[nodiscard]] static std::optional<UUID> fromString(std::string_view text);

    /// The 36-character form with upper-case digits.
    [[nodiscard]] std::string uuidString() const;

    [[nodiscard]] constexpr const std::array<std::uint8_t, 16>& bytes() const { return bytes_; }

    friend auto operator<=>(const UUID&, const UUID&) = default;

private:
    std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace pallwick

template <>
struct std::hash<pallwick::UUID> {
    std::size_t operator()(const pallwick::UUID& uuid) const noexcept;
};
