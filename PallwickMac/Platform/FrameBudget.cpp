#include <PallwickMac/Platform/FrameBudget.h>

#include <algorithm>

namespace pallwick {

namespace {

// Through frosted glass nobody sees the difference to 60 Hz, and it is half of the work.
constexpr std::chrono::microseconds shortestInterval{33'333};

// Later than that, what is seen through the glass would be something else than what lies beneath it.
constexpr std::chrono::milliseconds longestInterval{200};

// One part in so many of a processor's time.
constexpr int share = 64;

// Frames that the mean remembers: one that was interrupted must not count for much.
constexpr int remembered = 8;

}  // namespace

void FrameBudget::note(Duration cost) {
    // What is above that makes no difference now, and would for seconds to come.
    const Duration counted = std::min(cost, Duration(longestInterval) / share);
    const Duration mean = cost_.value_or(counted);
    cost_ = mean + (counted - mean) / remembered;
}

FrameBudget::Duration FrameBudget::interval() const {
    return std::clamp<Duration>(share * cost_.value_or(Duration::zero()), shortestInterval, longestInterval);
}

}  // namespace pallwick
