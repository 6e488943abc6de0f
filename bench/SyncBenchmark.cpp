// What a synchronisation costs in which nothing has changed, which is what almost every one is: a hundred shown
// overlays on a real X server, measured in round trips to that server.

#include <PallwickMac/Platform/DesktopPlatform.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/Monitors.h>
#include <PallwickMac/Platform/X11/SurfaceHost.h>
#include <PallwickMac/Platform/X11/X11OverlaySurface.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <PallwickMac/Services/AppOverlayPanel.h>
#include <PallwickMacCore/Services/OverlayWindowController.h>
#include <benchmark/benchmark.h>

#include <QGuiApplication>

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/PrivateDesktop.h"

namespace pallwick {

namespace {

constexpr int overlayCount = 100;

/// The X11 surfaces without the rest of the platform, so that the connection they use can be asked what went over it.
class SurfacePlatform final : public DesktopPlatform {
public:
    SurfacePlatform()
        : rootArea_(x11::queryRootArea(connection_)),
          host_(connection_, x11::PixelMapping(rootArea_, 1), rootArea_, false) {}

    [[nodiscard]] std::vector<Screen> screens() const override { return {}; }
    [[nodiscard]] std::vector<Rect> screenFrames() const override { return {}; }
    [[nodiscard]] std::optional<std::vector<WindowRecord>> onScreenWindows() const override { return std::nullopt; }
    [[nodiscard]] std::optional<WindowRecord> onScreenWindow(std::uint32_t) const override { return std::nullopt; }
    [[nodiscard]] std::optional<std::int32_t> frontmostProcessID() const override { return std::nullopt; }
    [[nodiscard]] std::optional<std::string> frontmostBundleID() const override { return std::nullopt; }
    [[nodiscard]] Point pointerLocation() const override { return {}; }
    [[nodiscard]] PlatformCapabilities capabilities() const override { return {}; }
    [[nodiscard]] std::unique_ptr<OverlaySurface> makeOverlaySurface(OverlaySurfaceContent& content) override {
        return std::make_unique<x11::X11OverlaySurface>(host_, content);
    }
    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem(const StatusItemDescription&) override { return nullptr; }
    [[nodiscard]] bool claimInstance(const ActivationToken&) override { return true; }
    void activate(QWindow&, const ActivationToken&) override {}

    void roundTrip() {
        static_cast<void>(
            x11::own(xcb_get_input_focus_reply(connection_.xcb(), xcb_get_input_focus(connection_.xcb()), nullptr)));
    }

    /// How many requests this connection has sent, this one included.
    [[nodiscard]] unsigned requestsSent() {
        const xcb_void_cookie_t cookie = xcb_no_operation(connection_.xcb());
        return cookie.sequence;
    }

    void takeEvents() {
        while (const auto event = x11::own(xcb_poll_for_event(connection_.xcb()))) {
            host_.handle(*event);
        }
    }

private:
    x11::Connection connection_;
    x11::PixelRect rootArea_;
    x11::SurfaceHost host_;
};

std::vector<BlurOverlay> overlaysInRows() {
    std::vector<BlurOverlay> overlays;
    for (int i = 0; i < overlayCount; ++i) {
        overlays.push_back(BlurOverlay(
            {.displayID = 1,
             .frame = {.x = 20.0 + 90 * (i % 10), .y = 20.0 + 60 * (i / 10), .width = 240, .height = 140}}));
    }
    return overlays;
}

void roundTrip(benchmark::State& state, SurfacePlatform& platform) {
    for (auto iteration : state) {
        platform.roundTrip();
    }
}

void syncUnchanged(benchmark::State& state, SurfacePlatform& platform) {
    OverlayWindowController controller(
        [&platform](const BlurOverlay& overlay, FrameChangedCallback onFrameChanged,
                    DeleteRequestedCallback onDeleteRequested) -> std::shared_ptr<OverlayPanelControlling> {
            return AppOverlayPanel::make(platform, overlay, std::move(onFrameChanged), std::move(onDeleteRequested));
        });
    const std::vector<BlurOverlay> overlays = overlaysInRows();
    const auto sync = [&] {
        controller.sync(overlays, false, std::nullopt);
        QCoreApplication::processEvents();
    };
    sync();
    platform.roundTrip();
    platform.takeEvents();
    sync();

    const unsigned before = platform.requestsSent();
    for (auto iteration : state) {
        sync();
    }
    const unsigned sent = platform.requestsSent() - before - 1;
    state.counters["requests"] = benchmark::Counter(sent);
    controller.closeAll();
    QCoreApplication::processEvents();
}

class RatioReporter final : public benchmark::ConsoleReporter {
public:
    RatioReporter() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                microseconds_[run.run_name.function_name] = run.GetAdjustedRealTime();
            }
            if (run.counters.contains("requests")) {
                requests_ = run.counters.at("requests").value;
            }
        }
    }

    void printRatio() const {
        const double limit = microseconds_.at("round trip");
        const double sync = microseconds_.at("sync of 100 unchanged overlays");
        std::printf("\n| | time (median) | X round trips | X requests | aim |\n|---|---|---|---|---|\n");
        std::printf("| one round trip to the X server | %.1f us | 1 | 1 | |\n", limit);
        std::printf("| sync of %d unchanged overlays | %.1f us | %.1f | %.0f | under 1000 us, no request |\n",
                    overlayCount, sync, sync / limit, requests_);
    }

private:
    std::map<std::string, double> microseconds_;
    double requests_ = 0;
};

}  // namespace

}  // namespace pallwick

int main(int argc, char** argv) {
    using namespace pallwick;
    const support::PrivateXServer server({.width = 1280, .height = 800, .arguments = {}});
    qputenv("DISPLAY", QByteArray::fromStdString(server.display()));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int noArguments = 1;
    const QGuiApplication application(noArguments, argv);
    SurfacePlatform platform;

    benchmark::Initialize(&argc, argv);
    const auto configure = [](benchmark::internal::Benchmark* benchmark) {
        benchmark->Unit(benchmark::kMicrosecond)->Repetitions(9)->ReportAggregatesOnly(true)->UseRealTime();
    };
    configure(benchmark::RegisterBenchmark("round trip", [&](benchmark::State& state) { roundTrip(state, platform); }));
    configure(benchmark::RegisterBenchmark("sync of 100 unchanged overlays",
                                           [&](benchmark::State& state) { syncUnchanged(state, platform); }));
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatio();
    return 0;
}
