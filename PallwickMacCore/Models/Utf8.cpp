#include <PallwickMacCore/Models/Utf8.h>

namespace pallwick {

namespace {

constexpr bool isContinuation(int byte, int lowest = 0x80, int highest = 0xBF) {
    return byte >= lowest && byte <= highest;
}

}  // namespace

// The ranges are those of the Unicode Standard, table 3-7: no overlong forms, no surrogates, nothing beyond U+10FFFF.
std::size_t utf8SequenceLength(std::string_view text) {
    const auto byte = [text](std::size_t i) -> int {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
    };
    const int lead = byte(0);
    if (lead < 0x80) {
        return text.empty() ? 0 : 1;
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        return isContinuation(byte(1)) ? 2 : 0;
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        const bool second = isContinuation(byte(1), lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF);
        return second && isContinuation(byte(2)) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const bool second = isContinuation(byte(1), lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF);
        return second && isContinuation(byte(2)) && isContinuation(byte(3)) ? 4 : 0;
    }
    return 0;
}

bool isValidUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = utf8SequenceLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

}  // namespace pallwick
