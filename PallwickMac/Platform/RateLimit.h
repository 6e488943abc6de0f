#pragma once

#include <chrono>

namespace pallwick {

/// Lets a burst of actions through at once, and after that one in every interval: the generic cell rate algorithm
/// (ITU-T I.371, annex A). Whoever pauses earns the burst back. It reads no clock of its own; `now` never goes back.
class RateLimit {
public:
    using Clock = std::chrono::steady_clock;

    /// `interval` is more than zero, `burst` 1 or more.
    RateLimit(Clock::duration interval, int burst) : interval_(interval), burst_(burst) {}

    /// How long after `now` the next action may be done; zero for at once.
    [[nodiscard]] Clock::duration wait(Clock::time_point now) const;

    /// An action is done at `now`. One that did not wait leaves no debt: the next one waits for an interval at the
    /// most.
    void spend(Clock::time_point now);

    /// Another pace from `now` on, more than zero. As many actions of the burst are left as before.
    void setInterval(Clock::duration interval, Clock::time_point now);

private:
    Clock::duration interval_;
    int burst_;
    /// When an action would be due that came at the interval's pace.
    Clock::time_point due_;
};

}  // namespace pallwick
