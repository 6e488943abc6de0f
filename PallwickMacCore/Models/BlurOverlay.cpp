#include <PallwickMacCore/Models/BlurOverlay.h>

#include <utility>

namespace pallwick {

BlurOverlay::BlurOverlay(BlurOverlayFields fields, const Clock& clock)
    : id_(fields.id ? *fields.id : UUID::random()),
      displayID(fields.displayID),
      frame(fields.frame.standardized()),
      style(std::move(fields.style)),
      shape(fields.shape),
      anchor(fields.anchor),
      windowAttachment(std::move(fields.windowAttachment)),
      createdAt_(fields.createdAt ? *fields.createdAt : clock()),
      updatedAt(fields.updatedAt ? *fields.updatedAt : clock()) {}

}  // namespace pallwick
