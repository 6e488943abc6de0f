// Overlays stay above every window of other programs, however that comes to the front.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::PixelRect;
using support::Program;
using support::TestClient;

class Stacking : public testing::TestWithParam<DesktopKind> {
protected:
    Stacking() : stage_(GetParam()), secret_(stage_.openSecret()), overlay_(stage_.add()) {
        stage_.awaitCovered(overlay_.rect);
    }

    /// Returns once the overlay is above the window; then nothing of it shows inside the overlay.
    void expectCovering(const TestClient& client) {
        stage_.desktop().x().await("the overlay above the client",
                                   [&] { return stage_.windows().isAbove(overlay_.window, client.window()); });
        stage_.awaitCovered(overlay_.rect);
        stage_.settle();
        EXPECT_TRUE(stage_.windows().isAbove(overlay_.window, client.window()));
        EXPECT_EQ(stage_.rectOf(overlay_.window), overlay_.rect);
        EXPECT_EQ(leak(stage_.desktop().screenshot(), {inside(overlay_.rect)}), "");
    }

    Stage stage_;
    std::unique_ptr<TestClient> secret_;
    Program::Overlay overlay_;
};

TEST_P(Stacking, CoversAWindowThatOpensLater) {
    const auto later = stage_.openSecret("Later");

    expectCovering(*later);
}

TEST_P(Stacking, CoversAWindowRaisedByAClick) {
    const PixelRect rect = stage_.secretRect();
    const auto later = stage_.openSecret("Later", {rect.x, rect.y + 60, rect.width, rect.height});
    expectCovering(*later);

    stage_.pointer().click({.x = rect.x + 30, .y = rect.y + 30});
    stage_.desktop().x().await("the lower window raised",
                               [&] { return stage_.windows().isAbove(secret_->window(), later->window()); });

    expectCovering(*secret_);
}

TEST_P(Stacking, CoversAWindowThatRaisesItself) {
    const auto later = stage_.openSecret("Later");

    stage_.windows().activate(secret_->window());
    stage_.desktop().x().await("the lower window raised",
                               [&] { return stage_.windows().isAbove(secret_->window(), later->window()); });

    expectCovering(*secret_);
}

TEST_P(Stacking, CoversAWindowThatBecomesFullScreen) {
    secret_->setFullScreen(true);

    expectCovering(*secret_);
}

TEST_P(Stacking, CoversAFullScreenWindowThatOpensLater) {
    TestClient::Options options = secretOptions("Later", stage_.secretRect());
    options.fullScreen = true;
    TestClient later(stage_.desktop(), options);
    stage_.desktop().x().await("a window over the whole screen",
                               [&] { return later.rect() == stage_.desktop().x().rootRect(); });

    expectCovering(later);
}

TEST_P(Stacking, CoversAWindowKeptAboveOthers) {
    stage_.windows().setKeptAbove(secret_->window(), true);

    expectCovering(*secret_);
}

TEST_P(Stacking, CoversOnEveryWorkspace) {
    stage_.windows().setWorkspaceCount(2);
    stage_.windows().switchToWorkspace(1);
    const auto there = stage_.openSecret("There");
    expectCovering(*there);

    stage_.windows().switchToWorkspace(0);
    stage_.desktop().x().await("the first workspace", [&] {
        return stage_.windows().isViewable(secret_->window()) && !stage_.windows().isViewable(there->window());
    });

    expectCovering(*secret_);
}

TEST_P(Stacking, CoversAFullScreenWindowOfAnotherWorkspace) {
    stage_.windows().setWorkspaceCount(2);
    secret_->setFullScreen(true);
    expectCovering(*secret_);
    stage_.windows().switchToWorkspace(1);
    stage_.desktop().x().await("the full-screen window gone",
                               [&] { return !stage_.windows().isViewable(secret_->window()); });

    stage_.windows().switchToWorkspace(0);
    stage_.desktop().x().await("the full-screen window back",
                               [&] { return stage_.windows().isViewable(secret_->window()); });

    expectCovering(*secret_);
}

PALLWICK_ON_EVERY_DESKTOP(Stacking);

TEST(StackingOrder, OfSeveralOverlaysIsTheirsFromTheFirstToTheLast) {
    Stage stage(DesktopKind::openbox);
    const auto secret = stage.openSecret();
    const Program::Overlay first = stage.add();
    const Program::Overlay second = stage.add();
    const Program::Overlay third = stage.add();

    const auto later = stage.openSecret("Later");
    stage.desktop().x().await("all overlays above the client",
                              [&] { return stage.windows().isAbove(first.window, later->window()); });
    stage.settle();

    EXPECT_TRUE(stage.windows().isAbove(second.window, first.window));
    EXPECT_TRUE(stage.windows().isAbove(third.window, second.window));
}

}  // namespace
}  // namespace pallwick::desktop
