#include <PallwickMacCore/Models/EncodingError.h>
#include <PallwickMacCore/Models/JsonWriter.h>
#include <PallwickMacCore/Models/Utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace pallwick {

namespace {

class Writer {
public:
    explicit Writer(const JsonFormat& format) : format_(format) {}

    [[nodiscard]] std::string take() { return std::move(text_); }

    void write(const JsonValue& value) {
        std::visit([this](const auto& content) { writeContent(content); }, value.content);
    }

private:
    void writeContent(std::nullptr_t) { text_.append("null"); }
    void writeContent(bool value) { text_.append(value ? "true" : "false"); }
    void writeContent(std::int64_t value) { appendCharacters(value); }
    void writeContent(const std::string& value) { writeString(value); }

    void writeContent(double value) {
        if (!std::isfinite(value)) {
            throw EncodingError(path(), "expected a finite number");
        }
        if (value == 0 && std::signbit(value)) {
            text_.append("-0.0");
            return;
        }
        appendCharacters(value);
    }

    void writeContent(const JsonArray& array) {
        text_.push_back('[');
        for (std::size_t i = 0; i < array.size(); ++i) {
            beginItem(i == 0);
            steps_.emplace_back(i);
            write(array[i]);
            steps_.pop_back();
        }
        endContainer(array.empty(), ']');
    }

    void writeContent(const JsonObject& object) {
        std::vector<const JsonMember*> members;
        members.reserve(object.size());
        std::ranges::transform(object, std::back_inserter(members), [](const JsonMember& member) { return &member; });
        if (format_.sortedKeys) {
            std::ranges::stable_sort(members, {},
                                     [](const JsonMember* member) { return std::string_view(member->key); });
        }

        text_.push_back('{');
        bool first = true;
        for (const JsonMember* member : members) {
            beginItem(std::exchange(first, false));
            steps_.emplace_back(std::string_view(member->key));
            if (!isValidUtf8(member->key)) {
                throw EncodingError(path(), "expected a key in UTF-8");
            }
            writeString(member->key);
            text_.append(format_.prettyPrinted ? ": " : ":");
            write(member->value);
            steps_.pop_back();
        }
        endContainer(object.empty(), '}');
    }

    void writeString(std::string_view text) {
        text_.push_back('"');
        while (!text.empty()) {
            const auto plain = static_cast<std::size_t>(std::ranges::find_if_not(text, isPlain) - text.begin());
            text_.append(text.substr(0, plain));
            text.remove_prefix(plain);
            if (!text.empty()) {
                text.remove_prefix(writeOther(text));
            }
        }
        text_.push_back('"');
    }

    /// Whether it stands for itself in a string.
    static constexpr bool isPlain(char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte >= ' ' && byte < 0x80 && c != '"' && c != '\\' && c != '/';
    }

    /// Writes the first character of `text`, which is not plain, and returns its length in bytes.
    std::size_t writeOther(std::string_view text) {
        const std::size_t length = utf8SequenceLength(text);
        if (length == 1) {
            writeEscaped(text.front());
        } else {
            text_.append(length == 0 ? replacementCharacter : text.substr(0, length));
        }
        return std::max<std::size_t>(length, 1);
    }

    void writeEscaped(char c) {
        constexpr std::string_view escaped = "\"\\/\b\f\n\r\t";
        constexpr std::string_view letters = "\"\\/bfnrt";
        constexpr std::string_view digits = "0123456789abcdef";
        if (const std::size_t at = escaped.find(c); at != std::string_view::npos) {
            text_.push_back('\\');
            text_.push_back(letters[at]);
        } else {
            text_.append("\\u00");
            text_.push_back(digits[static_cast<std::size_t>(c) >> 4]);
            text_.push_back(digits[static_cast<std::size_t>(c) & 0x0F]);
        }
    }

    template <typename Number>
    void appendCharacters(Number value) {
        // The longest are doubles such as -2.2250738585072014e-308, of 24 characters.
        std::array<char, 32> characters{};
        const auto [end, error] = std::to_chars(characters.data(), characters.data() + characters.size(), value);
        text_.append(characters.data(), end);
    }

    void beginItem(bool first) {
        if (!first) {
            text_.push_back(',');
        }
        breakLine(steps_.size() + 1);
    }

    void endContainer(bool empty, char bracket) {
        if (!empty) {
            breakLine(steps_.size());
        }
        text_.push_back(bracket);
    }

    void breakLine(std::size_t level) {
        if (format_.prettyPrinted) {
            text_.push_back('\n');
            text_.append(2 * level, ' ');
        }
    }

    [[nodiscard]] CodingPath path() const {
        CodingPath path;
        for (const auto& step : steps_) {
            if (const std::size_t* index = std::get_if<std::size_t>(&step)) {
                path.emplace_back(*index);
            } else {
                path.emplace_back(std::string(std::get<std::string_view>(step)));
            }
        }
        return path;
    }

    JsonFormat format_;
    std::string text_;
    /// The way to the value that is being written; the keys are the document's.
    std::vector<std::variant<std::string_view, std::size_t>> steps_;
};

}  // namespace

std::string writeJson(const JsonValue& value, const JsonFormat& format) {
    Writer writer(format);
    writer.write(value);
    return writer.take();
}

}  // namespace pallwick
