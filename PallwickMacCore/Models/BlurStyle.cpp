#include <PallwickMacCore/Models/BlurStyle.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace pallwick {

namespace {

std::int64_t clamp(std::int64_t value) {
    return std::min<std::int64_t>(std::max<std::int64_t>(0, value), 100);
}

// Unicode's white space and line breaks, in UTF-8.
constexpr std::string_view whitespaceSequences[] = {
    "\t",           "\n",           "\v",           "\f",           "\r",           " ",
    "\xC2\x85",     "\xC2\xA0",     "\xE1\x9A\x80", "\xE2\x80\x80", "\xE2\x80\x81", "\xE2\x80\x82",
    "\xE2\x80\x83", "\xE2\x80\x84", "\xE2\x80\x85", "\xE2\x80\x86", "\xE2\x80\x87", "\xE2\x80\x88",
    "\xE2\x80\x89", "\xE2\x80\x8A", "\xE2\x80\xA8", "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F",
    "\xE3\x80\x80"};

std::string_view trimmed(std::string_view text) {
    const auto dropOne = [](auto matches, auto drop) {
        return std::ranges::any_of(whitespaceSequences, [&](std::string_view sequence) {
            if (!matches(sequence)) {
                return false;
            }
            drop(sequence.size());
            return true;
        });
    };
    while (dropOne([&](std::string_view s) { return text.starts_with(s); },
                   [&](std::size_t length) { text.remove_prefix(length); })) {
    }
    while (dropOne([&](std::string_view s) { return text.ends_with(s); },
                   [&](std::size_t length) { text.remove_suffix(length); })) {
    }
    return text;
}

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

char upperCased(char c) {
    return c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Bytes stand for characters here: a text with any character outside ASCII is refused either way, whatever its length.
std::string normalizedHex(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('#')) {
        text.remove_prefix(1);
    }
    std::string digits;
    for (const char c : text) {
        digits.append(text.size() == 3 ? 2 : 1, upperCased(c));
    }
    if (digits.size() != 6 || !std::ranges::all_of(digits, isHexDigit)) {
        return "#000000";
    }
    return "#" + digits;
}

}  // namespace

BlurStyle::BlurStyle(std::int64_t intensityValue, const std::string& colorText, std::int64_t opacityValue,
                     bool showsGlassBlur)
    : intensity(clamp(intensityValue)),
      colorHex(normalizedHex(colorText)),
      opacity(clamp(opacityValue)),
      glassBlur(showsGlassBlur) {}

}  // namespace pallwick
