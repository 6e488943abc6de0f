#pragma once

#include <PallwickMacCore/Stores/FileSystem.h>

namespace pallwick {

/// The files of this machine.
class PosixFileSystem : public FileSystem {
public:
    [[nodiscard]] int openAt(int directory, const std::string& path, int flags, mode_t mode) override;
    int close(int file) override;
    [[nodiscard]] ssize_t read(int file, void* bytes, std::size_t count) override;
    [[nodiscard]] ssize_t write(int file, const void* bytes, std::size_t count) override;
    [[nodiscard]] int fsync(int file) override;
    [[nodiscard]] int flock(int file, int operation) override;
    [[nodiscard]] int fstat(int file, struct stat& status) override;
    [[nodiscard]] int fchmod(int file, mode_t mode) override;
    [[nodiscard]] int fchown(int file, uid_t owner, gid_t group) override;
    [[nodiscard]] int fstatAt(int directory, const std::string& name, struct stat& status) override;
    [[nodiscard]] int renameAt(int directory, const std::string& from, const std::string& to) override;
    int unlinkAt(int directory, const std::string& name) override;
    [[nodiscard]] int list(int directory, std::vector<std::string>& names) override;
    [[nodiscard]] int readLink(const std::string& path, std::string& target) override;
    [[nodiscard]] int stat(const std::string& path, struct stat& status) override;
    [[nodiscard]] int mkdir(const std::string& path, mode_t mode) override;
};

}  // namespace pallwick
