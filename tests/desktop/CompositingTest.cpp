// Compositing managers come and go under the running program: no picture in between shows what is covered, and
// afterwards the right pixels are there.

#include <gmock/gmock.h>
#include <poll.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Colour;
using support::PixelRect;
using support::PrivateDesktop;
using support::Program;
using support::Screenshot;

enum class Mode { edit, locked };

struct Look {
    const char* name;
    Mode mode;
    Shape shape;
    PrivateDesktop::Fading fading;
};

class CompositingManager : public testing::TestWithParam<Look> {
protected:
    CompositingManager() : stage_(DesktopKind::openbox), secret_(stage_.openSecret()) {}

    void addOverlay() {
        overlay_ = stage_.add();
        if (GetParam().shape == Shape::circle) {
            stage_.setShape(Shape::circle);
        }
        if (GetParam().mode == Mode::locked) {
            stage_.lock();
        }
        stage_.settle();
        stage_.awaitCovered(overlay_.rect, GetParam().shape);
    }

    void look(const Screenshot& screen) const {
        EXPECT_EQ(leak(screen, {inside(overlay_.rect, GetParam().shape)}), "");
    }

    /// The corner of the frame lies outside the overlay's shape. It shows what is beneath wherever it can.
    [[nodiscard]] bool showsCorner(const Screenshot& screen) const {
        return isSecret(screen.at({.x = overlay_.rect.x, .y = overlay_.rect.y}));
    }

    void watchUntilCornerShows(bool shows) {
        stage_.watch(
            "the corner", [this](const Screenshot& screen) { look(screen); },
            [&](const Screenshot& screen) { return showsCorner(screen) == shows; });
    }

    /// Without a compositing manager the corner is cut off while locked, and what is beneath is drawn there in edit
    /// mode.
    [[nodiscard]] static bool cornerShowsUncomposited() { return true; }

    /// Looks at every picture while the desktop changes.
    void expectCoveringWhile(const std::function<void()>& change, bool cornerShowsThen) {
        stage_.desktop().x().listenToPixels();
        look(stage_.desktop().screenshot());
        change();
        look(stage_.desktop().screenshot());
        watchUntilCornerShows(cornerShowsThen);
        stage_.settle();
        const Screenshot settled = stage_.desktop().screenshot();
        look(settled);
        EXPECT_EQ(showsCorner(settled), cornerShowsThen);
        expectRightPixels(settled);
    }

    void expectRightPixels(const Screenshot& screen) const {
        const PixelRect& rect = overlay_.rect;
        EXPECT_EQ(screen.at(rect.centre()), Colour{});
        const Colour border = screen.at({.x = rect.centre().x, .y = rect.y + 1});
        if (GetParam().mode == Mode::edit) {
            EXPECT_GT(difference(border, {}), 100);
            EXPECT_GT(border.blue, border.red);
        } else {
            EXPECT_LT(difference(border, {}), 20);
        }
        EXPECT_TRUE(isSecret(screen.at({.x = rect.x - 3, .y = rect.centre().y})));
        EXPECT_TRUE(isSecret(screen.at({.x = rect.maxX() + 3, .y = rect.centre().y})));
    }

    Stage stage_;
    std::unique_ptr<support::TestClient> secret_;
    Program::Overlay overlay_;
};

TEST_P(CompositingManager, UncoversNothingWhenItStarts) {
    addOverlay();

    expectCoveringWhile([this] { stage_.desktop().startCompositor(GetParam().fading); }, true);
}

TEST_P(CompositingManager, UncoversNothingWhenItCrashes) {
    stage_.desktop().startCompositor(GetParam().fading);
    addOverlay();

    expectCoveringWhile([this] { stage_.desktop().stopCompositor(true); }, cornerShowsUncomposited());
}

TEST_P(CompositingManager, UncoversNothingWhenItIsStartedAgainAndAgain) {
    addOverlay();

    expectCoveringWhile([this] { stage_.desktop().startCompositor(GetParam().fading); }, true);
    expectCoveringWhile([this] { stage_.desktop().stopCompositor(); }, cornerShowsUncomposited());
    expectCoveringWhile([this] { stage_.desktop().startCompositor(GetParam().fading); }, true);
    expectCoveringWhile([this] { stage_.desktop().stopCompositor(true); }, cornerShowsUncomposited());
}

using enum PrivateDesktop::Fading;
INSTANTIATE_TEST_SUITE_P(Looks, CompositingManager,
                         testing::Values(Look{"editRectangle", Mode::edit, Shape::rectangle, off},
                                         Look{"editCircle", Mode::edit, Shape::circle, off},
                                         Look{"lockedRectangle", Mode::locked, Shape::rectangle, off},
                                         Look{"lockedCircle", Mode::locked, Shape::circle, off},
                                         Look{"editCircleFading", Mode::edit, Shape::circle, on},
                                         Look{"lockedRectangleFading", Mode::locked, Shape::rectangle, on}),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace pallwick::desktop
