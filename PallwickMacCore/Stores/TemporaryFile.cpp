#include <PallwickMacCore/Models/UUID.h>
#include <PallwickMacCore/Stores/TemporaryFile.h>

#include <fcntl.h>
#include <sys/file.h>

#include <optional>
#include <string_view>
#include <vector>

namespace pallwick {

namespace {

constexpr std::string_view suffix = ".tmp";

std::string prefix(const std::string& target) {
    return "." + target + ".";
}

std::string freshName(const std::string& target) {
    return prefix(target) + UUID::random().uuidString() + std::string(suffix);
}

/// Exactly the names that `freshName` makes: what an editor leaves beside the file is not ours to remove.
bool isTemporaryName(std::string_view name, const std::string& target) {
    const std::string start = prefix(target);
    return name.starts_with(start) && name.ends_with(suffix) && name.size() > start.size() + suffix.size() &&
           UUID::fromString(name.substr(start.size(), name.size() - start.size() - suffix.size())).has_value();
}

bool lock(FileSystem& fileSystem, const OpenFile& file) {
    return uninterrupted([&] { return fileSystem.flock(file.get(), LOCK_EX | LOCK_NB); }) == 0;
}

/// Removes what killed processes have left. It may fail at any step: what stays is in nobody's way.
void removeAbandoned(FileSystem& fileSystem, const OpenFile& directory, const std::string& target) {
    std::vector<std::string> names;
    if (uninterrupted([&] { return fileSystem.list(directory.get(), names); }) < 0) {
        return;
    }
    for (const std::string& name : names) {
        if (!isTemporaryName(name, target)) {
            continue;
        }
        const OpenFile file(fileSystem, uninterrupted([&] {
                                constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
                                return fileSystem.openAt(directory.get(), name, flags, 0);
                            }));
        if (file.get() >= 0 && lock(fileSystem, file)) {
            uninterrupted([&] { return fileSystem.unlinkAt(directory.get(), name); });
        }
    }
}

/// Whether another process took the new file for an abandoned one in the moment before it was locked.
bool isLost(FileSystem& fileSystem, const OpenFile& file) {
    if (!lock(fileSystem, file) && errno == EWOULDBLOCK) {
        return true;
    }
    struct stat status {};
    return uninterrupted([&] { return fileSystem.fstat(file.get(), status); }) == 0 && status.st_nlink == 0;
}

}  // namespace

TemporaryFile::Created TemporaryFile::create(FileSystem& fileSystem, const OpenFile& directory,
                                             const std::string& target) {
    removeAbandoned(fileSystem, directory, target);
    constexpr int attempts = 16;
    for (int i = 0; i < attempts; ++i) {
        std::string name = freshName(target);
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW;
        OpenFile file(fileSystem, directory.get(), name, flags, S_IRUSR | S_IWUSR);
        if (!isLost(fileSystem, file)) {
            return {.name = std::move(name), .file = std::move(file)};
        }
        uninterrupted([&] { return fileSystem.unlinkAt(directory.get(), name); });
    }
    throw std::system_error(EWOULDBLOCK, std::generic_category());
}

TemporaryFile::TemporaryFile(FileSystem& fileSystem, const OpenFile& directory, const std::string& target)
    : TemporaryFile(fileSystem, directory, target, create(fileSystem, directory, target)) {}

TemporaryFile::TemporaryFile(FileSystem& fileSystem, const OpenFile& directory, std::string target, Created created)
    : fileSystem_(fileSystem),
      directory_(directory),
      target_(std::move(target)),
      name_(std::move(created.name)),
      file_(std::move(created.file)) {}

TemporaryFile::~TemporaryFile() {
    if (!name_.empty()) {
        uninterrupted([this] { return fileSystem_.unlinkAt(directory_.get(), name_); });
    }
}

void TemporaryFile::replaceTarget() {
    succeeding([this] { return fileSystem_.renameAt(directory_.get(), name_, target_); });
    name_.clear();
}

}  // namespace pallwick
