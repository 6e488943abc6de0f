#include <PallwickMacCore/Stores/OpenFile.h>

#include <fcntl.h>

namespace pallwick {

OpenFile::OpenFile(FileSystem& fileSystem, int directory, const std::string& path, int flags, mode_t mode)
    : OpenFile(fileSystem,
               succeeding([&] { return fileSystem.openAt(directory, path, flags | O_CLOEXEC | O_NOCTTY, mode); })) {}

}  // namespace pallwick
