#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace pallwick {

/// One step on the way into a document: a member's key or an element's index.
using CodingKey = std::variant<std::string, std::size_t>;

/// The way from the document's root to one of its values; empty for the root itself.
using CodingPath = std::vector<CodingKey>;

/// The form shown to people, such as `screen:1[0].frame`. Always one line: each key stands in it as `shownText` gives
/// it.
[[nodiscard]] std::string printedForm(const CodingPath& path);

}  // namespace pallwick
