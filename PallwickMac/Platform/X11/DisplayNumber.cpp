#include <PallwickMac/Platform/X11/DisplayNumber.h>

#include <algorithm>
#include <array>

namespace pallwick::x11 {

namespace {

constexpr std::size_t baseBlockSize = 128;
constexpr std::array<std::uint8_t, 8> header{0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};

// E-EDID 1.4, section 3: offsets into the base block.
constexpr std::size_t makerAndModelOffset = 8;
constexpr std::size_t makerAndModelSize = 4;
constexpr std::size_t serialOffset = 12;
constexpr std::size_t serialSize = 4;
constexpr std::size_t firstDescriptorOffset = 54;
constexpr std::size_t descriptorSize = 18;
constexpr std::size_t descriptorCount = 4;
constexpr std::size_t descriptorTextOffset = 5;
constexpr std::uint8_t serialTextTag = 0xFF;

using Bytes = std::span<const std::uint8_t>;

// FNV-1a, 32 bits: stable for ever, unlike std::hash.
class Hash {
public:
    void add(Bytes bytes) {
        for (const std::uint8_t byte : bytes) {
            value_ = (value_ ^ byte) * 16777619U;
        }
    }
    void add(std::string_view text) {
        for (const char c : text) {
            const auto byte = static_cast<std::uint8_t>(c);
            add(Bytes(&byte, 1));
        }
    }
    [[nodiscard]] std::uint32_t value() const { return value_ == 0 ? 1 : value_; }

private:
    std::uint32_t value_ = 2166136261U;
};

bool isBaseBlock(Bytes edid) {
    return edid.size() >= baseBlockSize && std::ranges::equal(edid.first(header.size()), header);
}

// The text of the serial number descriptor, without its padding; empty where there is none.
Bytes serialText(Bytes edid) {
    for (std::size_t i = 0; i < descriptorCount; ++i) {
        const Bytes descriptor = edid.subspan(firstDescriptorOffset + i * descriptorSize, descriptorSize);
        if (descriptor[0] == 0 && descriptor[1] == 0 && descriptor[2] == 0 && descriptor[3] == serialTextTag) {
            const Bytes text = descriptor.subspan(descriptorTextOffset);
            const auto end = std::ranges::find(text, '\n');
            const auto used = text.first(static_cast<std::size_t>(end - text.begin()));
            const auto isPadding = [](std::uint8_t byte) { return byte == ' ' || byte == 0; };
            return std::ranges::all_of(used, isPadding) ? Bytes() : used;
        }
    }
    return {};
}

}  // namespace

std::uint32_t displayNumber(Bytes edid, std::string_view connector) {
    Hash hash;
    if (!isBaseBlock(edid)) {
        hash.add(connector);
        return hash.value();
    }
    const Bytes serial = edid.subspan(serialOffset, serialSize);
    const Bytes text = serialText(edid);
    hash.add(edid.subspan(makerAndModelOffset, makerAndModelSize));
    hash.add(serial);
    hash.add(text);
    const bool hasSerial = !text.empty() || std::ranges::any_of(serial, [](std::uint8_t byte) { return byte != 0; });
    if (!hasSerial) {
        hash.add(connector);
    }
    return hash.value();
}

}  // namespace pallwick::x11
