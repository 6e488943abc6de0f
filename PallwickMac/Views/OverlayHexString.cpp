#include <PallwickMac/Views/OverlayHexString.h>

#include <cmath>

namespace pallwick {

namespace {

unsigned int step(float component) {
    return static_cast<unsigned int>(std::lround(static_cast<double>(component) * 255.0));
}

}  // namespace

QString overlayHexString(const QColor& color) {
    float red = 0;
    float green = 0;
    float blue = 0;
    // A conversion to plain RGB would clamp components beyond 0 to 1.
    color.getRgbF(&red, &green, &blue);
    return QString::asprintf("#%02X%02X%02X", step(red), step(green), step(blue));
}

}  // namespace pallwick
