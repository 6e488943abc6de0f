#pragma once

#include <filesystem>
#include <string>

#include "Screenshot.h"

namespace pallwick::support {

/// A directory of pictures in the order in which they were taken.
class NumberedPictures {
public:
    /// Makes the directory, and removes the pictures of an earlier run from it.
    explicit NumberedPictures(std::filesystem::path directory);

    /// Saves "<number>-<name>.png" and returns that name.
    std::string save(const Screenshot& picture, const std::string& name);

    [[nodiscard]] const std::filesystem::path& directory() const { return directory_; }
    [[nodiscard]] int count() const { return count_; }

private:
    std::filesystem::path directory_;
    int count_ = 0;
};

}  // namespace pallwick::support
