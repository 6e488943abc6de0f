#pragma once

#include <PallwickMacCore/Models/BlurOverlay.h>
#include <PallwickMacCore/Models/PresetScope.h>
#include <PallwickMacCore/Stores/FileSystem.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pallwick {

/// Keeps the presets of all displays and applications in one file, "presets.json": an object with one list of
/// overlays for each scope, under its storage key. Lists under keys of no scope are kept as well.
///
/// The file is read whole at every call and written whole at every save; nothing is kept in between. A file that
/// cannot be read as presets makes every call fail and stays as it is. Errors are `FileError`, `DecodingError` and
/// `EncodingError`. Main thread only; of two processes that save at once, one may undo the other's change.
class PresetStore {
public:
    /// In the directory "Pallwick" of the user's data directory, which is made where it is missing.
    PresetStore();

    /// In `storageDirectory`, which is made, with its parents, where it is missing. The file is not touched.
    explicit PresetStore(const std::filesystem::path& storageDirectory);
    PresetStore(const std::filesystem::path& storageDirectory, std::unique_ptr<FileSystem> fileSystem);

    /// Replaces the list of `scope`, and only that. An empty list is stored as one.
    void save(const std::vector<BlurOverlay>& overlays, const PresetScope& scope);

    /// The list of `scope` exactly as it was saved, empty where there is none.
    [[nodiscard]] std::vector<BlurOverlay> load(const PresetScope& scope) const;

private:
    using Presets = std::map<std::string, std::vector<BlurOverlay>>;

    [[nodiscard]] Presets readPresets() const;
    void writePresets(const Presets& presets);

    std::unique_ptr<FileSystem> fileSystem_;
    std::filesystem::path storagePath_;
};

}  // namespace pallwick
