#include <PallwickMacCore/Models/RecordCoding.h>
#include <PallwickMacCore/Stores/ApplicationSupport.h>
#include <PallwickMacCore/Stores/AtomicFile.h>
#include <PallwickMacCore/Stores/PosixFileSystem.h>
#include <PallwickMacCore/Stores/PresetStore.h>
#include <PallwickMacCore/Stores/StorageDirectory.h>

#include <optional>
#include <utility>

namespace pallwick {

namespace {

constexpr const char* directoryName = "Pallwick";
constexpr const char* fileName = "presets.json";
constexpr JsonFormat format{.prettyPrinted = true, .sortedKeys = true};

}  // namespace

PresetStore::PresetStore() : PresetStore(applicationSupportDirectory(UserDirectories::current()) / directoryName) {}

PresetStore::PresetStore(const std::filesystem::path& storageDirectory)
    : PresetStore(storageDirectory, std::make_unique<PosixFileSystem>()) {}

PresetStore::PresetStore(const std::filesystem::path& storageDirectory, std::unique_ptr<FileSystem> fileSystem)
    : fileSystem_(std::move(fileSystem)), storagePath_(std::filesystem::absolute(storageDirectory) / fileName) {
    createDirectories(*fileSystem_, storagePath_.parent_path());
}

void PresetStore::save(const std::vector<BlurOverlay>& overlays, const PresetScope& scope) {
    Presets presets = readPresets();
    presets[scope.storageKey()] = overlays;
    writePresets(presets);
}

std::vector<BlurOverlay> PresetStore::load(const PresetScope& scope) const {
    Presets presets = readPresets();
    const auto found = presets.find(scope.storageKey());
    return found == presets.end() ? std::vector<BlurOverlay>() : std::move(found->second);
}

PresetStore::Presets PresetStore::readPresets() const {
    const std::optional<std::string> text = readFile(*fileSystem_, storagePath_);
    return text ? decode<Presets>(*text, fileName) : Presets();
}

void PresetStore::writePresets(const Presets& presets) {
    replaceFile(*fileSystem_, storagePath_, encode(presets, format));
}

}  // namespace pallwick
