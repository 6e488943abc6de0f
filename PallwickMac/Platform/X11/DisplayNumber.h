#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace pallwick::x11 {

/// A number that names a display for good: a hash, never 0, of the EDID's maker, model and serial number; where it
/// has no serial number, of those and the connector; without an EDID of the connector alone.
///
/// Saved presets are keyed by it, so it depends on nothing that a reboot or a replug changes. `edid` is the base block
/// of VESA E-EDID 1.3/1.4, or anything else, which counts as none.
[[nodiscard]] std::uint32_t displayNumber(std::span<const std::uint8_t> edid, std::string_view connector);

}  // namespace pallwick::x11
