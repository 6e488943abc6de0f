#pragma once

#include <cstdint>
#include <string>

namespace pallwick {

/// How an overlay is drawn. The constructor normalises; assignment to a field stores what it is given.
struct BlurStyle {
    /// Strength of the blur layer, a percentage.
    std::int64_t intensity;
    /// Tint colour: "#" and six upper-case hexadecimal digits, red, green, blue.
    std::string colorHex;
    /// Opacity of the tint, and of the blur layer with it, a percentage.
    std::int64_t opacity;
    /// Whether the frosted-glass effect is shown.
    bool glassBlur;

    /// Clamps both percentages to 0...100. Turns `colorHex` into "#RRGGBB": surrounding white space and one leading
    /// "#" are dropped, three digits are doubled; anything that is then not six ASCII hexadecimal digits becomes
    /// "#000000".
    explicit BlurStyle(std::int64_t intensity = 50, const std::string& colorHex = "#000000", std::int64_t opacity = 100,
                       bool glassBlur = true);

    friend bool operator==(const BlurStyle&, const BlurStyle&) = default;
};

}  // namespace pallwick
