#include <PallwickMacCore/Stores/ApplicationSupport.h>
#include <PallwickMacCore/Stores/FileError.h>

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace pallwick {

namespace {

std::optional<std::string> environmentVariable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

std::optional<std::string> homeInUserList() {
    passwd entry{};
    passwd* found = nullptr;
    std::array<char, std::size_t{16} << 10> strings{};
    if (::getpwuid_r(::getuid(), &entry, strings.data(), strings.size(), &found) != 0 || found == nullptr) {
        return std::nullopt;
    }
    return std::string(found->pw_dir);
}

bool isAbsolute(const std::optional<std::string>& path) {
    return path && path->starts_with('/');
}

}  // namespace

UserDirectories UserDirectories::current() {
    return {.dataHome = environmentVariable("XDG_DATA_HOME"),
            .home = environmentVariable("HOME"),
            .homeOfUser = homeInUserList()};
}

std::filesystem::path applicationSupportDirectory(const UserDirectories& directories) {
    if (isAbsolute(directories.dataHome)) {
        return *directories.dataHome;
    }
    for (const std::optional<std::string>& home : {directories.home, directories.homeOfUser}) {
        if (isAbsolute(home)) {
            return std::filesystem::path(*home) / ".local" / "share";
        }
    }
    throw FileError(FileError::Operation::find, "home directory",
                    std::make_error_code(std::errc::no_such_file_or_directory));
}

}  // namespace pallwick
