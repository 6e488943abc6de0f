#pragma once

#include <chrono>
#include <stdexcept>

namespace pallwick::support {

/// How long a wait may last before the test has failed. Generous: it is a bound for a broken run and
/// is never reached by a sound one, however slow the machine.
inline constexpr std::chrono::seconds defaultPatience{30};

/// What was awaited did not happen. `what()` names it, and what was seen instead.
class Timeout : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The moment at which a wait that consists of several steps has failed.
class Deadline {
public:
    explicit Deadline(std::chrono::milliseconds patience = defaultPatience)
        : end_(std::chrono::steady_clock::now() + patience) {}

    /// For `poll`: milliseconds left, rounded up, 0 once passed.
    [[nodiscard]] int remainingMilliseconds() const;
    [[nodiscard]] bool hasPassed() const { return remainingMilliseconds() == 0; }

private:
    std::chrono::steady_clock::time_point end_;
};

}  // namespace pallwick::support
