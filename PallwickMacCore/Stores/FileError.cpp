#include <PallwickMacCore/Models/StatusText.h>
#include <PallwickMacCore/Stores/FileError.h>

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace pallwick {

namespace {

std::string sentence(FileError::Operation operation, const std::filesystem::path& path, std::error_code systemError) {
    // In the order of the operations.
    constexpr std::array<std::string_view, 4> participles{"found", "created", "read", "written"};
    const std::string name = path.has_filename() ? path.filename().string() : path.string();
    return shownText(name) + " could not be " + std::string(participles.at(static_cast<std::size_t>(operation))) +
           ": " + shownText(systemError.message());
}

}  // namespace

FileError::FileError(Operation operation, std::filesystem::path path, std::error_code systemError)
    : CoreError(sentence(operation, path, systemError)),
      operation_(operation),
      path_(std::move(path)),
      systemError_(systemError) {}

}  // namespace pallwick
