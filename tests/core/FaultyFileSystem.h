#pragma once

#include <PallwickMacCore/Stores/PosixFileSystem.h>

#include <algorithm>
#include <cerrno>
#include <optional>

namespace pallwick::test {

/// What goes wrong in a `FaultyFileSystem`, and what has happened in it.
struct Faults {
    /// The operation, counted from 0, that fails without having done anything; none fails without one.
    std::optional<int> failing;
    int error = EIO;
    /// Whether every operation after it fails as well.
    bool fromThereOn = false;
    /// How many bytes one write or read takes at most.
    std::size_t largestTransfer = static_cast<std::size_t>(-1);

    /// How many operations there have been. Closing is none, because nothing hangs on it.
    int operations = 0;
};

/// The files of this machine, on which operations fail as `Faults` say.
class FaultyFileSystem final : public FileSystem {
public:
    /// `faults` must outlive it.
    explicit FaultyFileSystem(Faults& faults) : faults_(faults) {}

    int openAt(int directory, const std::string& path, int flags, mode_t mode) override {
        return attempt([&] { return files_.openAt(directory, path, flags, mode); });
    }
    int close(int file) override { return files_.close(file); }
    ssize_t read(int file, void* bytes, std::size_t count) override {
        return attempt([&] { return files_.read(file, bytes, std::min(count, faults_.largestTransfer)); });
    }
    ssize_t write(int file, const void* bytes, std::size_t count) override {
        return attempt([&] { return files_.write(file, bytes, std::min(count, faults_.largestTransfer)); });
    }
    int fsync(int file) override {
        return attempt([&] { return files_.fsync(file); });
    }
    int flock(int file, int operation) override {
        return attempt([&] { return files_.flock(file, operation); });
    }
    int fstat(int file, struct stat& status) override {
        return attempt([&] { return files_.fstat(file, status); });
    }
    int fchmod(int file, mode_t mode) override {
        return attempt([&] { return files_.fchmod(file, mode); });
    }
    int fchown(int file, uid_t owner, gid_t group) override {
        return attempt([&] { return files_.fchown(file, owner, group); });
    }
    int fstatAt(int directory, const std::string& name, struct stat& status) override {
        return attempt([&] { return files_.fstatAt(directory, name, status); });
    }
    int renameAt(int directory, const std::string& from, const std::string& to) override {
        return attempt([&] { return files_.renameAt(directory, from, to); });
    }
    int unlinkAt(int directory, const std::string& name) override {
        return attempt([&] { return files_.unlinkAt(directory, name); });
    }
    int list(int directory, std::vector<std::string>& names) override {
        return attempt([&] { return files_.list(directory, names); });
    }
    int readLink(const std::string& path, std::string& target) override {
        return attempt([&] { return files_.readLink(path, target); });
    }
    int stat(const std::string& path, struct stat& status) override {
        return attempt([&] { return files_.stat(path, status); });
    }
    int mkdir(const std::string& path, mode_t mode) override {
        return attempt([&] { return files_.mkdir(path, mode); });
    }

private:
    template <typename Operation>
    auto attempt(Operation operation) -> decltype(operation()) {
        const int number = faults_.operations++;
        if (faults_.failing && (number == *faults_.failing || (faults_.fromThereOn && number > *faults_.failing))) {
            errno = faults_.error;
            return -1;
        }
        return operation();
    }

    Faults& faults_;
    PosixFileSystem files_;
};

}  // namespace pallwick::test
