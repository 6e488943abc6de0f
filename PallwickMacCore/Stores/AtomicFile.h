#pragma once

#include <PallwickMacCore/Stores/FileSystem.h>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace pallwick {

/// How many bytes a file may have, so that a damaged or planted one cannot take all memory.
inline constexpr std::size_t maximumFileSize = std::size_t{256} << 20;

/// The whole content of the regular file at `path`, none where there is no object at that path (a symbolic link that
/// leads nowhere is none). Throws `FileError`: for anything that is there and cannot be read, for a directory, and for
/// a pipe or device, which it does not wait for.
[[nodiscard]] std::optional<std::string> readFile(FileSystem& fileSystem, const std::filesystem::path& path);

/// Makes `content` the whole content of the regular file at `path`, so that a reader sees the old one or the new one
/// and never anything else, whenever this process or the machine stops.
///
/// A new file is for its owner alone. One that is replaced keeps its mode, and its owner and group where we may set
/// them; its hard links keep the old content. A symbolic link stays and its target is replaced, or made where there is
/// none.
///
/// Throws `FileError` where the old file is still in place, whole, and nothing else is left behind. Once the new one
/// is in place this succeeds: should the directory then not be flushed to the disk, the machine's loss of power may
/// bring the old file back, but a failure would be reported of what every reader already sees.
void replaceFile(FileSystem& fileSystem, const std::filesystem::path& path, std::string_view content);

}  // namespace pallwick
