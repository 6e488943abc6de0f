#pragma once

#include <PallwickMacCore/Models/BlurStyle.h>

namespace pallwick {

/// The numbers that drawing needs, derived from a style. Nothing is clamped: a style outside its range passes through.
struct OverlayAppearance {
    /// Opacity of the colour tint, 0 to 1.
    double tintAlpha = 0;
    /// Opacity of the blur layer, 0 to 1.
    double effectAlpha = 0;
    bool showsGlassEffect = false;

    explicit OverlayAppearance(const BlurStyle& style);

    friend bool operator==(const OverlayAppearance&, const OverlayAppearance&) = default;
};

}  // namespace pallwick
