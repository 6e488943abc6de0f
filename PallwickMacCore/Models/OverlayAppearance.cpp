#include <PallwickMacCore/Models/OverlayAppearance.h>

namespace pallwick {

OverlayAppearance::OverlayAppearance(const BlurStyle& style)
    : tintAlpha(static_cast<double>(style.opacity) / 100.0),
      effectAlpha(tintAlpha * (static_cast<double>(style.intensity) / 100.0)),
      showsGlassEffect(style.glassBlur) {}

}  // namespace pallwick
