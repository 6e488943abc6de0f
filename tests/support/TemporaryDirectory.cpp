#include "TemporaryDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace pallwick::support {

TemporaryDirectory::TemporaryDirectory() {
    std::string name = "/tmp/pallwick-test-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path TemporaryDirectory::makeDirectory(const std::filesystem::path& name) const {
    std::filesystem::path directory = path_ / name;
    std::filesystem::create_directories(directory);
    std::filesystem::permissions(directory, std::filesystem::perms::owner_all);
    return directory;
}

}  // namespace pallwick::support
