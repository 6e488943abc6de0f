#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pallwick {

/// How many characters of a name from outside a message shows.
inline constexpr std::size_t maximumShownCharacters = 80;

/// `text`, which may come from anywhere, made fit to stand within one line of a message: valid UTF-8 without line
/// breaks, control characters and marks that turn the direction of the text around it, each of which shows as U+FFFD.
/// A text of more than `maximumCharacters` code points is cut there and ends with "…".
[[nodiscard]] std::string shownText(std::string_view text, std::size_t maximumCharacters = maximumShownCharacters);

}  // namespace pallwick
