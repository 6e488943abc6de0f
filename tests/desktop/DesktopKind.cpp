#include "DesktopKind.h"

#include <ostream>
#include <stdexcept>

namespace pallwick::desktop {

using support::PrivateDesktop;
using support::WindowManager;

std::string describe(DesktopKind kind) {
    switch (kind) {
        case DesktopKind::openbox:
            return "openbox";
        case DesktopKind::openboxPicom:
            return "openboxPicom";
        case DesktopKind::openboxPicomFading:
            return "openboxPicomFading";
        case DesktopKind::xfwm4:
            return "xfwm4";
        case DesktopKind::xfwm4Compositing:
            return "xfwm4Compositing";
    }
    throw std::logic_error("no such desktop");
}

void PrintTo(DesktopKind kind, std::ostream* stream) {
    *stream << describe(kind);
}

std::unique_ptr<PrivateDesktop> makeDesktop(DesktopKind kind, int width, int height) {
    const bool isXfwm4 = kind == DesktopKind::xfwm4 || kind == DesktopKind::xfwm4Compositing;
    const WindowManager windowManager = kind == DesktopKind::xfwm4Compositing ? WindowManager::xfwm4Compositing
                                        : isXfwm4                             ? WindowManager::xfwm4
                                                                              : WindowManager::openbox;
    auto desktop = std::make_unique<PrivateDesktop>(
        PrivateDesktop::Options{.windowManager = windowManager, .server = {.width = width, .height = height}});
    if (kind == DesktopKind::openboxPicom) {
        desktop->startCompositor();
    } else if (kind == DesktopKind::openboxPicomFading) {
        desktop->startCompositor(PrivateDesktop::Fading::on);
    }
    return desktop;
}

}  // namespace pallwick::desktop
