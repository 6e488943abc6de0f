#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace pallwick {

/// What the surroundings of a process say about where its user's data lies; each may be missing.
struct UserDirectories {
    /// The environment variable XDG_DATA_HOME.
    std::optional<std::string> dataHome;
    /// The environment variable HOME.
    std::optional<std::string> home;
    /// The home directory in the system's list of users.
    std::optional<std::string> homeOfUser;

    /// Those of this process.
    [[nodiscard]] static UserDirectories current();
};

/// The directory in which programs keep the data of their user (freedesktop.org's base directory rules), which need not
/// exist. An empty or relative path counts as none, as those rules demand for XDG_DATA_HOME. Throws `FileError` where
/// no home directory is known.
[[nodiscard]] std::filesystem::path applicationSupportDirectory(const UserDirectories& directories);

}  // namespace pallwick
