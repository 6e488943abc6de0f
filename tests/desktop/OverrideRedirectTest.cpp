// Menus, notifications and lock screens, which no window manager stacks, stay above overlays.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Program;
using support::TestClient;

class OverrideRedirectWindow : public testing::TestWithParam<DesktopKind> {
protected:
    OverrideRedirectWindow()
        : stage_(GetParam()),
          secret_(stage_.openSecret()),
          overlay_(stage_.add()),
          menu_(stage_.desktop(), {.title = "Menu", .rect = overlay_.rect, .overrideRedirect = true}) {
        stage_.settle();
    }

    [[nodiscard]] bool isMenuOnTop() { return stage_.windows().isAbove(menu_.window(), overlay_.window); }

    Stage stage_;
    std::unique_ptr<TestClient> secret_;
    Program::Overlay overlay_;
    TestClient menu_;
};

TEST_P(OverrideRedirectWindow, StaysAboveAnOverlay) {
    EXPECT_TRUE(isMenuOnTop());
}

TEST_P(OverrideRedirectWindow, StaysAboveAnOverlayThatIsRestackedOverARaisedClient) {
    const auto later = stage_.openSecret("Later");
    menu_.raise();
    stage_.desktop().x().await("the menu on top", [&] { return isMenuOnTop(); });

    stage_.windows().activate(secret_->window());
    stage_.desktop().x().await("the overlay above the raised client", [&] {
        return stage_.windows().isAbove(secret_->window(), later->window()) &&
               stage_.windows().isAbove(overlay_.window, secret_->window());
    });
    stage_.settle();
    menu_.raise();
    stage_.settle();

    EXPECT_TRUE(isMenuOnTop());
    EXPECT_EQ(menu_.rect(), overlay_.rect);
}

TEST_P(OverrideRedirectWindow, StaysAboveAnOverlayThatIsAddedOrRedrawn) {
    const Program::Overlay second = stage_.add();
    stage_.setShape(Shape::circle);
    stage_.lock();
    stage_.unlock();
    stage_.settle();

    EXPECT_TRUE(stage_.windows().isAbove(menu_.window(), overlay_.window));
    EXPECT_TRUE(stage_.windows().isAbove(menu_.window(), second.window));
}

INSTANTIATE_TEST_SUITE_P(Desktops, OverrideRedirectWindow,
                         testing::Values(DesktopKind::openbox, DesktopKind::xfwm4Compositing),
                         [](const auto& instance) { return describe(instance.param); });

}  // namespace
}  // namespace pallwick::desktop
