#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pallwick::test {

/// The lines of a C++ source without its comments and without what its strings and characters say, which both become
/// blanks. What an include directive names is kept.
[[nodiscard]] std::vector<std::string> codeLines(std::string_view source);

/// What a line of code includes, without its brackets or quotation marks; none where it is no include directive.
[[nodiscard]] std::optional<std::string> includedFile(std::string_view line);

}  // namespace pallwick::test
