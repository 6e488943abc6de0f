#include <PallwickMac/Platform/RateLimit.h>

#include <algorithm>

namespace pallwick {

RateLimit::Clock::duration RateLimit::wait(Clock::time_point now) const {
    return std::max(due_ - interval_ * (burst_ - 1) - now, Clock::duration::zero());
}

void RateLimit::spend(Clock::time_point now) {
    due_ = std::min(std::max(due_, now) + interval_, now + interval_ * burst_);
}

void RateLimit::setInterval(Clock::duration interval, Clock::time_point now) {
    if (due_ > now) {
        using Seconds = std::chrono::duration<double>;
        const double actionsAhead = Seconds(due_ - now) / Seconds(interval_);
        due_ = now + std::chrono::round<Clock::duration>(actionsAhead * Seconds(interval));
    }
    interval_ = interval;
}

}  // namespace pallwick
