#include <PallwickMacCore/Stores/PosixFileSystem.h>

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

namespace pallwick {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { ::closedir(directory); }
};

}  // namespace

int PosixFileSystem::openAt(int directory, const std::string& path, int flags, mode_t mode) {
    return ::openat(directory, path.c_str(), flags, mode);
}

int PosixFileSystem::close(int file) {
    return ::close(file);
}

ssize_t PosixFileSystem::read(int file, void* bytes, std::size_t count) {
    return ::read(file, bytes, count);
}

ssize_t PosixFileSystem::write(int file, const void* bytes, std::size_t count) {
    return ::write(file, bytes, count);
}

int PosixFileSystem::fsync(int file) {
    return ::fsync(file);
}

int PosixFileSystem::flock(int file, int operation) {
    return ::flock(file, operation);
}

int PosixFileSystem::fstat(int file, struct stat& status) {
    return ::fstat(file, &status);
}

int PosixFileSystem::fchmod(int file, mode_t mode) {
    return ::fchmod(file, mode);
}

int PosixFileSystem::fchown(int file, uid_t owner, gid_t group) {
    return ::fchown(file, owner, group);
}

int PosixFileSystem::fstatAt(int directory, const std::string& name, struct stat& status) {
    return ::fstatat(directory, name.c_str(), &status, AT_SYMLINK_NOFOLLOW);
}

int PosixFileSystem::renameAt(int directory, const std::string& from, const std::string& to) {
    return ::renameat(directory, from.c_str(), directory, to.c_str());
}

int PosixFileSystem::unlinkAt(int directory, const std::string& name) {
    return ::unlinkat(directory, name.c_str(), 0);
}

int PosixFileSystem::list(int directory, std::vector<std::string>& names) {
    // A descriptor of its own, with a reading position of its own, since the stream closes the one it is given.
    const int file = ::openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) {
        return -1;
    }
    const std::unique_ptr<DIR, CloseDirectory> stream(::fdopendir(file));
    if (!stream) {
        ::close(file);
        return -1;
    }
    names.clear();
    while (true) {
        errno = 0;
        const dirent* entry = ::readdir(stream.get());
        if (entry == nullptr) {
            return errno == 0 ? 0 : -1;
        }
        std::string name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(std::move(name));
        }
    }
}

int PosixFileSystem::readLink(const std::string& path, std::string& target) {
    std::array<char, PATH_MAX> text{};
    const ssize_t length = ::readlink(path.c_str(), text.data(), text.size());
    if (length < 0) {
        return -1;
    }
    target.assign(text.data(), static_cast<std::size_t>(length));
    return 0;
}

int PosixFileSystem::stat(const std::string& path, struct stat& status) {
    return ::stat(path.c_str(), &status);
}

int PosixFileSystem::mkdir(const std::string& path, mode_t mode) {
    return ::mkdir(path.c_str(), mode);
}

}  // namespace pallwick
