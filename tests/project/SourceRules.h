#pragma once

#include "SourceTree.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pallwick::test {

/// Something that a source file may not do. Paths are relative to the root of the tree.
struct SourceRule {
    const char* name;
    const char* sentence;
    /// Whether the file at `path` may not include `included`; null where the rule is not about includes.
    bool (*forbidsInclude)(std::string_view path, std::string_view included);
    /// Whether the file at `path` may not have `line`; null where the rule is not about code.
    bool (*forbidsLine)(std::string_view path, const std::string& line);
};

[[nodiscard]] std::span<const SourceRule> sourceRules();

/// The numbers of the lines with which `file` breaks `rule`.
[[nodiscard]] std::vector<std::size_t> offendingLines(const SourceRule& rule, const SourceFile& file);

/// How high in the program the file at `path` lies; none for a file that is not part of the program. A file includes
/// only its own layer and lower ones.
[[nodiscard]] std::optional<int> layerOf(std::string_view path);

}  // namespace pallwick::test
