#include <PallwickMacCore/Stores/FileError.h>
#include <PallwickMacCore/Stores/OpenFile.h>
#include <PallwickMacCore/Stores/StorageDirectory.h>

#include <cerrno>

namespace pallwick {

namespace {

/// Makes one directory whose parent exists.
void create(FileSystem& fileSystem, const std::filesystem::path& directory) {
    // Another process may make it at the same time, so that looking first would prove nothing.
    if (uninterrupted([&] { return fileSystem.mkdir(directory.native(), S_IRWXU); }) == 0) {
        return;
    }
    const int error = errno;
    struct stat status {};
    if (uninterrupted([&] { return fileSystem.stat(directory.native(), status); }) < 0 || !S_ISDIR(status.st_mode)) {
        throw FileError(FileError::Operation::create, directory, {error, std::generic_category()});
    }
}

}  // namespace

void createDirectories(FileSystem& fileSystem, const std::filesystem::path& directory) {
    std::filesystem::path made;
    for (const std::filesystem::path& component : directory) {
        made /= component;
        if (!component.empty()) {
            create(fileSystem, made);
        }
    }
}

}  // namespace pallwick
