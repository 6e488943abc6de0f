#pragma once

#include <support/NumberedPictures.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace pallwick::pictures {

/// A directory of numbered pictures with an index that says in a line what each of them shows.
class Gallery {
public:
    /// Makes the directory and removes what an earlier run left in it.
    explicit Gallery(const std::filesystem::path& directory);

    void add(const support::Screenshot& picture, const std::string& name, const std::string& sentence);

    [[nodiscard]] int count() const { return pictures_.count(); }

private:
    support::NumberedPictures pictures_;
    std::ofstream index_;
};

}  // namespace pallwick::pictures
