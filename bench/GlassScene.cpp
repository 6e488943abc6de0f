#include "GlassScene.h"

#include <xcb/composite.h>

#include <array>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "FrameCounter.h"
#include "ProcessorTime.h"

namespace pallwick {

namespace {

constexpr std::chrono::seconds settlingTime{2};
constexpr std::chrono::seconds measuredTime{20};

// What the shell takes for a line, in seconds, beside the pause.
constexpr double timeToWrite = 0.0012;

// The shell's own waiting, for a key that nobody presses: a program for each pause would take more than the terminal.
std::string runningText(int linesASecond) {
    return "i=0; while :; do printf '%06d  what is written here goes by, line after line after line after line %d\\n' "
           "$i "
           "$((i * 7919)); i=$((i + 1)); read -rst " +
           std::to_string(1.0 / linesASecond - timeToWrite) + "; done";
}

}  // namespace

GlassScene::GlassScene(int linesASecond)
    : desktop_({.windowManager = support::WindowManager::openbox,
                .server = {.width = 1920, .height = 1080, .arguments = {}},
                .environment = {}}),
      terminal_(desktop_.start({"xterm", "-T", "Running text", "-fa", "DejaVu Sans Mono", "-fs", "10", "-geometry",
                                "130x42+40+40", "-e", "bash", "-c", runningText(linesASecond)})) {
    const support::PixelRect text =
        desktop_.windows().rect(desktop_.windows().awaitClient("Running text")).value_or(support::PixelRect{});
    if (text.intersection(panelRect.inset(-60)) != panelRect.inset(-60)) {
        throw std::runtime_error("the terminal is only at " + support::describe(text));
    }
}

void GlassScene::startCompositor(const std::string& configuration) {
    const std::filesystem::path file = desktop_.home() / "picom.conf";
    std::ofstream(file) << configuration;
    compositor_ = desktop_.start({"picom", "--experimental-backends", "--config", file});
    desktop_.x().guard(*compositor_);
    desktop_.x().await(
        "picom owning the screen", [this] { return desktop_.isComposited(); },
        [this] { return compositor_->standardError(); });
    desktop_.x().release(*compositor_);
}

void GlassScene::openTranslucentWindow() {
    xcb_connection_t* xcb = desktop_.x().get();
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data;
    xcb_visualid_t visual = 0;
    for (auto depth = xcb_screen_allowed_depths_iterator(screen); depth.rem != 0; xcb_depth_next(&depth)) {
        if (depth.data->depth == 32) {
            visual = xcb_depth_visuals(depth.data)->visual_id;
        }
    }
    const xcb_colormap_t colormap = xcb_generate_id(xcb);
    xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colormap, screen->root, visual);
    const xcb_window_t window = xcb_generate_id(xcb);
    const std::uint32_t halfBlack = 0x80000000;
    const std::array<std::uint32_t, 4> values{halfBlack, 0, 1, colormap};
    xcb_create_window(xcb, 32, window, screen->root, panelRect.x, panelRect.y, panelRect.width, panelRect.height, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
                      values.data());
    xcb_map_window(xcb, window);
    desktop_.x().roundTrip();
}

Load GlassScene::load(const std::vector<pid_t>& more, xcb_window_t panel) {
    std::vector<pid_t> processes = more;
    processes.push_back(desktop_.server().pid());
    std::vector<xcb_window_t> pictured;
    if (compositor_) {
        processes.push_back(compositor_->pid());
        pictured.push_back(windowOfCompositor());
    } else if (panel != support::noWindow) {
        pictured.push_back(panel);
    }
    std::this_thread::sleep_for(settlingTime);
    FrameCounter counter(desktop_.server().display(), pictured);
    const ProcessorTime time(processes);
    const double pictures = counter.countFor(measuredTime);
    return {.percentOfACore = time.percentOfACore(),
            .picturesASecond = pictures / static_cast<double>(measuredTime.count())};
}

xcb_window_t GlassScene::windowOfCompositor() {
    xcb_connection_t* xcb = desktop_.x().get();
    const support::Reply<xcb_composite_query_version_reply_t> version(
        xcb_composite_query_version_reply(xcb, xcb_composite_query_version(xcb, 0, 4), nullptr));
    const support::Reply<xcb_composite_get_overlay_window_reply_t> reply(xcb_composite_get_overlay_window_reply(
        xcb, xcb_composite_get_overlay_window(xcb, desktop_.x().root()), nullptr));
    if (!version || !reply) {
        throw std::runtime_error("no window for a compositing manager");
    }
    return reply->overlay_win;
}

}  // namespace pallwick
