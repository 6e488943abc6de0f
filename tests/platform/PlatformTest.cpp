#include "PlatformTest.h"

#include <PallwickMac/Platform/X11/X11OverlaySurface.h>

#include <QGuiApplication>
#include <QTimer>

#include <algorithm>
#include <array>

namespace pallwick::x11 {

PlatformTest::PlatformTest() = default;

PlatformTest::~PlatformTest() {
    platform_.reset();
    application_.reset();
}

void PlatformTest::startDesktop(const Options& options) {
    desktop_ = std::make_unique<support::PrivateDesktop>(
        support::PrivateDesktop::Options{.windowManager = options.windowManager, .server = options.server});
    for (const char* name : {"WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS",
                             "QT_FONT_DPI", "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME"}) {
        qunsetenv(name);
    }
    for (const auto& [name, value] : desktop_->environment()) {
        qputenv(name.c_str(), value.c_str());
    }
    // What is installed on the machine is none of a test's business.
    qputenv("XDG_DATA_DIRS", (desktop_->home() / "none").c_str());
    qputenv("QT_QPA_PLATFORM", "xcb");
    qunsetenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON");
}

void PlatformTest::startTwoScreens() {
    startDesktop(
        {.windowManager = support::WindowManager::none, .server = {.width = 2560, .height = 1600, .arguments = {}}});
    desktop().addMonitor("P", {.x = 640, .y = 800, .width = 1280, .height = 800}, true);
    desktop().addMonitor("U", {.x = 640, .y = 0, .width = 1280, .height = 800});
}

void PlatformTest::startPlatform(double scale) {
    qputenv("QT_SCALE_FACTOR", QByteArray::number(scale));
    static int argumentCount = 1;
    static char programName[] = "pallwick-x11-tests";
    static std::array<char*, 2> arguments{programName, nullptr};
    if (!application_) {
        application_ = std::make_unique<QGuiApplication>(argumentCount, arguments.data());
    }
    platform_ = std::make_unique<X11Platform>();
}

std::unique_ptr<OverlaySurface> PlatformTest::makeSurface(OverlaySurfaceContent& content, const Rect& frame) {
    auto surface = platform().makeOverlaySurface(content);
    surface->setFrame(frame);
    return surface;
}

xcb_window_t PlatformTest::windowOf(const OverlaySurface& surface) {
    return dynamic_cast<const X11OverlaySurface&>(surface).window();
}

PixelRect PlatformTest::rectOf(const OverlaySurface& surface) {
    const auto rect = desktop().windows().rect(windowOf(surface)).value_or(support::PixelRect{});
    return {.x = rect.x, .y = rect.y, .width = rect.width, .height = rect.height};
}

bool PlatformTest::isOnRoot(const OverlaySurface& surface) {
    const support::PixelRect root = x().rootRect();
    return !rectOf(surface).intersected({.x = 0, .y = 0, .width = root.width, .height = root.height}).isEmpty();
}

bool PlatformTest::areStacked(const std::vector<xcb_window_t>& fromBottomToTop) {
    return std::ranges::adjacent_find(fromBottomToTop, [this](xcb_window_t lower, xcb_window_t upper) {
               return !desktop().windows().isAbove(upper, lower);
           }) == fromBottomToTop.end();
}

void PlatformTest::turn() {
    QTimer wake;
    wake.start(0);
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    static_cast<void>(platform().pointerLocation());
}

void PlatformTest::settle() {
    // The round trip of one turn reads what the next one handles; an answer may cause one more event.
    constexpr int turns = 6;
    x().roundTrip();
    for (int i = 0; i < turns; ++i) {
        turn();
    }
}

void PlatformTest::await(const std::string& what, const std::function<bool()>& condition) {
    const support::Deadline deadline;
    turn();
    while (!condition()) {
        if (deadline.hasPassed()) {
            throw support::Timeout("awaited in vain: " + what);
        }
        turn();
    }
}

xcb_window_t PlatformTest::makeWindow(const PixelRect& rect, bool overrideRedirect) {
    const xcb_window_t window = xcb_generate_id(x().get());
    const std::array<std::uint32_t, 2> values{0xFFFFFF, overrideRedirect ? 1U : 0U};
    xcb_create_window(x().get(), XCB_COPY_FROM_PARENT, window, x().root(), static_cast<std::int16_t>(rect.x),
                      static_cast<std::int16_t>(rect.y), static_cast<std::uint16_t>(rect.width),
                      static_cast<std::uint16_t>(rect.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
    xcb_map_window(x().get(), window);
    x().roundTrip();
    return window;
}

void PlatformTest::setNormalState(xcb_window_t window) {
    setCardinals(window, "WM_STATE", x().atom("WM_STATE"), {1, 0});
}

void PlatformTest::raise(xcb_window_t window) {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(x().get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    x().roundTrip();
}

void PlatformTest::destroy(xcb_window_t window) {
    xcb_destroy_window(x().get(), window);
    x().roundTrip();
}

void PlatformTest::setCardinals(xcb_window_t window, const std::string& property, xcb_atom_t type,
                                const std::vector<std::uint32_t>& values) {
    xcb_change_property(x().get(), XCB_PROP_MODE_REPLACE, window, x().atom(property), type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
    x().roundTrip();
}

void PlatformTest::setBytes(xcb_window_t window, const std::string& property, const std::string& type,
                            const std::string& bytes) {
    xcb_change_property(x().get(), XCB_PROP_MODE_REPLACE, window, x().atom(property), x().atom(type), 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.data());
    x().roundTrip();
}

void PlatformTest::setActiveWindow(xcb_window_t window) {
    setCardinals(x().root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {window});
}

void PlatformTest::setCompositor(xcb_window_t owner) {
    xcb_set_selection_owner(x().get(), owner, x().atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    x().roundTrip();
}

}  // namespace pallwick::x11
