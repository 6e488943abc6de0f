#include "Session.h"

#include <algorithm>
#include <utility>

namespace pallwick::pictures {
namespace {

using support::Colour;
using support::PixelRect;
using support::PrivateDesktop;
using support::Program;

constexpr Colour ground{.red = 0x5a, .green = 0x7d, .blue = 0x8c};

PrivateDesktop::Options desktopOptions(const Look& look) {
    return {.windowManager = support::WindowManager::openbox,
            .server = {.width = static_cast<int>(1920 * look.scale), .height = static_cast<int>(1080 * look.scale)}};
}

/// The desktop with all that the program finds when it starts.
PrivateDesktop& prepared(PrivateDesktop& desktop, const Look& look) {
    desktop.setGround(ground);
    if (look.composited) {
        desktop.startCompositor();
    }
    if (look.dark) {
        desktop.useDarkColours();
    }
    if (look.largeText) {
        desktop.useTextSize(18);
    }
    return desktop;
}

PixelRect united(const PixelRect& a, const PixelRect& b) {
    const int x = std::min(a.x, b.x);
    const int y = std::min(a.y, b.y);
    return {.x = x, .y = y, .width = std::max(a.maxX(), b.maxX()) - x, .height = std::max(a.maxY(), b.maxY()) - y};
}

}  // namespace

Session::Session(Gallery& gallery, Look look)
    : gallery_(gallery),
      look_(std::move(look)),
      desktop_(desktopOptions(look_)),
      program_(prepared(desktop_, look_), Program::Options{.scale = look_.scale}),
      main_(desktop_, program_) {
    main_.placeInCorner();
}

void Session::take(const std::string& name, const std::string& sentence, const PixelRect& part) {
    main_.settle();
    gallery_.add(desktop_.screenshot().part(part), look_.name + "-" + name, sentence + " (" + look_.name + ")");
}

void Session::takeWindow(const std::string& name, const std::string& sentence, xcb_window_t window) {
    take(name, sentence, desktop_.windows().frame(window).value_or(PixelRect{}));
}

void Session::takeMenu(const std::string& name, const std::string& sentence, xcb_window_t menu) {
    take(name, sentence,
         united(desktop_.windows().frame(main_.window()).value_or(PixelRect{}),
                desktop_.windows().rect(menu).value_or(PixelRect{})));
}

}  // namespace pallwick::pictures
