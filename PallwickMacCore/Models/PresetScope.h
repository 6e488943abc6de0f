#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <variant>

namespace pallwick {

/// What a preset is kept for: one display or one application.
class PresetScope {
public:
    struct Screen {
        /// Display number.
        std::uint32_t displayID = 0;

        friend bool operator==(const Screen&, const Screen&) = default;
    };

    struct Application {
        /// Kept as it is given: neither trimmed nor case-folded.
        std::string bundleID;

        friend bool operator==(const Application&, const Application&) = default;
    };

    /// The cases in the order of their ordinals.
    using Content = std::variant<Screen, Application>;

    [[nodiscard]] static PresetScope screen(std::uint32_t displayID);
    [[nodiscard]] static PresetScope application(std::string bundleID);

    [[nodiscard]] const Content& content() const { return content_; }

    /// The name under which the presets file keeps it: `screen:1`, `application:org.example.Mail`.
    [[nodiscard]] std::string storageKey() const;

    friend bool operator==(const PresetScope&, const PresetScope&) = default;

private:
    explicit PresetScope(Content content);

    Content content_;
};

}  // namespace pallwick

template <>
struct std::hash<pallwick::PresetScope> {
    std::size_t operator()(const pallwick::PresetScope& scope) const;
};
