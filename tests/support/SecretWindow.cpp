#include "SecretWindow.h"

#include <algorithm>
#include <cmath>

namespace pallwick::support {
namespace {

constexpr const char* title = "Payroll";
/// Nothing else on the desktop is magenta: not the accent, not the red of the delete control.
constexpr Colour textColour{.red = 0xb0, .green = 0, .blue = 0xb0};
/// Takes in a letter's edge where it is still more letter than ground.
constexpr int textTolerance = 70;
/// A screen full of large text has thousands.
constexpr int textPixelsWhenPainted = 3000;

}  // namespace

SecretWindow::SecretWindow(PrivateDesktop& desktop, PixelPoint place, double scale, Text text) : desktop_(desktop) {
    // The last command keeps the terminal open without a prompt. Running text goes on when the terminal has answered
    // where its cursor is (DSR 6): then it has taken in the line.
    const std::string script =
        text == Text::still
            ? "for line in 1 2 3 4 5 6 7 8 9; do echo \"Salary of No. $line: 98,${line}00\"; done; exec cat"
            : "line=0; while :; do line=$((line % 999 + 1)); echo \"Salary of No. $line: 98,${line}00\"; "
              "printf '\\033[6n'; read -rs -d R || exit; done";
    process_ = desktop.start({"xterm",
                              "-title",
                              title,
                              "-xrm",
                              "XTerm*allowTitleOps: false",
                              "-fa",
                              "DejaVu Sans Mono:bold",
                              "-fs",
                              std::to_string(std::lround(16 * scale)),
                              "-bg",
                              "#fffff0",
                              "-fg",
                              describe(textColour),
                              "-cr",
                              "#fffff0",
                              "-geometry",
                              "30x10+" + std::to_string(place.x) + "+" + std::to_string(place.y),
                              "-e",
                              "bash",
                              "-c",
                              script});
    window_ = desktop.windows().awaitClient(title);
    desktop.awaitPixels("the terminal's text", [&](const Screenshot& screen) {
        return textIn(screen, PixelArea::rectangle(rect())) > textPixelsWhenPainted;
    });
}

PixelRect SecretWindow::rect() {
    return desktop_.windows().rect(window_).value_or(PixelRect{});
}

int SecretWindow::textIn(const Screenshot& screen, const PixelArea& area) {
    return screen.count(area, isNear(textColour, textTolerance));
}

int SecretWindow::tracesIn(const Screenshot& screen, const PixelArea& area) {
    // Magenta at a twentieth of its strength; neither red, blue, white nor black has more red and blue than green.
    constexpr int faintest = 8;
    return screen.count(area,
                        [](Colour colour) { return std::min(colour.red, colour.blue) - colour.green >= faintest; });
}

}  // namespace pallwick::support
