#pragma once

#include <cstddef>
#include <string_view>

namespace pallwick {

/// U+FFFD in UTF-8, which stands for what cannot be written or shown.
inline constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

/// The length in bytes of the UTF-8 sequence that `text` starts with, 0 where it starts with none.
[[nodiscard]] std::size_t utf8SequenceLength(std::string_view text);

[[nodiscard]] bool isValidUtf8(std::string_view text);

}  // namespace pallwick
