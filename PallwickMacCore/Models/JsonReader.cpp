#include <PallwickMacCore/Models/DecodingError.h>
#include <PallwickMacCore/Models/JsonReader.h>

#include <locale.h>
#include <algorithm>
#include <clocale>
#include <cstdint>
#include <limits>
#include <new>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

namespace pallwick {

namespace {

/// The calling thread's numbers are those of the C locale while this lives.
///
/// The parser reads numbers with the C library and adapts to the locale's decimal separator, but only to one of a
/// single byte; some locales have a longer one.
class NumbersOfTheCLocale {
public:
    NumbersOfTheCLocale() : locale_(newlocale(LC_ALL_MASK, "C", nullptr)) {
        if (locale_ == nullptr) {
            throw std::bad_alloc();
        }
        previous_ = uselocale(locale_);
    }

    ~NumbersOfTheCLocale() {
        uselocale(previous_);
        freelocale(locale_);
    }

    NumbersOfTheCLocale(const NumbersOfTheCLocale&) = delete;
    NumbersOfTheCLocale& operator=(const NumbersOfTheCLocale&) = delete;

private:
    locale_t locale_;
    locale_t previous_ = nullptr;
};

/// Takes the parser's events and grows the tree. The parser itself keeps no call stack, so the depth is bounded here.
class TreeBuilder {
public:
    TreeBuilder(std::string_view text, const std::string& sourceName) : text_(text), sourceName_(sourceName) {}

    [[nodiscard]] JsonValue take() { return std::move(root_); }

    bool null() { return add(nullptr); }
    bool boolean(bool value) { return add(value); }

    bool number_integer(std::int64_t value) {
        // Only a number with a minus sign comes as a signed one.
        return value == 0 ? add(-0.0) : add(value);
    }

    bool number_unsigned(std::uint64_t value) {
        constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
        return value <= largest ? add(static_cast<std::int64_t>(value)) : add(static_cast<double>(value));
    }

    bool number_float(double value, const std::string&) { return add(value); }
    bool string(std::string& value) { return add(std::move(value)); }
    bool binary(nlohmann::json::binary_t&) { return false; }

    bool start_object(std::size_t) { return open(JsonObject()); }
    bool start_array(std::size_t) { return open(JsonArray()); }

    bool key(std::string& key) {
        std::get<JsonObject>(open_.back()->content).push_back({.key = std::move(key), .value = {}});
        return true;
    }

    bool end_object() { return close(); }
    bool end_array() { return close(); }

    bool parse_error(std::size_t bytesRead, const std::string&, const nlohmann::json::exception& error) {
        constexpr int numberOutOfRange = 406;
        fail((error.id == numberOutOfRange ? "a number is too large" : "not valid JSON") + position(bytesRead));
    }

private:
    bool add(JsonValue::Content content) {
        place(std::move(content));
        return true;
    }

    bool open(JsonValue::Content content) {
        if (open_.size() == maximumJsonNesting) {
            fail("arrays and objects are nested more than " + std::to_string(maximumJsonNesting) + " deep");
        }
        open_.push_back(place(std::move(content)));
        return true;
    }

    bool close() {
        open_.pop_back();
        return true;
    }

    // Pointers to open containers stay valid: a container does not grow while one inside it is open.
    JsonValue* place(JsonValue::Content content) {
        if (open_.empty()) {
            root_.content = std::move(content);
            return &root_;
        }
        JsonValue::Content& parent = open_.back()->content;
        if (JsonArray* array = std::get_if<JsonArray>(&parent)) {
            return &array->emplace_back(JsonValue{std::move(content)});
        }
        JsonValue& value = std::get<JsonObject>(parent).back().value;
        value.content = std::move(content);
        return &value;
    }

    [[nodiscard]] std::string position(std::size_t bytesRead) const {
        const std::string_view before = text_.substr(0, bytesRead == 0 ? 0 : bytesRead - 1);
        const auto line = std::ranges::count(before, '\n') + 1;
        const std::size_t lineStart = before.rfind('\n') + 1;
        return " at line " + std::to_string(line) + ", byte " + std::to_string(before.size() - lineStart + 1);
    }

    [[noreturn]] void fail(std::string description) const {
        throw DecodingError(DecodingError::Kind::dataCorrupted, {}, std::move(description), sourceName_);
    }

    std::string_view text_;
    const std::string& sourceName_;
    JsonValue root_;
    std::vector<JsonValue*> open_;
};

}  // namespace

JsonValue readJson(std::string_view text, const std::string& sourceName) {
    // The parser takes a NUL byte for the end of the text and would ignore whatever follows.
    if (text.find('\0') != std::string_view::npos) {
        throw DecodingError(DecodingError::Kind::dataCorrupted, {}, "not valid JSON: the text has a NUL byte in it",
                            sourceName);
    }
    const NumbersOfTheCLocale numbers;
    TreeBuilder builder(text, sourceName);
    nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
    return builder.take();
}

}  // namespace pallwick
