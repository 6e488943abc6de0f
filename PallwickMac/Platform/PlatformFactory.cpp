#include <PallwickMac/Platform/PlatformFactory.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/X11Platform.h>

#include <QByteArray>
#include <QtGlobal>

#include <csignal>

namespace pallwick {

void preparePlatform() {
    // A write to a server that has just gone must come back as an error, not end the program without a word.
    std::signal(SIGPIPE, SIG_IGN);
    const x11::Connection probe;
    // Also in a Wayland session: only X11 windows can be placed above all others there.
    qputenv("QT_QPA_PLATFORM", QByteArrayLiteral("xcb"));
}

std::unique_ptr<DesktopPlatform> makePlatform() {
    return std::make_unique<x11::X11Platform>();
}

}  // namespace pallwick
