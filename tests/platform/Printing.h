#pragma once

#include <PallwickMac/Platform/X11/PixelMapping.h>
#include <PallwickMac/Platform/X11/WorkArea.h>
#include <PallwickMacCore/Models/Geometry.h>

#include <ostream>

// How GoogleTest shows values in its messages; it finds these beside the types.

namespace pallwick {

inline void PrintTo(const Point& point, std::ostream* stream) {
    *stream << point.x << "," << point.y;
}

inline void PrintTo(const Rect& rect, std::ostream* stream) {
    *stream << rect.width << "x" << rect.height << " at " << rect.x << "," << rect.y;
}

}  // namespace pallwick

namespace pallwick::x11 {

inline void PrintTo(const PixelRect& rect, std::ostream* stream) {
    *stream << rect.width << "x" << rect.height << " at " << rect.x << "," << rect.y;
}

}  // namespace pallwick::x11
