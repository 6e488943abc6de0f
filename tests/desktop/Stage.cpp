#include "Stage.h"

#include <algorithm>
#include <cmath>

namespace pallwick::desktop {

using support::PixelPoint;
using support::PixelRect;
using support::Program;
using support::Screenshot;
using support::TestClient;

Stage::Stage(DesktopKind kind, Options options)
    : options_(std::move(options)), desktop_(makeDesktop(kind, options_.width, options_.height)) {
    if (options_.dark) {
        desktop_->useDarkColours();
    }
    if (options_.prepare) {
        options_.prepare(*desktop_);
    }
    startProgram();
}

void Stage::startProgram() {
    program_ = std::make_unique<Program>(*desktop_, Program::Options{.scale = options_.scale,
                                                                     .environment = options_.environment,
                                                                     .absentVariables = options_.absentVariables,
                                                                     .allowedOutput = options_.allowedOutput});
    main_ = std::make_unique<support::MainWindow>(*desktop_, *program_);
    main_->placeInCorner();
}

void Stage::startAgain() {
    const xcb_window_t oldWindow = mainWindow();
    main_.reset();
    program_.reset();
    desktop_->x().await("the old main window gone",
                        [&] { return !windows().isViewable(oldWindow) && !windows().client("Pallwick"); });
    startProgram();
}

PixelRect Stage::rectOf(xcb_window_t window) {
    return windows().rect(window).value_or(PixelRect{});
}

PixelRect Stage::secretRect() const {
    const PixelRect screen = desktop_->x().rootRect();
    return {
        .x = screen.width / 5, .y = screen.height / 5, .width = screen.width * 2 / 5, .height = screen.height * 3 / 5};
}

std::unique_ptr<TestClient> Stage::openSecret(const std::string& title, const PixelRect& rect) {
    TestClient::Options options = secretOptions(title, rect);
    options.undecorated = true;
    auto client = std::make_unique<TestClient>(*desktop_, options);
    // Longer than any compositing manager takes to fade it, and whatever was mapped before it, in.
    const PixelPoint ground{.x = rect.x + 8, .y = rect.y + 8};
    desktop_->awaitPixels("the secret in its full colours",
                          [&](const Screenshot& screen) { return screen.at(ground) == secretGround; });
    return client;
}

Program::Overlay Stage::add() {
    const std::vector<Program::Overlay> before = program_->overlays();
    operate("Add");
    return program_->awaitOverlay("a further overlay", [&](const Program::Overlay& overlay) {
        return std::ranges::find(before, overlay.window, &Program::Overlay::window) == before.end();
    });
}

void Stage::lock() {
    operate("Lock");
    static_cast<void>(program_->controls().await("push button", "Edit"));
}

void Stage::unlock() {
    operate("Edit");
    static_cast<void>(program_->controls().await("push button", "Lock"));
}

void Stage::setShape(Shape shape) {
    main_->setShape(shape == Shape::circle ? "Circle" : "Rectangle");
}

void Stage::setTint(int opacity) {
    setGlass(false);
    slideTo("Opacity", opacity);
}

void Stage::setStyle(int blur, int opacity, bool glass) {
    setGlass(glass);
    slideTo("Blur", blur);
    slideTo("Opacity", opacity);
    awaitStatus("Style updated");
}

Program::Overlay Stage::dragBy(const Program::Overlay& overlay, PixelPoint way) {
    const PixelPoint grip = overlay.rect.centre();
    pointer().drag(grip, {.x = grip.x + way.x, .y = grip.y + way.y});
    return program_->awaitOverlayAt(
        {overlay.rect.x + way.x, overlay.rect.y + way.y, overlay.rect.width, overlay.rect.height});
}

PixelPoint Stage::resizeHandle(const PixelRect& overlay) const {
    // A square of 28 by 28 points, 6 in from the bottom-right corner.
    const int middle = static_cast<int>(std::lround(20 * options_.scale));
    return {.x = overlay.maxX() - middle, .y = overlay.maxY() - middle};
}

PixelPoint Stage::deleteControl(const PixelRect& overlay) const {
    // A square of 26 by 26 points at 8, 8.
    const int middle = static_cast<int>(std::lround(21 * options_.scale));
    return {.x = overlay.x + middle, .y = overlay.y + middle};
}

Screenshot Stage::awaitCovered(const PixelRect& overlay, Shape shape) {
    return desktop_->awaitPixels("a cover at " + support::describe(overlay), [&](const Screenshot& screen) {
        return leak(screen, {inside(overlay, shape, options_.scale)}).empty();
    });
}

void Stage::watch(const std::string& what, const std::function<void(const Screenshot&)>& look,
                  const std::function<bool(const Screenshot&)>& isLast) {
    desktop_->awaitPixels(what, [&](const Screenshot& screen) {
        look(screen);
        return isLast(screen);
    });
}

xcb_window_t windowUnderPointer(support::XConnection& x) {
    const support::Reply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(x.get(), xcb_query_pointer(x.get(), x.root()), nullptr));
    return reply ? reply->child : support::noWindow;
}

}  // namespace pallwick::desktop
