#include <PallwickMac/Services/OverlayColor.h>

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace pallwick {

namespace {

std::string_view withoutSurroundingHashes(std::string_view text) {
    const std::size_t first = text.find_first_not_of('#');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of('#') - first + 1);
}

std::uint32_t hexNumber(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, number, 16);
    return result.ec == std::errc() && result.ptr == end ? number : 0;
}

}  // namespace

QColor overlayColor(std::string_view hex, double alpha) {
    const std::uint32_t number = hexNumber(withoutSurroundingHashes(hex));
    QColor color(static_cast<int>(number >> 16 & 0xFF), static_cast<int>(number >> 8 & 0xFF),
                 static_cast<int>(number & 0xFF));
    color.setAlphaF(static_cast<float>(std::clamp(alpha, 0.0, 1.0)));
    return color;
}

}  // namespace pallwick
