#include <PallwickMacCore/Models/OverlayShape.h>

namespace pallwick {

std::string_view rawValue(OverlayShape shape) {
    return shape == OverlayShape::circle ? "circle" : "rectangle";
}

std::string_view title(OverlayShape shape) {
    return shape == OverlayShape::circle ? "Circle" : "Rectangle";
}

template <>
std::optional<OverlayShape> fromRawValue<OverlayShape>(std::string_view text) {
    for (const OverlayShape shape : allCases<OverlayShape>()) {
        if (rawValue(shape) == text) {
            return shape;
        }
    }
    return std::nullopt;
}

}  // namespace pallwick
