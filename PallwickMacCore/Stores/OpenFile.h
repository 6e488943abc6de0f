#pragma once

#include <PallwickMacCore/Stores/FileSystem.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace pallwick {

/// Calls an operation of a file system until no signal interrupts it. Returns what it returns.
template <typename Operation>
auto uninterrupted(Operation operation) {
    auto result = operation();
    while (result < 0 && errno == EINTR) {
        result = operation();
    }
    return result;
}

/// The same; throws `std::system_error` where it fails.
template <typename Operation>
auto succeeding(Operation operation) {
    const auto result = uninterrupted(std::move(operation));
    if (result < 0) {
        throw std::system_error(errno, std::generic_category());
    }
    return result;
}

/// Owns a descriptor. The file system must outlive it.
class OpenFile {
public:
    OpenFile(FileSystem& fileSystem, int descriptor) : fileSystem_(&fileSystem), descriptor_(descriptor) {}

    /// Throws `std::system_error`. The descriptor is closed in child processes.
    OpenFile(FileSystem& fileSystem, int directory, const std::string& path, int flags, mode_t mode = 0);

    OpenFile(OpenFile&& other) noexcept
        : fileSystem_(other.fileSystem_), descriptor_(std::exchange(other.descriptor_, -1)) {}
    OpenFile& operator=(OpenFile&&) = delete;
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    ~OpenFile() {
        if (descriptor_ >= 0) {
            fileSystem_->close(descriptor_);
        }
    }

    [[nodiscard]] int get() const { return descriptor_; }

private:
    FileSystem* fileSystem_;
    int descriptor_;
};

}  // namespace pallwick
