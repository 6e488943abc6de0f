#pragma once

#include <sys/types.h>

namespace pallwick::bench {

/// What a process has used since it began, all of its threads together.
struct Usage {
    double cpuSeconds = 0;
    /// How often a thread went to sleep: each time, something woke it up again.
    long sleeps = 0;

    /// Throws `std::runtime_error` where there is no such process.
    [[nodiscard]] static Usage of(pid_t process);

    friend Usage operator-(const Usage& later, const Usage& earlier) {
        return {.cpuSeconds = later.cpuSeconds - earlier.cpuSeconds, .sleeps = later.sleeps - earlier.sleeps};
    }
};

}  // namespace pallwick::bench
