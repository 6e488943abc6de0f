#pragma once

#include <string>
#include <vector>

namespace pallwick::test {

struct SourceFile {
    /// Relative to the root of the tree, with slashes.
    std::string path;
    std::string text;
};

/// Every C++ source and header of the project, sorted by path.
[[nodiscard]] std::vector<SourceFile> readSourceTree();

}  // namespace pallwick::test
