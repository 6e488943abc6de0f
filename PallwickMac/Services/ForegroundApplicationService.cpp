#include <PallwickMac/Platform/DesktopPlatform.h>
#include <PallwickMac/Services/ForegroundApplicationService.h>

namespace pallwick {

std::optional<std::string> ForegroundApplicationService::currentBundleID() const {
    return platform_->frontmostBundleID();
}

std::optional<std::int32_t> ForegroundApplicationService::currentProcessID() const {
    return platform_->frontmostProcessID();
}

}  // namespace pallwick
