#pragma once

#include <PallwickMacCore/Models/JsonValue.h>

#include <string>

namespace pallwick {

/// How a JSON text is laid out. Compact and in the order of the tree unless asked otherwise.
struct JsonFormat {
    /// Line breaks and two spaces a level.
    bool prettyPrinted = false;
    /// The members of every object in ascending order of their keys' bytes.
    bool sortedKeys = false;
};

/// Writes a JSON text in UTF-8, whatever the program's locale is. Every finite double comes back bit for bit: it has
/// the fewest digits that name it, and -0.0 keeps its sign. Slashes are escaped.
///
/// A string's bytes that are not UTF-8 are written as U+FFFD, one each, because one bad title would make the whole
/// text unreadable. Throws `EncodingError` for a number that is not finite and for a key that is not UTF-8 (two keys
/// might become the same).
[[nodiscard]] std::string writeJson(const JsonValue& value, const JsonFormat& format = {});

}  // namespace pallwick
