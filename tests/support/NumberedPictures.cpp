#include "NumberedPictures.h"

#include <array>
#include <cstdio>
#include <vector>

namespace pallwick::support {

NumberedPictures::NumberedPictures(std::filesystem::path directory) : directory_(std::move(directory)) {
    std::filesystem::create_directories(directory_);
    std::vector<std::filesystem::path> old;
    for (const auto& entry : std::filesystem::directory_iterator(directory_)) {
        if (entry.path().extension() == ".png") {
            old.push_back(entry.path());
        }
    }
    for (const std::filesystem::path& file : old) {
        std::filesystem::remove(file);
    }
}

std::string NumberedPictures::save(const Screenshot& picture, const std::string& name) {
    ++count_;
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "%03d-", count_);
    const std::string file = number.data() + name + ".png";
    picture.savePng(directory_ / file);
    return file;
}

}  // namespace pallwick::support
