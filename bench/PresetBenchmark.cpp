// What saving and loading a thousand overlays costs beside a plain JSON library that does the same with the same text:
// the coder alone, and the store with its file, where the peer reads and writes its file in the simplest way.

#include <PallwickMacCore/Models/RecordCoding.h>
#include <PallwickMacCore/Stores/PresetStore.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

namespace pallwick {

namespace {

constexpr int overlayCount = 1000;
constexpr int repetitions = 41;
constexpr JsonFormat format{.prettyPrinted = true, .sortedKeys = true};

using Presets = std::map<std::string, std::vector<BlurOverlay>>;

std::vector<BlurOverlay> overlaysInRows() {
    std::vector<BlurOverlay> overlays;
    for (int i = 0; i < overlayCount; ++i) {
        BlurOverlay overlay(
            {.displayID = 2713895231, .frame = {.x = 20.5 + i, .y = 20.25 + i, .width = 240, .height = 140}});
        if (i % 2 == 0) {
            overlay.anchor = OverlayAnchor::window;
            overlay.windowAttachment = WindowAttachment();
            overlay.windowAttachment->ownerName = "Mail";
            overlay.windowAttachment->title = "Inbox / " + std::to_string(i);
            overlay.windowAttachment->offset = {.x = 12.5, .y = 40};
        }
        overlays.push_back(overlay);
    }
    return overlays;
}

std::string textOf(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

struct Comparison {
    const char* name;
    std::function<void()> ours;
    std::function<void()> peers;
};

double milliseconds(const std::function<void()>& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// The least of many turns, ours and the peer's one after the other, is what the machine's other work disturbs least.
void printComparison(const Comparison& comparison) {
    double ours = std::numeric_limits<double>::max();
    double peers = ours;
    for (int i = 0; i < repetitions; ++i) {
        ours = std::min(ours, milliseconds(comparison.ours));
        peers = std::min(peers, milliseconds(comparison.peers));
    }
    std::printf("| %s | %.2f ms | %.2f ms | %.2f | 2 at most |\n", comparison.name, ours, peers, ours / peers);
}

void require(bool condition, const char* what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}

void printTable() {
    const support::TemporaryDirectory directory;
    const PresetScope scope = PresetScope::screen(1);
    const Presets presets{{scope.storageKey(), overlaysInRows()}};
    PresetStore store(directory.path());
    store.save(presets.begin()->second, scope);
    const std::filesystem::path file = directory.path() / "presets.json";
    const std::filesystem::path peersFile = directory.path() / "peer.json";
    const std::string text = textOf(file);
    const nlohmann::json document = nlohmann::json::parse(text);
    require(store.load(scope) == presets.begin()->second, "the presets have not come back");
    std::ofstream(peersFile) << document.dump(2);

    std::printf("| %d overlays, %zu KiB | Pallwick | plain JSON library | ratio | aim |\n|---|---|---|---|---|\n",
                overlayCount, text.size() / 1024);
    std::size_t sink = 0;
    printComparison({.name = "encode, or dump",
                     .ours = [&] { sink += encode(presets, format).size(); },
                     .peers = [&] { sink += document.dump(2).size(); }});
    printComparison({.name = "decode, or parse",
                     .ours = [&] { sink += decode<Presets>(text, "presets.json").size(); },
                     .peers = [&] { sink += nlohmann::json::parse(text).size(); }});
    printComparison({.name = "load a preset",
                     .ours = [&] { sink += store.load(scope).size(); },
                     .peers = [&] { sink += nlohmann::json::parse(textOf(peersFile)).size(); }});
    printComparison({.name = "save a preset: read, replace, write",
                     .ours = [&] { store.save(presets.begin()->second, scope); },
                     .peers =
                         [&] {
                             nlohmann::json read = nlohmann::json::parse(textOf(peersFile));
                             read["screen:1"] = document["screen:1"];
                             std::ofstream(peersFile) << read.dump(2);
                         }});
    require(sink != 0, "nothing was measured");
}

}  // namespace

}  // namespace pallwick

int main() {
    try {
        pallwick::printTable();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
