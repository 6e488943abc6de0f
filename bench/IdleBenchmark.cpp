// What the program costs while nothing happens: with nothing attached, and with ten overlays that follow windows which
// stay where they are. All desktops are idle side by side for the same time, in seconds the only argument.

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

#include "AttachedOverlays.h"
#include "Usage.h"

namespace pallwick::bench {

namespace {

constexpr int attachedCount = 10;

support::PrivateDesktop::Options openbox() {
    return {.windowManager = support::WindowManager::openbox, .server = {}, .environment = {}};
}

void printRow(const char* name, const Usage& usage, double seconds, const char* aim) {
    std::printf("| %s | %.3f %% | %.1f | %s |\n", name, usage.cpuSeconds / seconds * 100,
                static_cast<double>(usage.sleeps) / seconds, aim);
}

}  // namespace

}  // namespace pallwick::bench

int main(int argc, char** argv) {
    using namespace pallwick;
    using Clock = std::chrono::steady_clock;
    const std::chrono::seconds duration{argc > 1 ? std::stoi(argv[1]) : 60};

    support::PrivateDesktop bareDesktop(bench::openbox());
    const auto bare = bareDesktop.start({PALLWICK_BARE_TRAY, "--timer"});
    bareDesktop.windows().awaitClient("Bare tray");
    support::PrivateDesktop quietDesktop(bench::openbox());
    const bench::Crowd quietCrowd(quietDesktop, bench::attachedCount);
    bench::AttachedOverlays nothing(quietDesktop, quietCrowd, 0);
    support::PrivateDesktop busyDesktop(bench::openbox());
    const bench::Crowd busyCrowd(busyDesktop, bench::attachedCount);
    bench::AttachedOverlays ten(busyDesktop, busyCrowd, bench::attachedCount);

    const auto start = Clock::now();
    const bench::Usage bareBefore = bench::Usage::of(bare->pid());
    const bench::Usage nothingBefore = bench::Usage::of(nothing.process());
    const bench::Usage tenBefore = bench::Usage::of(ten.process());
    std::this_thread::sleep_for(duration);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    const bench::Usage bareUsage = bench::Usage::of(bare->pid()) - bareBefore;
    const bench::Usage nothingUsage = bench::Usage::of(nothing.process()) - nothingBefore;
    const bench::Usage tenUsage = bench::Usage::of(ten.process()) - tenBefore;

    std::printf("| | share of a core | wake-ups a second | aim |\n|---|---|---|---|\n");
    bench::printRow("bare Qt tray program with a timer of 300 ms", bareUsage, seconds, "");
    bench::printRow("pallwick, nothing attached", nothingUsage, seconds, "under 0.1 %, 3.3 wake-ups");
    bench::printRow("pallwick, ten overlays attached", tenUsage, seconds, "under 0.5 %");
    return 0;
}
