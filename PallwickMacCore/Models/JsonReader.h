#pragma once

#include <PallwickMacCore/Models/JsonValue.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace pallwick {

/// How many arrays and objects may be open at once.
inline constexpr std::size_t maximumJsonNesting = 512;

/// Reads one whole JSON text in UTF-8, whatever the program's locale is.
///
/// Throws `DecodingError` (data corrupted, with an empty path) for anything that is not exactly one JSON value:
/// broken syntax, text or a NUL byte after it, bad UTF-8, half a surrogate pair, a control character inside a string,
/// a number beyond the range of a double, or deeper nesting than `maximumJsonNesting`. `sourceName` goes into the
/// error.
[[nodiscard]] JsonValue readJson(std::string_view text, const std::string& sourceName);

}  // namespace pallwick
