#include "Tour.h"

#include <cmath>

namespace pallwick::tour {
namespace {

using support::AccessibleState;
using support::Colour;
using support::describe;
using support::PixelArea;
using support::PixelPoint;
using support::PixelRect;
using support::Screenshot;
using support::SecretWindow;

constexpr Colour black{};
/// Neither the overlay's black nor the terminal's colours.
constexpr Colour ground{.red = 0x5a, .green = 0x7d, .blue = 0x8c};

support::PrivateDesktop::Options desktopOptions(double scale) {
    return {.windowManager = support::WindowManager::openbox,
            .server = {.width = static_cast<int>(1280 * scale), .height = static_cast<int>(800 * scale)}};
}

bool isClose(int a, int b, int tolerance) {
    return std::abs(a - b) <= tolerance;
}

}  // namespace

Tour::Tour(Record& record, double scale, Compositor compositor, std::string suffix)
    : record_(record), desktop_(desktopOptions(scale)), scale_(scale), suffix_(std::move(suffix)) {
    desktop_.setGround(ground);
    if (compositor == Compositor::picom) {
        desktop_.startCompositor();
    }
}

void Tour::picture(const std::string& name) {
    record_.picture(desktop_.screenshot(), name + suffix_);
}

PixelArea Tour::inside(const PixelRect& overlay) const {
    // The tint keeps its corner radius and lies one point in; between it and the edge the glass alone shows.
    constexpr double cornerRadius = 12;
    constexpr double rim = 2;
    return PixelArea::roundedRectangle(overlay.inset(pixels(rim)), pixels(cornerRadius));
}

void Tour::awaitCover() {
    // Behind a compositor the screen is a frame late.
    const PixelArea area = inside(overlay_);
    desktop_.awaitPixels("the overlay's tint and no trace of the text at " + describe(overlay_),
                         [&](const Screenshot& seen) {
                             return seen.at(overlay_.centre()) == black && SecretWindow::tracesIn(seen, area) == 0;
                         });
}

void Tour::checkHidden(const std::string& when) {
    const Screenshot screen = desktop_.screenshot();
    const int traces = SecretWindow::tracesIn(screen, inside(overlay_));
    record_.check(traces == 0, "no trace of the text shows inside the overlay, two points in, " + when,
                  std::to_string(traces) + " pixels");
    record_.check(screen.at(overlay_.centre()) == black, "its middle has its tint, " + when,
                  describe(screen.at(overlay_.centre())));
}

void Tour::start() {
    secret_.emplace(desktop_, PixelPoint{.x = static_cast<int>(20 * scale_), .y = static_cast<int>(30 * scale_)},
                    scale_);
    program_.emplace(desktop_, support::Program::Options{.scale = scale_});
    main_.emplace(desktop_, *program_);
    // Neither the terminal nor the overlay over it is in its way there.
    main_->placeInCorner();
    desktop_.awaitPixels("the text beside the main window", [&](const Screenshot& seen) {
        return SecretWindow::textIn(seen, PixelArea::rectangle(secret_->rect())) > 0;
    });
    textBefore_ = SecretWindow::textIn(desktop_.screenshot(), PixelArea::rectangle(secret_->rect()));
    record_.check(textBefore_ > 0, "the terminal's text is readable at first");
    record_.check(program_->overlays().empty(), "there is no overlay at first");
    picture("start");
}

void Tour::add() {
    program_->click("Add");
    overlay_ = program_->awaitOverlayCount(1).front().rect;

    const PixelRect screen = desktop_.x().rootRect();
    record_.check(isClose(overlay_.width, pixels(0.28 * 1280), 2) && isClose(overlay_.height, pixels(0.2 * 800), 2),
                  "a click on Add makes an overlay of 28 by 20 hundredths of the screen", describe(overlay_));
    record_.check(
        isClose(overlay_.centre().x, screen.centre().x, 2) && isClose(overlay_.centre().y, screen.centre().y, 2),
        "it lies in the middle of the screen", describe(overlay_));
    awaitCover();
    checkHidden("once added");
    picture("added");
}

void Tour::cover() {
    const PixelRect text = secret_->rect();
    const PixelPoint grip = overlay_.centre();
    const PixelPoint goal{.x = grip.x + text.x + pixels(10) - overlay_.x,
                          .y = grip.y + text.y + pixels(10) - overlay_.y};
    PixelRect expected = overlay_;
    expected.x += goal.x - grip.x;
    expected.y += goal.y - grip.y;

    desktop_.pointer().drag(grip, goal);
    overlay_ = program_->awaitOverlayAt(expected).rect;

    record_.check(true, "a drag moves the overlay by exactly the pointer's way, to " + describe(overlay_));
    awaitCover();
    checkHidden("once dragged over the text");
    const int rest = SecretWindow::textIn(desktop_.screenshot(), PixelArea::rectangle(text));
    record_.check(rest > 0 && rest < textBefore_, "the text beside it still shows", std::to_string(rest) + " pixels");
    picture("covered");
}

void Tour::resize() {
    // A handle of 28 by 28, 6 in from the bottom-right corner: its middle is 20 in.
    const PixelPoint handle{.x = overlay_.maxX() - pixels(20), .y = overlay_.maxY() - pixels(20)};
    desktop_.pointer().moveTo(handle);
    const PixelArea handleArea = PixelArea::rectangle({.x = overlay_.maxX() - pixels(34),
                                                       .y = overlay_.maxY() - pixels(34),
                                                       .width = pixels(28),
                                                       .height = pixels(28)});
    desktop_.awaitPixels("the resize handle", [&](const Screenshot& seen) {
        return seen.find(handleArea, [](Colour colour) { return difference(colour, black) > 100; }).has_value();
    });
    record_.check(true, "the handles show while the pointer is over the overlay");
    picture("handles");

    PixelRect expected = overlay_;
    expected.width += pixels(60);
    expected.height += pixels(50);
    desktop_.pointer().drag(handle, {.x = handle.x + pixels(60), .y = handle.y + pixels(50)});
    overlay_ = program_->awaitOverlayAt(expected).rect;

    record_.check(true, "a drag of the handle resizes the overlay, its top-left corner stays: " + describe(overlay_));
    awaitCover();
    checkHidden("once resized");
    picture("resized");
}

void Tour::lock() {
    program_->giveKeyboardTo(main_->window());
    support::AccessibleTree& controls = program_->controls();
    const support::Accessible button = controls.await("push button", "Lock");
    const auto focusedControl = [&] {
        const auto focused = controls.application().findAll(
            [](const support::Accessible& item) { return item.has(AccessibleState::focused); });
        return focused.empty() ? std::string() : focused.front().name() + describe(focused.front().extents());
    };
    // More than the window has controls.
    constexpr int mostTabs = 40;
    int tabs = 0;
    for (; !button.has(AccessibleState::focused) && tabs < mostTabs; ++tabs) {
        const std::string before = focusedControl();
        desktop_.keyboard().press(XK_Tab);
        controls.awaitCondition("the focus on the next control", [&] { return focusedControl() != before; });
    }
    record_.check(button.has(AccessibleState::focused), "the Tab key reaches Lock", std::to_string(tabs) + " tabs");
    desktop_.keyboard().press(XK_space);
    static_cast<void>(program_->controls().await("push button", "Edit"));

    record_.check(true, "the space bar locks; the button says Edit");
    checkHidden("once locked");
    picture("locked");
}

void Tour::clickThrough() {
    const PixelPoint middle = overlay_.centre();
    desktop_.pointer().click(middle);
    desktop_.x().await(
        "the terminal active", [&] { return desktop_.windows().active() == secret_->window(); },
        [&] { return "\"" + desktop_.windows().title(desktop_.windows().active()) + "\" active"; });
    record_.check(true, "a click on the locked overlay activates the terminal beneath");

    desktop_.pointer().click(middle);
    desktop_.pointer().click(middle);
    desktop_.pointer().click(middle);
    desktop_.x().await("a selection in the terminal", [&] { return desktop_.windows().hasSelectionOwner("PRIMARY"); });
    record_.check(true, "repeated clicks select text in the terminal beneath");
    record_.check(program_->overlays().size() == 1 && program_->overlays().front().rect == overlay_,
                  "the overlay stays where it is");
    // The window manager raised the terminal; the overlay can only follow that, it cannot forestall it.
    awaitCover();
    checkHidden("back above the terminal that came to the front");
    picture("clicked-through");
}

void Tour::unlock() {
    program_->click("Edit");
    static_cast<void>(program_->controls().await("push button", "Lock"));

    record_.check(true, "a click on Edit unlocks; the button says Lock");
    checkHidden("once unlocked");
    picture("unlocked");
}

void Tour::remove() {
    // A control of 26 by 26 at 8, 8: its middle is 21 in.
    record_.check(program_->overlays().size() == 1, "the overlay is there to be deleted");
    desktop_.pointer().click({.x = overlay_.x + pixels(21), .y = overlay_.y + pixels(21)});
    static_cast<void>(program_->awaitOverlayCount(0));
    // A line of it may still be selected, with the colours exchanged.
    desktop_.awaitPixels("the text readable again", [&](const Screenshot& seen) {
        return SecretWindow::textIn(seen, PixelArea::rectangle(secret_->rect())) >= textBefore_ * 9 / 10;
    });

    record_.check(true, "a click on its delete control takes the overlay away and uncovers the text");
    picture("removed");
}

void Tour::quit() {
    const support::ExitStatus status = program_->quit();

    record_.check(status == support::ExitStatus{}, "Ctrl+Q ends the program in good order", describe(status));
    const std::vector<std::string> output = program_->unexpectedOutput();
    record_.check(output.empty(), "it wrote nothing", output.empty() ? std::string() : output.front());
    picture("quit");
}

void Tour::walk() {
    record_.heading("At scale " + std::to_string(std::lround(scale_)) +
                    (desktop_.isComposited() ? ", composited" : ", without a compositor"));
    using Part = void (Tour::*)();
    constexpr std::array<std::pair<const char*, Part>, 9> parts{{{"starting", &Tour::start},
                                                                 {"adding an overlay", &Tour::add},
                                                                 {"covering the text", &Tour::cover},
                                                                 {"resizing", &Tour::resize},
                                                                 {"locking", &Tour::lock},
                                                                 {"clicking through", &Tour::clickThrough},
                                                                 {"unlocking", &Tour::unlock},
                                                                 {"deleting", &Tour::remove},
                                                                 {"quitting", &Tour::quit}}};
    for (const auto& [name, part] : parts) {
        if (!record_.attempt(name, [this, part = part] { (this->*part)(); })) {
            // Each part begins where the one before ended.
            picture("failed");
            break;
        }
    }
    record_.heading("Window manager: " + desktop_.windows().windowManagerName().value_or("none") +
                    (desktop_.isComposited() ? ", composited" : ", no compositor"));
}

void Tour::showDark() {
    record_.heading("Among dark colours");
    record_.attempt("dark colours", [this] {
        desktop_.useDarkColours();
        start();
        add();
        const PixelRect window = main_->rect();
        const Colour mean = desktop_.screenshot().mean(PixelArea::rectangle(window));
        constexpr int darkest = 90;
        record_.check(mean.red < darkest && mean.green < darkest && mean.blue < darkest, "the main window is dark",
                      describe(mean));
        quit();
    });
}

}  // namespace pallwick::tour
