#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace pallwick {

class DesktopPlatform;

/// Which application is frontmost. Holds no state: every call asks the platform afresh.
class ForegroundApplicationService {
public:
    /// `platform` is not owned and must outlive the service.
    explicit ForegroundApplicationService(const DesktopPlatform& platform) : platform_(&platform) {}

    /// None when no application is frontmost or it has no identifier.
    [[nodiscard]] std::optional<std::string> currentBundleID() const;

    /// None when no application is frontmost.
    [[nodiscard]] std::optional<std::int32_t> currentProcessID() const;

private:
    const DesktopPlatform* platform_;
};

}  // namespace pallwick
