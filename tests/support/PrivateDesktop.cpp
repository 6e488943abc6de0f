#include "PrivateDesktop.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>

namespace pallwick::support {
namespace {

/// The services that may be started by name on a private bus: accessibility, and what window managers keep their
/// settings in. Nothing else of the machine takes part in a test.
constexpr std::array<const char*, 2> services{"org.a11y.Bus.service", "org.xfce.Xfconf.service"};

void end(std::unique_ptr<Process>& process, bool crashing) {
    if (crashing && process) {
        process->kill();
    }
    process.reset();
}

}  // namespace

PrivateDesktop::PrivateDesktop(const Options& options)
    : home_(directory_.makeDirectory("home")),
      runtimeDirectory_(directory_.makeDirectory("run")),
      server_(std::make_unique<PrivateXServer>(options.server)) {
    const char* path = std::getenv("PATH");
    own_ = {{"PATH", path == nullptr ? "/usr/bin:/bin" : path},
            {"LANG", "C.UTF-8"},
            {"HOME", home_},
            {"XDG_RUNTIME_DIR", runtimeDirectory_},
            {"XDG_DATA_HOME", directory_.makeDirectory("home/.local/share")},
            {"XDG_CONFIG_HOME", directory_.makeDirectory("home/.config")},
            {"XDG_CACHE_HOME", directory_.makeDirectory("home/.cache")},
            {"XDG_SESSION_TYPE", "x11"},
            {"DISPLAY", server_->display()},
            {"GSETTINGS_BACKEND", "memory"},
            {"NO_AT_BRIDGE", "1"},
            {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"}};
    for (const auto& [name, value] : options.environment) {
        own_[name] = value;
    }
    startSessionBus();
    x_ = std::make_unique<XConnection>(server_->display());
    windows_ = std::make_unique<Windows>(*x_);
    pointer_ = std::make_unique<Pointer>(*x_);
    keyboard_ = std::make_unique<Keyboard>(*x_);
    startWindowManager(options.windowManager);
}

PrivateDesktop::~PrivateDesktop() = default;

std::filesystem::path PrivateDesktop::dataHome() const {
    return home_ / ".local/share";
}

std::filesystem::path PrivateDesktop::configHome() const {
    return home_ / ".config";
}

void PrivateDesktop::startSessionBus() {
    const std::filesystem::path activatable = directory_.makeDirectory("services");
    for (const char* service : services) {
        const std::filesystem::path file = std::filesystem::path("/usr/share/dbus-1/services") / service;
        if (std::filesystem::exists(file)) {
            std::filesystem::copy_file(file, activatable / service);
        }
    }
    const std::filesystem::path configuration = directory_.path() / "session.conf";
    std::ofstream(configuration)
        << "<busconfig><type>session</type><listen>unix:path=" << (directory_.path() / "bus").string()
        << "</listen><auth>EXTERNAL</auth><servicedir>" << activatable.string()
        << R"(</servicedir><policy context="default"><allow send_destination="*" eavesdrop="true"/>)"
        << R"(<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>)";
    sessionBus_ = start(
        {"dbus-daemon", "--nofork", "--nopidfile", "--print-address=1", "--config-file=" + configuration.string()});
    sessionBusAddress_ = sessionBus_->readLine();
    own_["DBUS_SESSION_BUS_ADDRESS"] = sessionBusAddress_;
}

Environment PrivateDesktop::environment(const Environment& more) const {
    Environment result = own_;
    for (const auto& [name, value] : more) {
        result[name] = value;
    }
    return result;
}

std::unique_ptr<Process> PrivateDesktop::start(std::vector<std::string> command, const Environment& more) const {
    return std::make_unique<Process>(std::move(command),
                                     Process::Options{.environment = environment(more), .descriptors = {}});
}

void PrivateDesktop::startWindowManager(WindowManager windowManager) {
    if (windowManager == WindowManager::none) {
        return;
    }
    const WindowManagerCommand launch = commandOf(windowManager, directory_.path());
    windowManager_ = start(launch.command, launch.environment);
    x_->guard(*windowManager_);
    x_->await(
        describe(windowManager) + " managing the desktop",
        [&] { return windows_->windowManagerName() && (!launch.composites || isComposited()); },
        [&] { return "standard error: " + windowManager_->standardError(); });
    awaitManagement();
    x_->release(*windowManager_);
}

void PrivateDesktop::awaitManagement() {
    // The announcement comes before the work: openbox lets requests that arrive in its first moments lie until a
    // further event wakes it. So a window is shown, and the root touched until the window is managed.
    const xcb_window_t probe = xcb_generate_id(x_->get());
    const xcb_window_t root = x_->root();
    xcb_create_window(x_->get(), XCB_COPY_FROM_PARENT, probe, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    windows_->setText(probe, "WM_NAME", "Probe");
    xcb_map_window(x_->get(), probe);
    const auto touch = [&] { windows_->setText(root, "PALLWICK_TEST_PROBE", "probe"); };
    const auto isListed = [&] {
        const std::vector<xcb_window_t> clients = windows_->clients();
        return std::ranges::find(clients, probe) != clients.end();
    };
    x_->await("the window manager managing a window", [&] {
        touch();
        return isListed() && windows_->wmState(probe) != 0;
    });
    xcb_destroy_window(x_->get(), probe);
    x_->await("the window manager forgetting a window", [&] {
        touch();
        return !isListed();
    });
    xcb_delete_property(x_->get(), root, x_->atom("PALLWICK_TEST_PROBE"));
    x_->roundTrip();
}

void PrivateDesktop::stopWindowManager(bool crashing) {
    end(windowManager_, crashing);
    x_->await("no window manager", [this] { return !windows_->windowManagerName(); });
}

void PrivateDesktop::startCompositor(Fading fading) {
    const std::filesystem::path configuration = directory_.path() / "picom.conf";
    // A step of 0.01 every 10 ms: a fade that lasts a second is seen by any test that looks too early.
    std::ofstream(configuration) << R"(backend = "xrender";
vsync = false;
shadow = false;
fade-in-step = 0.01;
fade-out-step = 0.01;
fade-delta = 10;
fading = )" << (fading == Fading::on ? "true" : "false")
                                 << ";\n";
    compositor_ = start({"picom", "--config", configuration});
    x_->guard(*compositor_);
    x_->await("picom owning the screen", [this] { return isComposited(); });
    x_->release(*compositor_);
}

void PrivateDesktop::stopCompositor(bool crashing) {
    end(compositor_, crashing);
    x_->await("no compositor", [this] { return !isComposited(); });
}

void PrivateDesktop::addMonitor(const std::string& name, const PixelRect& rect, bool primary) {
    // The millimetres give 96 dots an inch; only the primary monitor takes the one output of the server.
    const auto millimetres = [](int pixels) { return std::to_string(pixels * 254 / 960); };
    const std::string place = std::to_string(rect.width) + "/" + millimetres(rect.width) + "x" +
                              std::to_string(rect.height) + "/" + millimetres(rect.height) + "+" +
                              std::to_string(rect.x) + "+" + std::to_string(rect.y);
    run({"xrandr", "--setmonitor", (primary ? "*" : "") + name, place, primary ? "screen" : "none"}, environment());
    monitors_.push_back({.name = name, .rect = rect, .primary = primary});
}

void PrivateDesktop::removeMonitor(const std::string& name) {
    run({"xrandr", "--delmonitor", name}, environment());
    std::erase_if(monitors_, [&](const Monitor& monitor) { return monitor.name == name; });
}

std::vector<PixelRect> PrivateDesktop::monitors() const {
    std::vector<PixelRect> rects;
    if (std::ranges::none_of(monitors_, &Monitor::primary)) {
        rects.push_back(x_->rootRect());
    }
    for (const Monitor& monitor : monitors_) {
        rects.push_back(monitor.rect);
    }
    return rects;
}

void PrivateDesktop::setResources(const std::string& resources) {
    windows_->setText(x_->root(), "RESOURCE_MANAGER", resources);
}

void PrivateDesktop::setGround(Colour colour) {
    const auto pixel = static_cast<std::uint32_t>(colour.red << 16 | colour.green << 8 | colour.blue);
    xcb_change_window_attributes(x_->get(), x_->root(), XCB_CW_BACK_PIXEL, &pixel);
    xcb_clear_area(x_->get(), 0, x_->root(), 0, 0, 0, 0);
    x_->roundTrip();
}

void PrivateDesktop::addKdeSettings(const std::string& settings) {
    own_["XDG_CURRENT_DESKTOP"] = "KDE";
    own_["KDE_SESSION_VERSION"] = "5";
    std::ofstream(configHome() / "kdeglobals", std::ios::app) << settings;
}

void PrivateDesktop::useTextSize(int points) {
    const std::string font = "DejaVu Sans," + std::to_string(points) + ",-1,5,50,0,0,0,0,0\n";
    addKdeSettings("[General]\nfont=" + font + "menuFont=" + font);
}

void PrivateDesktop::useDarkColours() {
    addKdeSettings(R"([Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252
[Colors:View]
BackgroundNormal=27,30,32
BackgroundAlternate=35,38,41
ForegroundNormal=252,252,252
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[KDE]
widgetStyle=Fusion
)");
}

}  // namespace pallwick::support
