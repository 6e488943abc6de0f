#include "Usage.h"

#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace pallwick::bench {

Usage Usage::of(pid_t process) {
    clockid_t clock{};
    timespec time{};
    if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &time) != 0) {
        throw std::runtime_error("there is no process " + std::to_string(process));
    }
    Usage usage{.cpuSeconds = static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9};
    for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        std::ifstream status(thread.path() / "status");
        const std::string field = "voluntary_ctxt_switches:";
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with(field)) {
                usage.sleeps += std::stol(line.substr(field.size()));
            }
        }
    }
    return usage;
}

}  // namespace pallwick::bench
