#include <PallwickMacCore/Models/PresetScope.h>

#include <utility>

namespace pallwick {

PresetScope::PresetScope(Content content) : content_(std::move(content)) {}

PresetScope PresetScope::screen(std::uint32_t displayID) {
    return PresetScope(Screen{.displayID = displayID});
}

PresetScope PresetScope::application(std::string bundleID) {
    return PresetScope(Application{.bundleID = std::move(bundleID)});
}

std::string PresetScope::storageKey() const {
    if (const Screen* screen = std::get_if<Screen>(&content_)) {
        return "screen:" + std::to_string(screen->displayID);
    }
    return "application:" + std::get<Application>(content_).bundleID;
}

}  // namespace pallwick

std::size_t std::hash<pallwick::PresetScope>::operator()(const pallwick::PresetScope& scope) const {
    using pallwick::PresetScope;
    const auto* screen = std::get_if<PresetScope::Screen>(&scope.content());
    const std::size_t payload =
        screen != nullptr ? std::hash<std::uint32_t>()(screen->displayID)
                          : std::hash<std::string>()(std::get<PresetScope::Application>(scope.content()).bundleID);
    // The multiplier of Fibonacci hashing spreads the ordinal over all bits, so that no payload undoes it.
    constexpr std::size_t multiplier = 0x9E3779B97F4A7C15;
    return (scope.content().index() + 1) * multiplier ^ payload;
}
