#include "SourceTree.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace pallwick::test {

std::vector<SourceFile> readSourceTree() {
    const std::filesystem::path root = PALLWICK_SOURCE_DIR;
    std::vector<SourceFile> files;
    for (const char* folder : {"PallwickMacCore", "PallwickMac", "data", "tests", "bench", "fuzz"}) {
        if (!std::filesystem::exists(root / folder)) {
            continue;
        }
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
            const std::filesystem::path& path = entry.path();
            if (path.extension() != ".h" && path.extension() != ".cpp") {
                continue;
            }
            std::ostringstream text;
            text << std::ifstream(path, std::ios::binary).rdbuf();
            files.push_back({.path = path.lexically_relative(root).generic_string(), .text = text.str()});
        }
    }
    std::ranges::sort(files, {}, &SourceFile::path);
    return files;
}

}  // namespace pallwick::test
