#pragma once

#include <support/TemporaryDirectory.h>

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace pallwick::desktop {

/// The file that holds the presets, as others see it.
class PresetsFile {
public:
    /// `dataHome` is the directory that holds the program's own.
    explicit PresetsFile(const std::filesystem::path& dataHome);

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] bool exists() const { return std::filesystem::exists(path_); }
    /// Every byte of it. Throws `std::runtime_error` where there is no such file.
    [[nodiscard]] std::string text() const;
    void setText(const std::string& text) const;
    /// Permission bits.
    [[nodiscard]] mode_t mode() const;
    [[nodiscard]] mode_t directoryMode() const;
    /// The names of all that lies beside it, itself included, temporary files as well.
    [[nodiscard]] std::string namesInDirectory() const;

    enum class Layout { compact, indentedByTwo };
    /// What Python's JSON module makes of it: keys sorted, nothing escaped without need, a line break at the end.
    /// Throws `std::runtime_error` where Python refuses it.
    [[nodiscard]] std::string asPythonWritesIt(Layout layout) const;

private:
    std::filesystem::path path_;
    support::TemporaryDirectory scratch_;
};

}  // namespace pallwick::desktop
