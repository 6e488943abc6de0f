#include "PresetDirectory.h"

#include "SampleRecords.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace pallwick::test {

std::vector<BlurOverlay> overlays(int count) {
    std::vector<BlurOverlay> list;
    for (int i = 0; i < count; ++i) {
        list.push_back(attachedOverlay());
        list.back().frame.x = i;
        list.back().windowAttachment->title = "Window " + std::to_string(i);
    }
    return list;
}

std::string PresetDirectory::text() const {
    std::ostringstream text;
    text << std::ifstream(file(), std::ios::binary).rdbuf();
    return text.str();
}

void PresetDirectory::write(const std::string& text) const {
    std::ofstream(file(), std::ios::binary) << text;
}

std::vector<std::string> PresetDirectory::names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path())) {
        names.push_back(entry.path().filename());
    }
    std::ranges::sort(names);
    return names;
}

}  // namespace pallwick::test
