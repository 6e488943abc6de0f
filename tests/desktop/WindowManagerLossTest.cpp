// Window managers come and go under the running program; what is covered stays covered.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Program;
using support::WindowManager;

struct Change {
    const char* name;
    DesktopKind before;
    WindowManager after;
};

class WindowManagerLoss : public testing::TestWithParam<Change> {
protected:
    WindowManagerLoss() : stage_(GetParam().before), secret_(stage_.openSecret()), overlay_(stage_.add()) {
        stage_.awaitCovered(overlay_.rect);
    }

    void expectCovering() {
        stage_.desktop().x().await("the overlay above the client",
                                   [&] { return stage_.windows().isAbove(overlay_.window, secret_->window()); });
        stage_.awaitCovered(overlay_.rect);
        stage_.settle();
        EXPECT_TRUE(stage_.windows().isAbove(overlay_.window, secret_->window()));
        EXPECT_EQ(stage_.rectOf(overlay_.window), overlay_.rect);
        EXPECT_EQ(leak(stage_.desktop().screenshot(), {inside(overlay_.rect)}), "");
    }

    Stage stage_;
    std::unique_ptr<support::TestClient> secret_;
    Program::Overlay overlay_;
};

TEST_P(WindowManagerLoss, UncoversNothing) {
    stage_.desktop().stopWindowManager(true);
    expectCovering();

    stage_.desktop().startWindowManager(GetParam().after);
    expectCovering();

    stage_.windows().activate(secret_->window());
    expectCovering();
}

TEST_P(WindowManagerLoss, LeavesAnOverlayMovable) {
    stage_.desktop().stopWindowManager(true);
    stage_.desktop().startWindowManager(GetParam().after);

    const Program::Overlay moved = stage_.dragBy(overlay_, {.x = -50, .y = 30});

    EXPECT_EQ(moved.rect.x, overlay_.rect.x - 50);
    EXPECT_EQ(moved.rect.y, overlay_.rect.y + 30);
    stage_.awaitCovered(moved.rect);
}

INSTANTIATE_TEST_SUITE_P(
    Changes, WindowManagerLoss,
    testing::Values(Change{"openboxAgain", DesktopKind::openbox, WindowManager::openbox},
                    Change{"openboxAgainUnderPicom", DesktopKind::openboxPicom, WindowManager::openbox},
                    Change{"xfwm4Again", DesktopKind::xfwm4, WindowManager::xfwm4},
                    Change{"xfwm4CompositingAgain", DesktopKind::xfwm4Compositing, WindowManager::xfwm4Compositing},
                    Change{"openboxThenXfwm4", DesktopKind::openbox, WindowManager::xfwm4},
                    Change{"xfwm4CompositingThenOpenbox", DesktopKind::xfwm4Compositing, WindowManager::openbox}),
    [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace pallwick::desktop
