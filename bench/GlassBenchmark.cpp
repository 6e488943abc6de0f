// What a panel of frosted glass over running text costs beside a compositing manager that blurs a window of the same
// size over the same text; and how that grows with the number of panels.

#include <cstdio>
#include <exception>
#include <string>

#include "FrameCounter.h"
#include "GlassPanels.h"
#include "GlassScene.h"
#include "ProcessorTime.h"

namespace pallwick {

namespace {

constexpr std::chrono::seconds countedTime{10};

const std::string onTheProcessor = "backend = \"xrender\"; vsync = false; shadow = false; fading = false;\n";
const std::string inOpenGL = "backend = \"glx\"; vsync = false; shadow = false; fading = false;\n";
// Three standard deviations on both sides, as far as ours goes.
const std::string gaussian = "blur: { method = \"gaussian\"; size = 60; deviation = 20; };\n";
const std::string dualKawase = "blur: { method = \"dual_kawase\"; strength = 8; };\n";

// A log that a person can just follow, and as many new pictures as a screen shows.
constexpr int readableText = 15;
constexpr int fastText = 60;

// Per cent. A new overlay is opaque: only its rim shows what is beneath.
constexpr int translucent = 50;
constexpr int opaque = 100;

struct Cost {
    Load without;
    Load with;
};

Load loadOfCompositor(const std::string& configuration) {
    GlassScene scene(fastText);
    scene.startCompositor(configuration);
    scene.openTranslucentWindow();
    return scene.load();
}

Cost costOfCompositor(const std::string& configuration, const std::string& blur) {
    return {.without = loadOfCompositor(configuration), .with = loadOfCompositor(configuration + blur)};
}

Cost costOfPanel(int linesASecond, int opacity, const std::string& compositor = {}) {
    GlassScene scene(linesASecond);
    if (!compositor.empty()) {
        scene.startCompositor(compositor);
    }
    GlassPanels panels(scene.desktop());
    const Load without = scene.load({panels.pid()});
    const xcb_window_t panel = panels.show(1, GlassScene::panelRect, opacity).front().window;
    return {.without = without, .with = scene.load({panels.pid()}, panel)};
}

/// What each new picture costs, in milliseconds of a core, beside the text itself, which runs whether it is seen or
/// not.
double costOfAPicture(const Load& load, double percentOfText) {
    return load.picturesASecond == 0 ? 0 : 10 * (load.percentOfACore - percentOfText) / load.picturesASecond;
}

/// Whoever cannot keep up makes fewer pictures and looks cheaper than it is, so each is counted.
class Comparison {
public:
    explicit Comparison(const Cost& ours) : percentOfText_(ours.without.percentOfACore), ours_(added(ours)) {
        std::printf(
            "| one panel of 720x400 | without it | with it | new pictures with it | added to each | in ours | "
            "aim |\n|---|---|---|---|---|---|---|\n");
    }

    void print(const char* name, const Cost& cost, const char* aim) const {
        std::printf("| %s | %.1f %% | %.1f %% | %.1f a second | %.2f ms | %.1fx | %s |\n", name,
                    cost.without.percentOfACore, cost.with.percentOfACore, cost.with.picturesASecond, added(cost),
                    added(cost) / ours_, aim);
        std::fflush(stdout);
    }

private:
    [[nodiscard]] double added(const Cost& cost) const {
        return costOfAPicture(cost.with, percentOfText_) - costOfAPicture(cost.without, percentOfText_);
    }

    double percentOfText_;
    double ours_;
};

void printAdded(const char* name, const Cost& cost, const char* aim) {
    std::printf("| %s | %.1f %% | %.1f %% | %.1f %% | %.1f a second | %s |\n", name, cost.without.percentOfACore,
                cost.with.percentOfACore, cost.with.percentOfACore - cost.without.percentOfACore,
                cost.with.picturesASecond, aim);
    std::fflush(stdout);
}

/// Returns what the panel costs over fast text.
Cost printPanels() {
    std::printf(
        "| a panel of 720x400 | without it | with it | it adds | its new pictures | aim "
        "|\n|---|---|---|---|---|---|\n");
    printAdded("over 15 new lines a second", costOfPanel(readableText, translucent), "under 3 %");
    const Cost ours = costOfPanel(fastText, translucent);
    printAdded("over 60 new lines a second", ours, "under 3 %");
    printAdded("opaque as a new overlay is, over 60", costOfPanel(fastText, opaque), "under 3 %");
    std::printf("\n");
    return ours;
}

void printComparison(const Cost& ours) {
    const Comparison comparison(ours);
    comparison.print("Pallwick, no compositing manager", ours, "");
    comparison.print("Pallwick under picom (XRender)", costOfPanel(fastText, translucent, onTheProcessor), "");
    comparison.print("picom, Gaussian of 20 pixels (XRender)", costOfCompositor(onTheProcessor, gaussian),
                     "at least 20x");
    comparison.print("picom, dual Kawase, strength 8 (OpenGL in software)", costOfCompositor(inOpenGL, dualKawase), "");
}

void printGrowth() {
    GlassScene scene(fastText);
    GlassPanels panels(scene.desktop());
    const double percentOfText = scene.load({panels.pid()}).percentOfACore;
    std::printf(
        "\n| panels, one over the other | X server and Pallwick | new pictures of each panel | each picture |\n");
    std::printf("|---|---|---|---|\n");
    for (const int count : {1, 2, 5, 10, 20}) {
        std::vector<xcb_window_t> windows;
        for (const support::Program::Overlay& overlay : panels.show(count, GlassScene::panelRect, translucent)) {
            windows.push_back(overlay.window);
        }
        FrameCounter counter(scene.desktop().server().display(), windows);
        const ProcessorTime time({scene.desktop().server().pid(), panels.pid()});
        const int pictures = counter.countFor(countedTime);
        const double percent = time.percentOfACore();
        const double picturesASecond = pictures / static_cast<double>(countedTime.count());
        std::printf("| %d | %.1f %% | %.1f a second | %.2f ms |\n", count, percent, picturesASecond / count,
                    10 * (percent - percentOfText) / picturesASecond);
        std::fflush(stdout);
    }
}

}  // namespace

}  // namespace pallwick

int main() {
    try {
        pallwick::printComparison(pallwick::printPanels());
        pallwick::printGrowth();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
