#include <PallwickMac/Platform/X11/WindowProperties.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <PallwickMacCore/Models/Utf8.h>

namespace pallwick::x11 {

namespace {

constexpr std::uint32_t maxTextWords = 1024;

bool isCutSequence(std::string_view text) {
    const auto first = static_cast<std::uint8_t>(text.front());
    const std::size_t wanted = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 1;
    if (text.size() >= wanted) {
        return false;
    }
    // A sequence limits its second byte from below or from above, never both, so one of these fits every beginning.
    const auto isCompletedBy = [&](char tail) {
        std::string completed(text);
        completed.resize(wanted, tail);
        return utf8SequenceLength(completed) == wanted;
    };
    return isCompletedBy('\x80') || isCompletedBy('\xBF');
}

bool isControl(std::string_view character) {
    const auto first = static_cast<std::uint8_t>(character[0]);
    // C0 and DEL, C1 in UTF-8, and the two line separators.
    return (character.size() == 1 && (first < 0x20 || first == 0x7F)) ||
           (character.size() == 2 && first == 0xC2 && static_cast<std::uint8_t>(character[1]) < 0xA0) ||
           character == "\xE2\x80\xA8" || character == "\xE2\x80\xA9";
}

}  // namespace

CardinalsRequest::CardinalsRequest(const Connection& connection, xcb_window_t window, xcb_atom_t property,
                                   xcb_atom_t type, std::uint32_t maxCount)
    : connection_(connection), cookie_(xcb_get_property(connection.xcb(), 0, window, property, type, 0, maxCount)) {}

std::vector<std::uint32_t> CardinalsRequest::get() {
    const auto reply = own(xcb_get_property_reply(connection_.xcb(), cookie_, nullptr));
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

TextRequest::TextRequest(const Connection& connection, xcb_window_t window, xcb_atom_t property)
    : connection_(connection),
      cookie_(xcb_get_property(connection.xcb(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, maxTextWords)) {}

std::optional<std::string> TextRequest::get() {
    const auto reply = own(xcb_get_property_reply(connection_.xcb(), cookie_, nullptr));
    if (!reply || reply->format != 8) {
        return std::nullopt;
    }
    type_ = reply->type;
    return std::string(static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len);
}

std::string cleanUtf8(std::string_view text) {
    std::string clean;
    clean.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = utf8SequenceLength(text);
        if (length == 0) {
            if (isCutSequence(text)) {
                break;
            }
            clean += replacementCharacter;
            text.remove_prefix(1);
            continue;
        }
        const std::string_view character = text.substr(0, length);
        clean += isControl(character) ? std::string_view(" ") : character;
        text.remove_prefix(length);
    }
    return clean;
}

std::string cleanLatin1(std::string_view text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<std::uint8_t>(c);
        if (byte < 0x80) {
            utf8.push_back(c);
        } else {
            utf8.push_back(static_cast<char>(0xC0 | (byte >> 6)));
            utf8.push_back(static_cast<char>(0x80 | (byte & 0x3F)));
        }
    }
    return cleanUtf8(utf8);
}

}  // namespace pallwick::x11
