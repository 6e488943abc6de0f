#include "ProcessorTime.h"

#include <time.h>

#include <cerrno>
#include <system_error>

namespace pallwick {

namespace {

void require(int error) {
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), "the clock of a process");
    }
}

}  // namespace

ProcessorTime::ProcessorTime(const std::vector<pid_t>& processes) {
    for (const pid_t process : processes) {
        clockid_t clock{};
        require(::clock_getcpuclockid(process, &clock));
        clocks_.push_back(clock);
    }
    start_ = std::chrono::steady_clock::now();
    secondsBefore_ = seconds();
}

double ProcessorTime::percentOfACore() const {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
    return 100 * (seconds() - secondsBefore_) / elapsed.count();
}

double ProcessorTime::seconds() const {
    double sum = 0;
    for (const clockid_t clock : clocks_) {
        timespec time{};
        require(::clock_gettime(clock, &time) == 0 ? 0 : errno);
        sum += static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    }
    return sum;
}

}  // namespace pallwick
