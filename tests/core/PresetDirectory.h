#pragma once

#include <PallwickMacCore/Models/BlurOverlay.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

namespace pallwick::test {

/// So many overlays, all different, of which 40 fill more than 16 KiB.
[[nodiscard]] std::vector<BlurOverlay> overlays(int count);

/// A storage directory of its own, removed with all it holds.
class PresetDirectory {
public:
    [[nodiscard]] const std::filesystem::path& path() const { return directory_.path(); }
    [[nodiscard]] std::filesystem::path file() const { return path() / "presets.json"; }

    /// The bytes of the presets file; nothing where there is none.
    [[nodiscard]] std::string text() const;
    void write(const std::string& text) const;

    /// The names in it, sorted.
    [[nodiscard]] std::vector<std::string> names() const;

private:
    support::TemporaryDirectory directory_;
};

}  // namespace pallwick::test
