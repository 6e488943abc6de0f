#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <string>
#include <vector>

namespace pallwick {

/// The operating system's file operations that the core uses, so that a test can let each of them fail.
///
/// Every member does what the POSIX function of its name does: it returns a negative number and sets `errno` on
/// failure, may be interrupted (EINTR), and may read or write less than asked. Descriptors belong to the caller.
class FileSystem {
public:
    FileSystem() = default;
    virtual ~FileSystem() = default;
    FileSystem(const FileSystem&) = delete;
    FileSystem& operator=(const FileSystem&) = delete;

    /// `directory` is a descriptor or AT_FDCWD; `mode` counts only where the file is made.
    [[nodiscard]] virtual int openAt(int directory, const std::string& path, int flags, mode_t mode) = 0;
    virtual int close(int file) = 0;
    [[nodiscard]] virtual ssize_t read(int file, void* bytes, std::size_t count) = 0;
    [[nodiscard]] virtual ssize_t write(int file, const void* bytes, std::size_t count) = 0;
    [[nodiscard]] virtual int fsync(int file) = 0;
    [[nodiscard]] virtual int flock(int file, int operation) = 0;
    [[nodiscard]] virtual int fstat(int file, struct stat& status) = 0;
    [[nodiscard]] virtual int fchmod(int file, mode_t mode) = 0;
    [[nodiscard]] virtual int fchown(int file, uid_t owner, gid_t group) = 0;

    /// Of the object itself where it is a symbolic link.
    [[nodiscard]] virtual int fstatAt(int directory, const std::string& name, struct stat& status) = 0;
    /// Both names are in `directory`.
    [[nodiscard]] virtual int renameAt(int directory, const std::string& from, const std::string& to) = 0;
    virtual int unlinkAt(int directory, const std::string& name) = 0;

    /// 0, with all names in an open directory, in no order, the two that every directory has left out.
    [[nodiscard]] virtual int list(int directory, std::vector<std::string>& names) = 0;
    /// 0, with the link's text.
    [[nodiscard]] virtual int readLink(const std::string& path, std::string& target) = 0;

    /// Of the object that a symbolic link leads to.
    [[nodiscard]] virtual int stat(const std::string& path, struct stat& status) = 0;
    [[nodiscard]] virtual int mkdir(const std::string& path, mode_t mode) = 0;
};

}  // namespace pallwick
