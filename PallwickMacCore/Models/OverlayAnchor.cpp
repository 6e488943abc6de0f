#include <PallwickMacCore/Models/OverlayAnchor.h>

namespace pallwick {

std::string_view rawValue(OverlayAnchor anchor) {
    switch (anchor) {
        case OverlayAnchor::application:
            return "application";
        case OverlayAnchor::window:
            return "window";
        case OverlayAnchor::screen:
            break;
    }
    return "screen";
}

template <>
std::optional<OverlayAnchor> fromRawValue<OverlayAnchor>(std::string_view text) {
    for (const OverlayAnchor anchor : {OverlayAnchor::screen, OverlayAnchor::application, OverlayAnchor::window}) {
        if (rawValue(anchor) == text) {
            return anchor;
        }
    }
    return std::nullopt;
}

}  // namespace pallwick
