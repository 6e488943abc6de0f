#pragma once

#include <PallwickMacCore/Models/CoreError.h>

#include <filesystem>
#include <system_error>

namespace pallwick {

/// A file or directory that the system would not let us use. `what()` names it by its last component, because a
/// status line has no room for a path: "presets.json could not be written: No space left on device".
class FileError : public CoreError {
public:
    enum class Operation {
        /// A directory could not be looked up.
        find,
        /// A directory could not be made.
        create,
        read,
        write,
    };

    FileError(Operation operation, std::filesystem::path path, std::error_code systemError);

    [[nodiscard]] Operation operation() const { return operation_; }

    /// As the caller named it, also where a symbolic link led elsewhere.
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    [[nodiscard]] std::error_code systemError() const { return systemError_; }

private:
    Operation operation_;
    std::filesystem::path path_;
    std::error_code systemError_;
};

}  // namespace pallwick
