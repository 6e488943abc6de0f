#include <PallwickMac/Platform/X11/CompoundText.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>
#include <PallwickMacCore/Models/Utf8.h>

#include <algorithm>
#include <cstdint>

namespace pallwick::x11 {

namespace {

constexpr char escape = '\x1B';
constexpr std::string_view utf8Begin = "\x1B%G";
constexpr std::string_view utf8End = "\x1B%@";

// An escape sequence: intermediate bytes 0x20 to 0x2F and one final byte (ISO 2022).
std::string_view escapeSequence(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && text[length] >= 0x20 && text[length] <= 0x2F) {
        ++length;
    }
    return text.substr(0, std::min(length + 1, text.size()));
}

class Decoder {
public:
    std::string decode(std::string_view text) {
        while (!text.empty()) {
            if (text.starts_with(utf8Begin)) {
                const std::size_t end = std::min(text.find(utf8End), text.size());
                decoded_ += cleanUtf8(text.substr(utf8Begin.size(), end - utf8Begin.size()));
                text.remove_prefix(std::min(end + utf8End.size(), text.size()));
                inUnknownStretch_ = false;
            } else if (text.front() == escape) {
                const std::string_view sequence = escapeSequence(text);
                designate(sequence);
                text.remove_prefix(sequence.size());
            } else {
                append(text.front());
                text.remove_prefix(1);
            }
        }
        return decoded_;
    }

private:
    void designate(std::string_view sequence) {
        // The left half takes a set of 94 characters by "(" and the right half one by ")" or one of 96 by "-"; a "$"
        // before them means several bytes a character.
        const std::string_view target = sequence.substr(1, sequence.size() - std::min<std::size_t>(2, sequence.size()));
        if (target == "(") {
            leftIsAscii_ = sequence.back() == 'B';
        } else if (target == "$" || target == "$(") {
            leftIsAscii_ = false;
        } else if (target.ends_with(')') || target.ends_with('-')) {
            rightIsLatin1_ = sequence == "\x1B-A";
        }
        inUnknownStretch_ = false;
    }

    void append(char character) {
        const auto byte = static_cast<std::uint8_t>(character);
        // Control characters and the blank belong to no set.
        const bool known = byte <= 0x20 || (byte < 0x80 ? leftIsAscii_ : byte < 0xA0 || rightIsLatin1_);
        if (known) {
            decoded_ += cleanLatin1({&character, 1});
        } else if (!inUnknownStretch_) {
            decoded_ += replacementCharacter;
        }
        inUnknownStretch_ = !known;
    }

    std::string decoded_;
    bool leftIsAscii_ = true;
    bool rightIsLatin1_ = true;
    bool inUnknownStretch_ = false;
};

}  // namespace

std::string cleanCompoundText(std::string_view text) {
    return Decoder().decode(text);
}

}  // namespace pallwick::x11
