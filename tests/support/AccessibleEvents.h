#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PrivateDesktop.h"

namespace pallwick::support {

/// What programs tell screen readers of changed properties (AT-SPI 2), from its making on.
class AccessibleEvents {
public:
    /// `property` is AT-SPI's name: "accessible-value", "accessible-description".
    AccessibleEvents(PrivateDesktop& desktop, const std::string& property);
    ~AccessibleEvents();
    AccessibleEvents(const AccessibleEvents&) = delete;
    AccessibleEvents& operator=(const AccessibleEvents&) = delete;

    /// One entry an event that has arrived up to now: the object's path on the bus.
    [[nodiscard]] const std::vector<std::string>& sources();

private:
    class Bus;
    std::unique_ptr<Bus> bus_;
    std::vector<std::string> sources_;
};

}  // namespace pallwick::support
