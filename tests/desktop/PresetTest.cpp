// The four commands of the presets menu from end to end: by mouse and keyboard, on the screen, in the list and the
// status line.

#include <gmock/gmock.h>

#include <algorithm>

#include "PresetsFile.h"
#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Accessible;
using support::AccessibleState;
using support::PixelRect;
using support::Program;
using support::Screenshot;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// But for a level: an overlay's rim shows what is beyond it, blurred, and in the main window there another row is
/// selected once a preset is loaded.
bool isAlike(const Screenshot& a, const Screenshot& b, const PixelRect& rect) {
    for (int y = rect.y; y < rect.maxY(); ++y) {
        for (int x = rect.x; x < rect.maxX(); ++x) {
            if (support::difference(a.at({.x = x, .y = y}), b.at({.x = x, .y = y})) > 1) {
                return false;
            }
        }
    }
    return true;
}

std::vector<PixelRect> rectsOf(const std::vector<Program::Overlay>& overlays) {
    std::vector<PixelRect> rects;
    std::ranges::transform(overlays, std::back_inserter(rects), &Program::Overlay::rect);
    return rects;
}

constexpr PixelRect firstRect{.x = 580, .y = 410, .width = 360, .height = 200};
constexpr PixelRect secondRect{.x = 780, .y = 440, .width = 360, .height = 200};
constexpr const char* firstRow = "Overlay 1, Rectangle - 360 x 200 at 580, 470";
constexpr const char* secondRow = "Overlay 2, Circle - 360 x 200 at 780, 440";

class Preset : public testing::Test {
protected:
    explicit Preset(DesktopKind kind = DesktopKind::openbox, Stage::Options options = {})
        : stage_(kind, std::move(options)) {}

    /// A rectangle and a circle that lies partly over it.
    std::vector<Program::Overlay> addTwo() {
        stage_.dragBy(stage_.add(), {.x = -200, .y = -30});
        stage_.add();
        stage_.setShape(Shape::circle);
        stage_.awaitRows({firstRow, secondRow});
        return stage_.program().awaitOverlayCount(2);
    }

    void clear() {
        stage_.operate("Clear");
        stage_.program().awaitOverlayCount(0);
        stage_.awaitStatus("All overlays cleared");
    }

    /// Waits for both at their pixels, the circle above.
    void awaitTwo() {
        stage_.awaitRows({firstRow, secondRow});
        EXPECT_THAT(rectsOf(stage_.program().awaitOverlayCount(2)), testing::ElementsAre(firstRect, secondRect));
    }

    void expectUntouched(const std::vector<Program::Overlay>& overlays) {
        stage_.settle();
        const std::vector<Program::Overlay> now = stage_.program().overlays();
        EXPECT_EQ(rectsOf(now), rectsOf(overlays));
        EXPECT_TRUE(std::ranges::equal(now, overlays, {}, &Program::Overlay::window, &Program::Overlay::window));
    }

    /// Opens the menu from its button and chooses the entry, counted from 1, all by the keyboard.
    void chooseByKeyboard(int entry) {
        const Accessible button = stage_.program().controls().await("button menu", "Presets");
        stage_.windows().activate(stage_.mainWindow());
        button.grabFocus();
        stage_.program().controls().awaitCondition("the focus on Presets",
                                                   [&] { return button.has(AccessibleState::focused); });
        stage_.desktop().keyboard().press(XK_space);
        stage_.awaitMenu();
        for (int step = 0; step < entry; ++step) {
            stage_.desktop().keyboard().press(XK_Down);
        }
        stage_.desktop().keyboard().press(XK_Return);
    }

    Stage stage_;
    PresetsFile file_{stage_.desktop().dataHome()};
};

class PresetOnDesktop : public Preset, public testing::WithParamInterface<DesktopKind> {
protected:
    PresetOnDesktop() : Preset(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(Desktops, PresetOnDesktop, testing::Values(DesktopKind::openbox, DesktopKind::xfwm4),
                         [](const auto& instance) { return describe(instance.param); });

TEST_P(PresetOnDesktop, OfTheDisplayBringsEveryOverlayBackPixelForPixel) {
    const auto secret = stage_.openSecret();
    const std::vector<Program::Overlay> overlays = addTwo();
    stage_.choosePreset("Save Display Preset");
    stage_.awaitStatus("Display preset saved");
    expectUntouched(overlays);
    stage_.awaitCovered(firstRect);
    const Screenshot saved = stage_.awaitCovered(secondRect, Shape::circle);
    clear();

    stage_.choosePreset("Load Display Preset");

    stage_.awaitStatus("Display preset loaded");
    awaitTwo();
    stage_.desktop().awaitPixels("the saved picture", [&](const Screenshot& screen) {
        return isAlike(screen, saved, firstRect) && isAlike(screen, saved, secondRect);
    });
}

TEST_P(PresetOnDesktop, OfTheProgramIsSavedAndLoadedByTheKeyboard) {
    const std::vector<Program::Overlay> overlays = addTwo();
    chooseByKeyboard(3);
    stage_.awaitStatus("App preset saved");
    expectUntouched(overlays);
    clear();

    chooseByKeyboard(4);

    stage_.awaitStatus("App preset loaded");
    awaitTwo();
    EXPECT_THAT(file_.text(), AllOf(HasSubstr("\"application:org.pallwick.Pallwick\""), Not(HasSubstr("\"screen:"))));
}

TEST_F(Preset, OfTheDisplayIsSavedAndLoadedByTheKeyboard) {
    addTwo();
    chooseByKeyboard(1);
    stage_.awaitStatus("Display preset saved");
    clear();

    chooseByKeyboard(2);

    stage_.awaitStatus("Display preset loaded");
    awaitTwo();
}

TEST_F(Preset, OfTheProgramIsSavedAndLoadedByTheMouse) {
    addTwo();
    stage_.choosePreset("Save App Preset");
    stage_.awaitStatus("App preset saved");
    clear();

    stage_.choosePreset("Load App Preset");

    stage_.awaitStatus("App preset loaded");
    awaitTwo();
}

TEST_F(Preset, ReplacesWhatIsThereAndSelectsItsFirstOverlay) {
    addTwo();
    stage_.choosePreset("Save Display Preset");
    stage_.awaitStatus("Display preset saved");
    stage_.dragBy(stage_.add(), {.x = 0, .y = -300});

    stage_.choosePreset("Load Display Preset");

    stage_.awaitStatus("Display preset loaded");
    awaitTwo();
    EXPECT_TRUE(stage_.rows()[0].has(AccessibleState::selected));
    EXPECT_FALSE(stage_.rows()[1].has(AccessibleState::selected));
}

TEST_F(Preset, BringsTheStyleBack) {
    stage_.add();
    stage_.setStyle(/*blur=*/8, /*opacity=*/93, /*glass=*/false);
    stage_.choosePreset("Save Display Preset");
    stage_.awaitStatus("Display preset saved");
    clear();

    stage_.choosePreset("Load Display Preset");

    stage_.program().awaitOverlayAt(secondRect);
    const support::AccessibleTree& controls = stage_.program().controls();
    controls.awaitCondition("the saved blur", [&] { return controls.await("slider", "Blur").value() == 8; });
    EXPECT_EQ(controls.await("slider", "Opacity").value(), 93);
    EXPECT_FALSE(controls.await("check box", "Glass blur").has(AccessibleState::checked));
}

TEST_F(Preset, LoadsIntoTheModeThatIsOn) {
    addTwo();
    stage_.choosePreset("Save Display Preset");
    stage_.awaitStatus("Display preset saved");
    clear();
    stage_.lock();

    stage_.choosePreset("Load Display Preset");

    stage_.awaitStatus("Display preset loaded");
    awaitTwo();
    static_cast<void>(stage_.program().controls().await("label", "Locked"));
    stage_.pointer().moveTo(firstRect.centre());
    EXPECT_THAT(rectsOf(stage_.program().overlays()), SizeIs(2));
    EXPECT_EQ(windowUnderPointer(stage_.desktop().x()), support::noWindow);
}

TEST_F(Preset, OfTheDisplayThatWasNeverSavedLeavesNoOverlay) {
    addTwo();

    stage_.choosePreset("Load Display Preset");

    stage_.awaitStatus("No display preset saved");
    stage_.program().awaitOverlayCount(0);
    EXPECT_THAT(stage_.rows(), IsEmpty());
    EXPECT_FALSE(file_.exists());
}

TEST_F(Preset, OfTheProgramThatWasNeverSavedLeavesNoOverlayThoughTheDisplaysWas) {
    addTwo();
    stage_.choosePreset("Save Display Preset");
    stage_.awaitStatus("Display preset saved");
    const std::string text = file_.text();

    stage_.choosePreset("Load App Preset");

    stage_.awaitStatus("No app preset saved");
    stage_.program().awaitOverlayCount(0);
    EXPECT_THAT(stage_.rows(), IsEmpty());
    EXPECT_EQ(file_.text(), text);
}

TEST_F(Preset, BringsAnAttachedOverlayBackToWhereItsWindowIsNow) {
    const auto secret = stage_.openSecret();
    const Program::Overlay overlay = stage_.add();
    stage_.attachToLastWindow();
    stage_.choosePreset("Save Display Preset");
    stage_.awaitStatus("Display preset saved");
    clear();
    const PixelRect before = secret->rect();
    stage_.windows().move(secret->window(), {.x = before.x + 30, .y = before.y - 20});

    stage_.choosePreset("Load Display Preset");
    stage_.awaitStatus("Display preset loaded");
    stage_.windows().activate(secret->window());

    stage_.program().awaitOverlayAt(
        {overlay.rect.x + 30, overlay.rect.y - 20, overlay.rect.width, overlay.rect.height});
}

TEST_F(Preset, MenuLeavesEverythingAsItIsWhenItIsDismissed) {
    const std::vector<Program::Overlay> overlays = addTwo();
    const std::string status = stage_.statusText();
    stage_.program().click("button menu", "Presets");
    const xcb_window_t menu = stage_.awaitMenu();

    stage_.desktop().keyboard().press(XK_Escape);

    stage_.desktop().x().await("the menu gone", [&] { return !stage_.windows().isViewable(menu); });
    expectUntouched(overlays);
    EXPECT_EQ(stage_.statusText(), status);
    EXPECT_FALSE(file_.exists());
}

}  // namespace
}  // namespace pallwick::desktop
