#pragma once

#include <utility>

namespace pallwick::support {

/// Owns a file descriptor and closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;
    /// Takes ownership; -1 owns nothing.
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { reset(); }

    [[nodiscard]] int get() const { return descriptor_; }
    void reset();

private:
    int descriptor_ = -1;
};

/// Both ends close on exec; a child gets the end it needs by `dup2`.
struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;

    /// Throws `std::system_error`.
    static Pipe make();
};

}  // namespace pallwick::support
