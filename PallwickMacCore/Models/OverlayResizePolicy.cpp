#include <PallwickMacCore/Models/OverlayResizePolicy.h>

#include <algorithm>

namespace pallwick {

Rect OverlayResizePolicy::resizedFrame(const Rect& frame, const Point& delta) {
    const double width = std::max(minimumWidth, frame.extent().width + delta.x);
    const double height = std::max(minimumHeight, frame.extent().height - delta.y);
    return {.x = frame.x, .y = frame.maxY() - height, .width = width, .height = height};
}

}  // namespace pallwick
