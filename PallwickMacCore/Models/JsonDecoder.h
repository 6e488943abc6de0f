#pragma once

#include <PallwickMacCore/Models/DecodingError.h>
#include <PallwickMacCore/Models/JsonValue.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace pallwick {

/// How `Value` is written as JSON and read back. A specialization has
/// `static JsonValue encode(const Value&)` and `static Value decode(const JsonDecoder&)`.
template <typename Value>
struct JsonCoding;

/// One value of a document, seen by a reader that knows which type it wants, and the way that led to it.
///
/// Refers to the document, the source's name and the decoder it came from, which must all outlive it. Every member
/// that wants a type throws `DecodingError` with this value's path where the value has another one: value not found
/// for null, type mismatch otherwise.
class JsonDecoder {
public:
    JsonDecoder(const JsonValue& document, const std::string& sourceName) : value_(document), sourceName_(sourceName) {}

    JsonDecoder(const JsonDecoder&) = delete;
    JsonDecoder& operator=(const JsonDecoder&) = delete;

    [[nodiscard]] bool boolean() const;
    [[nodiscard]] double number() const;
    [[nodiscard]] const std::string& string() const;
    [[nodiscard]] const JsonArray& array() const;
    [[nodiscard]] const JsonObject& object() const;

    /// A whole number within both bounds, however it is written: 50, 50.0 and 5e1 are the same. A number with a point
    /// or an exponent is judged by the nearest double. Data corrupted where it has a fraction or is out of bounds.
    [[nodiscard]] std::int64_t integer(std::int64_t lowest, std::int64_t highest) const;

    /// The array's element at `index`; throws value not found, at the array, where it is shorter. `expectation` says
    /// what the whole array should have been.
    template <typename Value>
    [[nodiscard]] Value element(std::size_t index, std::string_view expectation) const {
        const JsonArray& elements = array();
        if (index >= elements.size()) {
            fail(DecodingError::Kind::valueNotFound, std::string(expectation));
        }
        return elementOf<Value>(elements, index);
    }

    /// As `element`, for an array that is known to be long enough.
    template <typename Value>
    [[nodiscard]] Value elementOf(const JsonArray& elements, std::size_t index) const {
        return JsonCoding<Value>::decode(JsonDecoder(elements[index], *this, index));
    }

    /// The value of one of `object()`'s members.
    template <typename Value>
    [[nodiscard]] Value member(const JsonMember& member) const {
        return JsonCoding<Value>::decode(JsonDecoder(member.value, *this, std::string_view(member.key)));
    }

    /// The value of the object's member under `key`; throws key not found where there is none and data corrupted
    /// where there are several. Other members are ignored.
    template <typename Value>
    [[nodiscard]] Value required(std::string_view key) const {
        const JsonMember* found = find(key);
        if (found == nullptr) {
            failAt(key, DecodingError::Kind::keyNotFound, "this key is required");
        }
        return member<Value>(*found);
    }

    /// The same, but none where there is no such member or it is null.
    template <typename Value>
    [[nodiscard]] std::optional<Value> optional(std::string_view key) const {
        const JsonMember* found = find(key);
        if (found == nullptr || std::holds_alternative<std::nullptr_t>(found->value.content)) {
            return std::nullopt;
        }
        return member<Value>(*found);
    }

    [[nodiscard]] CodingPath codingPath() const;

    /// Throws a `DecodingError` about this value.
    [[noreturn]] void fail(DecodingError::Kind kind, std::string description) const;

    /// Throws a `DecodingError` about this object's member `key`.
    [[noreturn]] void failAt(std::string_view key, DecodingError::Kind kind, std::string description) const;

private:
    using Step = std::variant<std::monostate, std::string_view, std::size_t>;

    JsonDecoder(const JsonValue& value, const JsonDecoder& parent, Step step)
        : value_(value), sourceName_(parent.sourceName_), parent_(&parent), step_(step) {}

    template <typename Content>
    [[nodiscard]] const Content& content(std::string_view expected) const;

    [[nodiscard]] const JsonMember* find(std::string_view key) const;
    [[noreturn]] void failForType(std::string_view expected) const;

    const JsonValue& value_;
    const std::string& sourceName_;
    const JsonDecoder* parent_ = nullptr;
    Step step_;
};

}  // namespace pallwick
