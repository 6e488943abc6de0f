#pragma once

#include <compare>
#include <functional>

namespace pallwick {

/// A point in time, held as a double so that a stored date comes back bit for bit.
struct Date {
    /// Seconds since 2001-01-01 00:00:00 UTC, fractional, negative before.
    double secondsSinceReferenceDate = 0;

    /// The system clock's current time.
    [[nodiscard]] static Date now();

    friend auto operator<=>(const Date&, const Date&) = default;
};

/// Where a record takes the current time from; each call is one read of the clock.
using Clock = std::function<Date()>;

}  // namespace pallwick
