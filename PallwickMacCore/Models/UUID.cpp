#include <PallwickMacCore/Models/UUID.h>

#include <cstring>
#include <random>

namespace pallwick {

namespace {

constexpr std::size_t textLength = 36;

constexpr bool isHyphenPosition(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

std::optional<std::uint8_t> hexDigitValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return static_cast<std::uint8_t>(digit - '0');
    }
    if (digit >= 'a' && digit <= 'f') {
        return static_cast<std::uint8_t>(digit - 'a' + 10);
    }
    if (digit >= 'A' && digit <= 'F') {
        return static_cast<std::uint8_t>(digit - 'A' + 10);
    }
    return std::nullopt;
}

}  // namespace

UUID UUID::random() {
    std::random_device source;
    std::array<std::uint8_t, 16> bytes{};
    for (std::size_t i = 0; i < bytes.size(); i += sizeof(std::uint32_t)) {
        const std::uint32_t word = source();
        std::memcpy(&bytes[i], &word, sizeof word);
    }
    // RFC 4122, section 4.4: version 4 in the high nibble of byte 6, the variant in the top bits of byte 8.
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
    return UUID(bytes);
}

std::optional<UUID> UUID::fromString(std::string_view text) {
    if (text.size() != textLength) {
        return std::nullopt;
    }
    std::array<std::uint8_t, 16> bytes{};
    std::size_t nibble = 0;
    for (std::size_t i = 0; i < textLength; ++i) {
        if (isHyphenPosition(i)) {
            if (text[i] != '-') {
                return std::nullopt;
            }
            continue;
        }
        const std::optional<std::uint8_t> value = hexDigitValue(text[i]);
        if (!value) {
            return std::nullopt;
        }
        std::uint8_t& byte = bytes[nibble / 2];
        byte = static_cast<std::uint8_t>((byte << 4) | *value);
        ++nibble;
    }
    return UUID(bytes);
}

std::string UUID::uuidString() const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(textLength);
    for (const std::uint8_t byte : bytes_) {
        if (isHyphenPosition(text.size())) {
            text.push_back('-');
        }
        text.push_back(digits[byte >> 4]);
        text.push_back(digits[byte & 0x0F]);
    }
    return text;
}

}  // namespace pallwick

std::size_t std::hash<pallwick::UUID>::operator()(const pallwick::UUID& uuid) const noexcept {
    return std::hash<std::string_view>{}(
        std::string_view(reinterpret_cast<const char*>(uuid.bytes().data()), uuid.bytes().size()));
}
