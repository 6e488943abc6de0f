#pragma once

#include <string_view>

namespace pallwick {

/// The program's own bundle identifier and desktop-file id.
inline constexpr std::string_view programBundleID = "org.pallwick.Pallwick";

}  // namespace pallwick
