#include "Gallery.h"

#include <iostream>

namespace pallwick::pictures {

Gallery::Gallery(const std::filesystem::path& directory) : pictures_(directory), index_(directory / "index.txt") {
    index_.exceptions(std::ios::failbit | std::ios::badbit);
}

void Gallery::add(const support::Screenshot& picture, const std::string& name, const std::string& sentence) {
    const std::string line = pictures_.save(picture, name) + "  " + sentence;
    index_ << line << std::endl;
    std::cout << line << std::endl;
}

}  // namespace pallwick::pictures
