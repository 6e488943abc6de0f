#pragma once

#include <PallwickMacCore/Models/CodingPath.h>
#include <PallwickMacCore/Models/JsonReader.h>
#include <PallwickMacCore/Models/JsonWriter.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace pallwick::test {

/// The object or array that holds the value at `path`.
inline JsonValue& parentOf(JsonValue& document, const CodingPath& path) {
    JsonValue* value = &document;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        if (const std::size_t* index = std::get_if<std::size_t>(&path[i])) {
            value = &std::get<JsonArray>(value->content).at(*index);
        } else {
            const auto& key = std::get<std::string>(path[i]);
            value = &std::ranges::find(std::get<JsonObject>(value->content), key, &JsonMember::key)->value;
        }
    }
    return *value;
}

/// `text` with `replacement`, itself a JSON text, as the value at `path`.
inline std::string withValue(std::string_view text, const CodingPath& path, std::string_view replacement) {
    JsonValue document = readJson(text, "test");
    JsonValue& parent = parentOf(document, path);
    if (const std::size_t* index = std::get_if<std::size_t>(&path.back())) {
        std::get<JsonArray>(parent.content).at(*index) = readJson(replacement, "test");
    } else {
        const auto& key = std::get<std::string>(path.back());
        std::ranges::find(std::get<JsonObject>(parent.content), key, &JsonMember::key)->value =
            readJson(replacement, "test");
    }
    return writeJson(document);
}

/// `text` without the member at `path`.
inline std::string withoutMember(std::string_view text, const CodingPath& path) {
    JsonValue document = readJson(text, "test");
    std::erase_if(std::get<JsonObject>(parentOf(document, path).content),
                  [&](const JsonMember& member) { return member.key == std::get<std::string>(path.back()); });
    return writeJson(document);
}

/// `text` with the member at `path` once more at the end of its object.
inline std::string withRepeatedMember(std::string_view text, const CodingPath& path) {
    JsonValue document = readJson(text, "test");
    auto& members = std::get<JsonObject>(parentOf(document, path).content);
    const JsonMember repeated = *std::ranges::find(members, std::get<std::string>(path.back()), &JsonMember::key);
    members.push_back(repeated);
    return writeJson(document);
}

}  // namespace pallwick::test
