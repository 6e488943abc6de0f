#include "PresetsFile.h"

#include <support/Process.h>

#include <sys/stat.h>

#include <cerrno>
#include <fstream>
#include <set>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace pallwick::desktop {

namespace {

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw std::runtime_error(path.string() + " cannot be read");
    }
    std::string content(std::filesystem::file_size(path), '\0');
    stream.read(content.data(), static_cast<std::streamsize>(content.size()));
    return content;
}

mode_t permissionsOf(const std::filesystem::path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) < 0) {
        throw std::system_error(errno, std::generic_category(), path.string());
    }
    return status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
}

}  // namespace

PresetsFile::PresetsFile(const std::filesystem::path& dataHome) : path_(dataHome / "Pallwick" / "presets.json") {}

std::string PresetsFile::text() const {
    return contentOf(path_);
}

void PresetsFile::setText(const std::string& text) const {
    std::ofstream(path_, std::ios::binary) << text;
}

mode_t PresetsFile::mode() const {
    return permissionsOf(path_);
}

mode_t PresetsFile::directoryMode() const {
    return permissionsOf(path_.parent_path());
}

std::string PresetsFile::namesInDirectory() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_.parent_path())) {
        names.insert(entry.path().filename());
    }
    std::string all;
    for (const std::string& name : names) {
        all += (all.empty() ? "" : " ") + name;
    }
    return all;
}

std::string PresetsFile::asPythonWritesIt(Layout layout) const {
    const std::filesystem::path written = scratch_.path() / "written.json";
    std::vector<std::string> command{"python3", "-m", "json.tool", "--sort-keys", "--no-ensure-ascii"};
    if (layout == Layout::compact) {
        command.emplace_back("--compact");
    } else {
        command.insert(command.end(), {"--indent", "2"});
    }
    command.insert(command.end(), {path_, written});
    support::run(command, {{"PATH", "/usr/local/bin:/usr/bin:/bin"}, {"LANG", "C.UTF-8"}});
    return contentOf(written);
}

}  // namespace pallwick::desktop
