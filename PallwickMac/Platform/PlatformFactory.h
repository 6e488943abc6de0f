#pragma once

#include <PallwickMac/Platform/DesktopPlatform.h>

#include <memory>
#include <stdexcept>

namespace pallwick {

/// No desktop can be reached; `what()` is one sentence for the user.
class PlatformUnavailable : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Chooses the desktop to run on and makes sure that it has what the program needs. Call it before the toolkit's
/// application object exists: the toolkit ends the process by itself where there is no desktop.
/// Throws `PlatformUnavailable`.
void preparePlatform();

/// The platform chosen by `preparePlatform`. Needs the toolkit's application object. Throws `PlatformUnavailable`.
[[nodiscard]] std::unique_ptr<DesktopPlatform> makePlatform();

}  // namespace pallwick
