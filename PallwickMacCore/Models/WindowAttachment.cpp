#include <PallwickMacCore/Models/TrackedWindow.h>
#include <PallwickMacCore/Models/WindowAttachment.h>

namespace pallwick {

WindowAttachment::WindowAttachment(const TrackedWindow& window, const Rect& overlayFrame)
    : windowID(window.id),
      ownerPID(window.ownerPID),
      ownerName(window.ownerName),
      title(window.title),
      offset{.x = overlayFrame.minX() - window.frame.minX(), .y = overlayFrame.minY() - window.frame.minY()} {}

Rect WindowAttachment::overlayFrame(const Rect& currentWindowFrame, const Size& overlaySize) const {
    return {.x = currentWindowFrame.minX() + offset.x,
            .y = currentWindowFrame.minY() + offset.y,
            .width = overlaySize.width,
            .height = overlaySize.height};
}

}  // namespace pallwick
