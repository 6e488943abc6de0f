#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace pallwick {

struct JsonMember;
struct JsonValue;

using JsonArray = std::vector<JsonValue>;

/// Members in the order of the text, repeated keys included.
using JsonObject = std::vector<JsonMember>;

/// A JSON document (RFC 8259) as a tree that keeps what the text says, so that nothing is merged or reordered before
/// a typed reader has looked at it. It is copied, written and destroyed recursively; the reader limits how deep it
/// can be.
struct JsonValue {
    /// A number is a 64-bit integer where it is written as one and fits, and a double otherwise ("-0" too, which
    /// keeps its sign).
    using Content = std::variant<std::nullptr_t, bool, std::int64_t, double, std::string, JsonArray, JsonObject>;

    Content content;
};

struct JsonMember {
    std::string key;
    JsonValue value;
};

}  // namespace pallwick
