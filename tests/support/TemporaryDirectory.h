#pragma once

#include <filesystem>

namespace pallwick::support {

/// A directory of its own under /tmp (mode 0700), removed with all it holds.
/// Under /tmp whatever TMPDIR says: sockets live in it, and their paths are limited to 107 bytes.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    /// Makes a directory in it, for its owner alone.
    [[nodiscard]] std::filesystem::path makeDirectory(const std::filesystem::path& name) const;

private:
    std::filesystem::path path_;
};

}  // namespace pallwick::support
