#pragma once

#include <PallwickMacCore/Stores/FileSystem.h>

#include <filesystem>

namespace pallwick {

/// Makes the directory, for its owner alone, and those missing on the way to it; what exists stays as it is. Throws
/// `FileError`, also where something else than a directory is in the way.
void createDirectories(FileSystem& fileSystem, const std::filesystem::path& directory);

}  // namespace pallwick
