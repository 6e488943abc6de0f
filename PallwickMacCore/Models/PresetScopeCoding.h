#pragma once

#include <PallwickMacCore/Models/JsonCoding.h>
#include <PallwickMacCore/Models/PresetScope.h>

namespace pallwick {

/// An object with exactly one member, named after the case, which holds an object with the payload under its name:
/// `{"screen":{"displayID":1}}` or `{"application":{"bundleID":"org.example.Mail"}}`. Any other number of members, and
/// a member of any other name, is a type mismatch.
template <>
struct JsonCoding<PresetScope> {
    static JsonValue encode(const PresetScope& scope);
    static PresetScope decode(const JsonDecoder& decoder);
};

}  // namespace pallwick
