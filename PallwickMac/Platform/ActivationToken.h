#pragma once

#include <cstdint>
#include <string>

namespace pallwick {

/// What tells a desktop that a person has just asked for one of the program's windows, so that it lets the window come
/// to the front.
struct ActivationToken {
    /// The id under which a launcher announced the start (DESKTOP_STARTUP_ID of the Startup Notification protocol, or
    /// XDG_ACTIVATION_TOKEN of xdg-activation); empty where there is none.
    std::string id;
    /// When the person asked, in milliseconds of the X server's clock; 0 where that is not known.
    std::uint32_t time = 0;

    /// The one that this process was started with. The toolkit takes it out of the environment: ask before its
    /// application object is made.
    [[nodiscard]] static ActivationToken ofThisStart();

    /// With the time that a startup id ends with ("..._TIME123"), if it does.
    [[nodiscard]] static ActivationToken ofStartupID(std::string id);

    friend bool operator==(const ActivationToken&, const ActivationToken&) = default;
};

}  // namespace pallwick
