#include <PallwickMacCore/Stores/AtomicFile.h>
#include <PallwickMacCore/Stores/FileError.h>
#include <PallwickMacCore/Stores/TemporaryFile.h>

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace pallwick {

namespace {

[[noreturn]] void fail(int error) {
    throw std::system_error(error, std::generic_category());
}

constexpr mode_t permissions(const struct stat& status) {
    return status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
}

void requireRegularFile(const struct stat& status) {
    if (S_ISDIR(status.st_mode)) {
        fail(EISDIR);
    }
    if (!S_ISREG(status.st_mode)) {
        fail(EOPNOTSUPP);
    }
}

/// Whether opening failed because there is no object at the path.
bool isNothing(const std::error_code& error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

std::string contentOf(FileSystem& fileSystem, const OpenFile& file) {
    struct stat status {};
    succeeding([&] { return fileSystem.fstat(file.get(), status); });
    requireRegularFile(status);
    std::string content;
    std::array<char, std::size_t{64} << 10> buffer{};
    while (true) {
        const auto count = static_cast<std::size_t>(
            succeeding([&] { return fileSystem.read(file.get(), buffer.data(), buffer.size()); }));
        if (count == 0) {
            return content;
        }
        if (content.size() + count > maximumFileSize) {
            fail(EFBIG);
        }
        content.append(buffer.data(), count);
    }
}

/// Where the links from `path` on end, which need not exist.
std::filesystem::path followLinks(FileSystem& fileSystem, std::filesystem::path path) {
    // As many as the system itself follows.
    constexpr int maximumLinks = 40;
    for (int i = 0; i < maximumLinks; ++i) {
        std::string target;
        if (uninterrupted([&] { return fileSystem.readLink(path.native(), target); }) < 0) {
            // Not a link, or nothing at all.
            if (errno == EINVAL || errno == ENOENT) {
                return path;
            }
            fail(errno);
        }
        // An absolute target replaces the whole.
        path = path.parent_path() / target;
    }
    fail(ELOOP);
}

std::optional<struct stat> existingFile(FileSystem& fileSystem, const OpenFile& directory, const std::string& name) {
    struct stat status {};
    if (uninterrupted([&] { return fileSystem.fstatAt(directory.get(), name, status); }) < 0) {
        if (errno == ENOENT) {
            return std::nullopt;
        }
        fail(errno);
    }
    requireRegularFile(status);
    return status;
}

/// Gives `file` the owner and the mode of the file that it replaces.
void takeOver(FileSystem& fileSystem, int file, const struct stat& old) {
    struct stat status {};
    succeeding([&] { return fileSystem.fstat(file, status); });
    mode_t mode = permissions(old);
    const auto give = [&](uid_t owner, gid_t group) {
        return uninterrupted([&] { return fileSystem.fchown(file, owner, group); }) == 0;
    };
    constexpr auto unchanged = static_cast<uid_t>(-1);
    const bool same = status.st_uid == old.st_uid && status.st_gid == old.st_gid;
    if (!same && !give(old.st_uid, old.st_gid) && status.st_gid != old.st_gid && !give(unchanged, old.st_gid)) {
        // What one group was allowed is not for another.
        mode &= ~static_cast<mode_t>(S_IRWXG);
    }
    succeeding([&] { return fileSystem.fchmod(file, mode); });
}

void writeAll(FileSystem& fileSystem, int file, std::string_view content) {
    while (!content.empty()) {
        const auto count = static_cast<std::size_t>(
            succeeding([&] { return fileSystem.write(file, content.data(), content.size()); }));
        if (count == 0) {
            fail(EIO);
        }
        content.remove_prefix(std::min(count, content.size()));
    }
}

void replace(FileSystem& fileSystem, const std::filesystem::path& path, std::string_view content) {
    if (content.size() > maximumFileSize) {
        fail(EFBIG);
    }
    const std::filesystem::path target = followLinks(fileSystem, path);
    if (!target.has_filename()) {
        fail(EISDIR);
    }
    const std::string name = target.filename();
    const std::string parent = target.has_parent_path() ? target.parent_path().native() : ".";
    // Open from before the first change on, so that all of it happens in one directory, even if that is moved.
    const OpenFile directory(fileSystem, AT_FDCWD, parent, O_RDONLY | O_DIRECTORY);
    const std::optional<struct stat> old = existingFile(fileSystem, directory, name);

    TemporaryFile temporary(fileSystem, directory, name);
    if (old) {
        takeOver(fileSystem, temporary.descriptor(), *old);
    } else {
        // The process's mask may have taken even the owner's right to read it.
        succeeding([&] { return fileSystem.fchmod(temporary.descriptor(), S_IRUSR | S_IWUSR); });
    }
    writeAll(fileSystem, temporary.descriptor(), content);
    succeeding([&] { return fileSystem.fsync(temporary.descriptor()); });
    temporary.replaceTarget();
    static_cast<void>(uninterrupted([&] { return fileSystem.fsync(directory.get()); }));
}

}  // namespace

std::optional<std::string> readFile(FileSystem& fileSystem, const std::filesystem::path& path) {
    std::optional<OpenFile> file;
    try {
        // Without O_NONBLOCK, opening a pipe waits for someone to write into it.
        file.emplace(fileSystem, AT_FDCWD, path.native(), O_RDONLY | O_NONBLOCK);
        return contentOf(fileSystem, *file);
    } catch (const std::system_error& error) {
        if (!file && isNothing(error.code())) {
            return std::nullopt;
        }
        throw FileError(FileError::Operation::read, path, error.code());
    }
}

void replaceFile(FileSystem& fileSystem, const std::filesystem::path& path, std::string_view content) {
    try {
        replace(fileSystem, path, content);
    } catch (const std::system_error& error) {
        throw FileError(FileError::Operation::write, path, error.code());
    }
}

}  // namespace pallwick
