#pragma once

#include <string>
#include <string_view>

namespace pallwick::x11 {

/// Turns X11's Compound Text encoding into clean UTF-8 of one line. ASCII, ISO 8859-1 and UTF-8 are read, which is what
/// clients write that do not also say it in UTF-8 alone; each stretch in another character set becomes one U+FFFD.
[[nodiscard]] std::string cleanCompoundText(std::string_view text);

}  // namespace pallwick::x11
