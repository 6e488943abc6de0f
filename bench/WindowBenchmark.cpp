// What it costs to know where two hundred windows are: to list them all beside `wmctrl -lpG`, and to let ten overlays
// follow ten of them, at every tick of the real program. The argument is how long the ticks are watched, in seconds.

#include <PallwickMac/Platform/X11/X11Platform.h>
#include <PallwickMac/Services/WindowTrackingService.h>

#include <QGuiApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "AttachedOverlays.h"
#include "Usage.h"

namespace pallwick::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int windowCount = 200;
constexpr int attachedCount = 10;
constexpr int rounds = 41;
constexpr double secondsBetweenTicks = 0.3;

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

template <typename Work>
double milliseconds(const Work& work) {
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void requireAll(std::size_t count) {
    if (count != windowCount) {
        throw std::runtime_error(std::to_string(count) + " windows listed instead of " + std::to_string(windowCount));
    }
}

void compareListing(support::PrivateDesktop& desktop) {
    const x11::X11Platform platform;
    const WindowTrackingService service(platform);
    const support::Process::Options options{.environment = desktop.environment(), .descriptors = {}};
    std::vector<double> ours;
    std::vector<double> peers;
    std::vector<double> starts;
    // In turns, so that whatever else the machine does hits all alike.
    for (int round = 0; round < rounds; ++round) {
        ours.push_back(milliseconds([&] { requireAll(service.visibleWindows().size()); }));
        const auto start = Clock::now();
        support::Process peer({"wmctrl", "-lpG"}, options);
        peer.awaitExit();
        peers.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        for (int line = 0; line < windowCount; ++line) {
            peer.readLine();
        }
        starts.push_back(milliseconds([&] { support::Process({"wmctrl", "-h"}, options).awaitExit(); }));
    }
    std::printf("| listing %d windows | time (median) | ratio | aim |\n|---|---|---|---|\n", windowCount);
    std::printf("| wmctrl -lpG, of which %.1f ms are its start | %.1f ms | 1 | |\n", median(starts), median(peers));
    std::printf("| pallwick | %.2f ms | 1/%.0f | at most 1/60 |\n", median(ours), median(peers) / median(ours));
}

void watchTicks(support::PrivateDesktop& desktop, const Crowd& crowd, std::chrono::seconds duration) {
    AttachedOverlays overlays(desktop, crowd, attachedCount);
    const auto start = Clock::now();
    const Usage before = Usage::of(overlays.process());
    const Usage serverBefore = Usage::of(desktop.server().pid());
    std::this_thread::sleep_for(duration);
    const Usage used = Usage::of(overlays.process()) - before;
    const Usage serverUsed = Usage::of(desktop.server().pid()) - serverBefore;
    const double ticks = std::chrono::duration<double>(Clock::now() - start).count() / secondsBetweenTicks;

    std::printf("\n| a tick with %d attached overlays among %d windows | CPU time | aim |\n|---|---|---|\n",
                attachedCount, windowCount);
    std::printf("| pallwick | %.2f ms | under 1 ms |\n", used.cpuSeconds * 1000 / ticks);
    std::printf("| the X server | %.2f ms | |\n", serverUsed.cpuSeconds * 1000 / ticks);
}

}  // namespace

}  // namespace pallwick::bench

int main(int argc, char** argv) {
    using namespace pallwick;
    const std::chrono::seconds duration{argc > 1 ? std::stoi(argv[1]) : 30};
    support::PrivateDesktop desktop(
        {.windowManager = support::WindowManager::openbox, .server = {}, .environment = {}});
    const bench::Crowd crowd(desktop, bench::windowCount);
    qputenv("DISPLAY", QByteArray::fromStdString(desktop.server().display()));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int noArguments = 1;
    const QGuiApplication application(noArguments, argv);

    bench::compareListing(desktop);
    bench::watchTicks(desktop, crowd, duration);
    return 0;
}
