#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <utility>

#include <support/NumberedPictures.h>

namespace pallwick::tour {

/// What a tour leaves behind: a line for each check and numbered pictures of the screen.
class Record {
public:
    /// Makes the directory, and removes the pictures of an earlier tour from it.
    explicit Record(std::filesystem::path directory) : pictures_(std::move(directory)) {}

    void heading(const std::string& text);
    /// Prints whether `sentence` is true, and what was `seen` where it is not.
    void check(bool isTrue, const std::string& sentence, const std::string& seen = {});
    /// Runs a part of the tour. Where it cannot go on, that is a failed check with the reason, and the result is false.
    bool attempt(const std::string& part, const std::function<void()>& body);
    /// Saves "<number>-<name>.png".
    void picture(const support::Screenshot& screen, const std::string& name) { pictures_.save(screen, name); }

    [[nodiscard]] int passed() const { return passed_; }
    [[nodiscard]] int failed() const { return failed_; }

private:
    support::NumberedPictures pictures_;
    int passed_ = 0;
    int failed_ = 0;
};

}  // namespace pallwick::tour
