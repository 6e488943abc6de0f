#include <PallwickMacCore/Models/TrackedWindow.h>

namespace pallwick {

std::string TrackedWindow::displayName() const {
    return title.empty() ? ownerName : ownerName + " - " + title;
}

}  // namespace pallwick
