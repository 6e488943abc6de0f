#include <PallwickMac/Platform/RateLimit.h>

#include <algorithm>

namespace pallwick {

RateLimit::Clock::duration RateLimit::wait(Clock::time_point now) const {
    return std::max(due_ - tolerance_ - now, Clock::duration::zero());
}

void RateLimit::spend(Clock::time_point now) {
    due_ = std::max(due_, now) + interval_;
}

}  // namespace pallwick
