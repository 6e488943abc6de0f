#pragma once

#include <sys/types.h>

#include <chrono>
#include <vector>

namespace pallwick {

/// What all threads of some processes have had of the processors.
class ProcessorTime {
public:
    /// From now on.
    explicit ProcessorTime(const std::vector<pid_t>& processes);

    /// In percent of one core since then, all processes together. Throws `std::system_error` if one of them has ended.
    [[nodiscard]] double percentOfACore() const;

private:
    [[nodiscard]] double seconds() const;

    std::vector<clockid_t> clocks_;
    std::chrono::steady_clock::time_point start_;
    double secondsBefore_;
};

}  // namespace pallwick
