#pragma once

#include <PallwickMacCore/Models/JsonDecoder.h>
#include <PallwickMacCore/Models/JsonReader.h>
#include <PallwickMacCore/Models/JsonWriter.h>

#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pallwick {

/// The JSON text of `value`. Throws `EncodingError` for a number that is not finite.
template <typename Value>
[[nodiscard]] std::string encode(const Value& value, const JsonFormat& format = {}) {
    return writeJson(JsonCoding<Value>::encode(value), format);
}

/// The value that `text` holds, exactly as it stands there: no defaults, no clamping. Throws `DecodingError`;
/// `sourceName` says in it what was read.
template <typename Value>
[[nodiscard]] Value decode(std::string_view text, const std::string& sourceName) {
    const JsonValue document = readJson(text, sourceName);
    return JsonCoding<Value>::decode(JsonDecoder(document, sourceName));
}

/// Appends a field to the object that a record is written as.
template <typename Value>
void appendField(JsonObject& object, std::string_view key, const Value& value) {
    object.push_back({.key = std::string(key), .value = JsonCoding<Value>::encode(value)});
}

template <>
struct JsonCoding<bool> {
    static JsonValue encode(bool value) { return {value}; }
    static bool decode(const JsonDecoder& decoder) { return decoder.boolean(); }
};

template <>
struct JsonCoding<double> {
    static JsonValue encode(double value) { return {value}; }
    static double decode(const JsonDecoder& decoder) { return decoder.number(); }
};

template <>
struct JsonCoding<std::string> {
    static JsonValue encode(const std::string& value) { return {value}; }
    static std::string decode(const JsonDecoder& decoder) { return decoder.string(); }
};

/// For integers whose every value is one of 64 bits with a sign.
template <typename Integer>
struct JsonIntegerCoding {
    static JsonValue encode(Integer value) { return {std::int64_t{value}}; }
    static Integer decode(const JsonDecoder& decoder) {
        using Limits = std::numeric_limits<Integer>;
        return static_cast<Integer>(decoder.integer(Limits::min(), Limits::max()));
    }
};

template <>
struct JsonCoding<std::uint32_t> : JsonIntegerCoding<std::uint32_t> {};
template <>
struct JsonCoding<std::int32_t> : JsonIntegerCoding<std::int32_t> {};
template <>
struct JsonCoding<std::int64_t> : JsonIntegerCoding<std::int64_t> {};

/// An array; one bad element fails the whole.
template <typename Element>
struct JsonCoding<std::vector<Element>> {
    static JsonValue encode(const std::vector<Element>& elements) {
        JsonArray array;
        array.reserve(elements.size());
        for (const Element& element : elements) {
            array.push_back(JsonCoding<Element>::encode(element));
        }
        return {std::move(array)};
    }

    static std::vector<Element> decode(const JsonDecoder& decoder) {
        const JsonArray& array = decoder.array();
        std::vector<Element> elements;
        elements.reserve(array.size());
        for (std::size_t i = 0; i < array.size(); ++i) {
            elements.push_back(decoder.elementOf<Element>(array, i));
        }
        return elements;
    }
};

/// An object with keys of any name. A key given twice is refused, because the next save would lose one of the two.
template <typename Mapped>
struct JsonCoding<std::map<std::string, Mapped>> {
    static JsonValue encode(const std::map<std::string, Mapped>& values) {
        JsonObject object;
        object.reserve(values.size());
        for (const auto& [key, value] : values) {
            appendField(object, key, value);
        }
        return {std::move(object)};
    }

    static std::map<std::string, Mapped> decode(const JsonDecoder& decoder) {
        std::map<std::string, Mapped> values;
        for (const JsonMember& member : decoder.object()) {
            if (values.contains(member.key)) {
                decoder.failAt(member.key, DecodingError::Kind::dataCorrupted, "this key is given twice");
            }
            values.emplace(member.key, decoder.member<Mapped>(member));
        }
        return values;
    }
};

}  // namespace pallwick
