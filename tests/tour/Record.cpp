#include "Record.h"

#include <array>
#include <cstdio>
#include <iostream>
#include <vector>

namespace pallwick::tour {

Record::Record(std::filesystem::path directory) : directory_(std::move(directory)) {
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

void Record::heading(const std::string& text) {
    std::cout << "\n" << text << std::endl;
}

void Record::check(bool isTrue, const std::string& sentence, const std::string& seen) {
    ++(isTrue ? passed_ : failed_);
    std::cout << (isTrue ? "  ok    " : "  FAIL  ") << sentence;
    if (!isTrue && !seen.empty()) {
        std::cout << "; seen: " << seen;
    }
    std::cout << std::endl;
}

bool Record::attempt(const std::string& part, const std::function<void()>& body) {
    try {
        body();
        return true;
    } catch (const std::exception& error) {
        check(false, part, error.what());
        return false;
    }
}

void Record::picture(const support::Screenshot& screen, const std::string& name) {
    ++pictures_;
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "%02d-", pictures_);
    screen.savePng(directory_ / (number.data() + name + ".png"));
}

}  // namespace pallwick::tour
