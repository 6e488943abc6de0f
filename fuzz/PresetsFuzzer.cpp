// Any bytes as a presets file. They are refused with a decoding error of one line, or they can be written and read
// again without a change. Anything else stops the process.

#include <PallwickMacCore/Models/RecordCoding.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace pallwick {

namespace {

using Presets = std::map<std::string, std::vector<BlurOverlay>>;

constexpr JsonFormat format{.prettyPrinted = true, .sortedKeys = true};

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

bool isOneShortLine(std::string_view sentence) {
    constexpr std::size_t fewBytes = 1000;
    return sentence.size() < fewBytes && sentence.find_first_of("\n\r\x1B") == std::string_view::npos;
}

void readAndWrite(std::string_view text) {
    Presets presets;
    try {
        presets = decode<Presets>(text, "presets.json");
    } catch (const DecodingError& error) {
        require(isOneShortLine(error.what()));
        return;
    }
    const std::string written = encode(presets, format);
    const auto again = decode<Presets>(written, "presets.json");
    require(again == presets);
    // Equality takes -0.0 for 0.0; the text does not.
    require(encode(again, format) == written);
}

}  // namespace

}  // namespace pallwick

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pallwick::readAndWrite({reinterpret_cast<const char*>(data), size});
    return 0;
}
