#include <PallwickMacCore/Models/StatusText.h>
#include <PallwickMacCore/Models/Utf8.h>

#include <algorithm>
#include <array>

namespace pallwick {

namespace {

struct SequenceRange {
    std::string_view first;
    std::string_view last;
};

// Sequences of one length are ordered as their code points are.
constexpr std::array disruptive{
    SequenceRange{"\xC2\x80", "\xC2\x9F"},          // U+0080 to U+009F, control characters
    SequenceRange{"\xD8\x9C", "\xD8\x9C"},          // U+061C, Arabic letter mark
    SequenceRange{"\xE2\x80\x8E", "\xE2\x80\x8F"},  // U+200E and U+200F, direction marks
    SequenceRange{"\xE2\x80\xA8", "\xE2\x80\xAE"},  // U+2028 to U+202E, separators, embeddings and overrides
    SequenceRange{"\xE2\x81\xA6", "\xE2\x81\xA9"},  // U+2066 to U+2069, isolates
};

bool isDisruptive(std::string_view sequence) {
    if (sequence.size() == 1) {
        return (sequence.front() >= '\0' && sequence.front() < ' ') || sequence.front() == '\x7F';
    }
    return std::ranges::any_of(disruptive, [sequence](const SequenceRange& range) {
        return sequence.size() == range.first.size() && sequence >= range.first && sequence <= range.last;
    });
}

}  // namespace

std::string shownText(std::string_view text, std::size_t maximumCharacters) {
    std::string shown;
    for (std::size_t count = 0; !text.empty(); ++count) {
        if (count == maximumCharacters) {
            shown.append("…");
            break;
        }
        const std::size_t length = utf8SequenceLength(text);
        const std::string_view sequence = text.substr(0, length);
        shown.append(length == 0 || isDisruptive(sequence) ? replacementCharacter : sequence);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return shown;
}

}  // namespace pallwick
