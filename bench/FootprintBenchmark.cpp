// How long the program takes to its first window and how much memory it keeps, beside a bare tray program of the same
// toolkit on the same private desktop in the same run.

#include <sys/types.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "support/PrivateDesktop.h"

namespace pallwick {

namespace {

using support::PrivateDesktop;

constexpr int rounds = 9;
constexpr std::chrono::seconds settlingTime{2};

struct Candidate {
    std::string name;
    std::string program;
    std::string windowTitle;
    std::vector<double> firstWindowMilliseconds;
    std::vector<double> residentMiB;
    std::vector<double> proportionalMiB;
    std::vector<double> uniqueMiB;
};

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// The kernel's own sum over a process's mappings, in MiB.
double memory(pid_t process, const std::vector<std::string>& fields) {
    std::ifstream rollup("/proc/" + std::to_string(process) + "/smaps_rollup");
    double kibibytes = 0;
    for (std::string line; std::getline(rollup, line);) {
        for (const std::string& field : fields) {
            if (line.starts_with(field + ":")) {
                kibibytes += std::stod(line.substr(field.size() + 1));
            }
        }
    }
    return kibibytes / 1024;
}

void measure(PrivateDesktop& desktop, Candidate& candidate) {
    const auto start = std::chrono::steady_clock::now();
    const std::unique_ptr<support::Process> process = desktop.start({candidate.program});
    desktop.windows().awaitClient(candidate.windowTitle);
    const auto shown = std::chrono::steady_clock::now();
    candidate.firstWindowMilliseconds.push_back(std::chrono::duration<double, std::milli>(shown - start).count());

    // What a program keeps, not what it needs to start: measured once it has long had nothing to do.
    std::this_thread::sleep_for(settlingTime);
    candidate.residentMiB.push_back(memory(process->pid(), {"Rss"}));
    candidate.proportionalMiB.push_back(memory(process->pid(), {"Pss"}));
    candidate.uniqueMiB.push_back(memory(process->pid(), {"Private_Clean", "Private_Dirty"}));
}

void printRow(const Candidate& candidate) {
    std::printf("| %s | %.1f ms | %.1f / %.1f / %.1f MiB |\n", candidate.name.c_str(),
                median(candidate.firstWindowMilliseconds), median(candidate.residentMiB),
                median(candidate.proportionalMiB), median(candidate.uniqueMiB));
}

}  // namespace

}  // namespace pallwick

int main() {
    using namespace pallwick;
    PrivateDesktop desktop({.windowManager = support::WindowManager::openbox, .server = {}, .environment = {}});
    Candidate bare{.name = "bare Qt tray program", .program = PALLWICK_BARE_TRAY, .windowTitle = "Bare tray"};
    Candidate ours{.name = "pallwick", .program = PALLWICK_PROGRAM, .windowTitle = "Pallwick"};
    // Once each to warm the caches, then in turns, so that whatever else the machine does hits both alike.
    for (Candidate* candidate : {&bare, &ours}) {
        Candidate warmUp = *candidate;
        measure(desktop, warmUp);
    }
    for (int round = 0; round < rounds; ++round) {
        measure(desktop, bare);
        measure(desktop, ours);
    }
    std::printf("| | start to first window | memory: resident / proportional / unique |\n|---|---|---|\n");
    printRow(bare);
    printRow(ours);
    std::printf("| ratio | %.1fx | %.1fx resident |\n",
                median(ours.firstWindowMilliseconds) / median(bare.firstWindowMilliseconds),
                median(ours.residentMiB) / median(bare.residentMiB));
    std::printf("| aim | at most 3x | at most 2x |\n");
    return 0;
}
