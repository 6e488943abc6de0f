#include <PallwickMacCore/Models/JsonDecoder.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace pallwick {

namespace {

/// The integer that `value` is, or none where it has a fraction or may lie outside 64 bits.
std::optional<std::int64_t> wholeNumber(double value) {
    // Both bounds are excluded: each is also the nearest double to integers beyond it.
    if (value <= -0x1p63 || value >= 0x1p63 || std::trunc(value) != value) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(value);
}

}  // namespace

template <typename Content>
const Content& JsonDecoder::content(std::string_view expected) const {
    const Content* found = std::get_if<Content>(&value_.content);
    if (found == nullptr) {
        failForType(expected);
    }
    return *found;
}

bool JsonDecoder::boolean() const {
    return content<bool>("true or false");
}

const std::string& JsonDecoder::string() const {
    return content<std::string>("a string");
}

const JsonArray& JsonDecoder::array() const {
    return content<JsonArray>("an array");
}

const JsonObject& JsonDecoder::object() const {
    return content<JsonObject>("an object");
}

double JsonDecoder::number() const {
    if (const std::int64_t* integer = std::get_if<std::int64_t>(&value_.content)) {
        return static_cast<double>(*integer);
    }
    return content<double>("a number");
}

std::int64_t JsonDecoder::integer(std::int64_t lowest, std::int64_t highest) const {
    const std::int64_t* written = std::get_if<std::int64_t>(&value_.content);
    const std::optional<std::int64_t> whole = written != nullptr ? *written : wholeNumber(number());
    if (!whole || *whole < lowest || *whole > highest) {
        fail(DecodingError::Kind::dataCorrupted,
             "expected a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest));
    }
    return *whole;
}

const JsonMember* JsonDecoder::find(std::string_view key) const {
    const JsonObject& members = object();
    const auto found = std::ranges::find(members, key, &JsonMember::key);
    if (found == members.end()) {
        return nullptr;
    }
    if (std::find_if(found + 1, members.end(), [key](const JsonMember& member) { return member.key == key; }) !=
        members.end()) {
        failAt(key, DecodingError::Kind::dataCorrupted, "this key is given twice");
    }
    return &*found;
}

CodingPath JsonDecoder::codingPath() const {
    CodingPath path;
    for (const JsonDecoder* decoder = this; decoder->parent_ != nullptr; decoder = decoder->parent_) {
        if (const std::size_t* index = std::get_if<std::size_t>(&decoder->step_)) {
            path.emplace_back(*index);
        } else {
            path.emplace_back(std::string(std::get<std::string_view>(decoder->step_)));
        }
    }
    std::ranges::reverse(path);
    return path;
}

void JsonDecoder::fail(DecodingError::Kind kind, std::string description) const {
    throw DecodingError(kind, codingPath(), std::move(description), sourceName_);
}

void JsonDecoder::failAt(std::string_view key, DecodingError::Kind kind, std::string description) const {
    CodingPath path = codingPath();
    path.emplace_back(std::string(key));
    throw DecodingError(kind, std::move(path), std::move(description), sourceName_);
}

void JsonDecoder::failForType(std::string_view expected) const {
    // In the order of the alternatives.
    constexpr std::array<std::string_view, std::variant_size_v<JsonValue::Content>> names{
        "null", "true or false", "a number", "a number", "a string", "an array", "an object"};
    const bool null = std::holds_alternative<std::nullptr_t>(value_.content);
    fail(null ? DecodingError::Kind::valueNotFound : DecodingError::Kind::typeMismatch,
         "expected " + std::string(expected) + " but found " + std::string(names[value_.content.index()]));
}

}  // namespace pallwick
