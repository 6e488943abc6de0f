#include <PallwickMacCore/Models/PresetScopeCoding.h>

#include <string_view>
#include <utility>

namespace pallwick {

namespace {

constexpr std::string_view screenKey = "screen";
constexpr std::string_view applicationKey = "application";
constexpr std::string_view displayIDKey = "displayID";
constexpr std::string_view bundleIDKey = "bundleID";

template <typename Value>
JsonValue onlyMember(std::string_view key, const Value& value) {
    JsonObject object;
    appendField(object, key, value);
    return {std::move(object)};
}

}  // namespace

template <>
struct JsonCoding<PresetScope::Screen> {
    static JsonValue encode(const PresetScope::Screen& screen) { return onlyMember(displayIDKey, screen.displayID); }
    static PresetScope::Screen decode(const JsonDecoder& decoder) {
        return {.displayID = decoder.required<std::uint32_t>(displayIDKey)};
    }
};

template <>
struct JsonCoding<PresetScope::Application> {
    static JsonValue encode(const PresetScope::Application& application) {
        return onlyMember(bundleIDKey, application.bundleID);
    }
    static PresetScope::Application decode(const JsonDecoder& decoder) {
        return {.bundleID = decoder.required<std::string>(bundleIDKey)};
    }
};

JsonValue JsonCoding<PresetScope>::encode(const PresetScope& scope) {
    if (const auto* screen = std::get_if<PresetScope::Screen>(&scope.content())) {
        return onlyMember(screenKey, *screen);
    }
    return onlyMember(applicationKey, std::get<PresetScope::Application>(scope.content()));
}

PresetScope JsonCoding<PresetScope>::decode(const JsonDecoder& decoder) {
    const JsonObject& members = decoder.object();
    if (members.size() == 1 && members.front().key == screenKey) {
        return PresetScope::screen(decoder.member<PresetScope::Screen>(members.front()).displayID);
    }
    if (members.size() == 1 && members.front().key == applicationKey) {
        return PresetScope::application(decoder.member<PresetScope::Application>(members.front()).bundleID);
    }
    decoder.fail(DecodingError::Kind::typeMismatch, "Invalid number of keys found, expected one.");
}

}  // namespace pallwick
