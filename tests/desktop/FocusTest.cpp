// Overlays are shown, moved and deleted without the keyboard focus or the active window changing.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::PixelPoint;
using support::Program;

class Focus : public testing::TestWithParam<DesktopKind> {
protected:
    Focus() : stage_(GetParam()), secret_(stage_.openSecret()) {
        stage_.windows().activate(secret_->window());
        stage_.desktop().x().await("the client focused", [this] { return isFocused(); });
        stage_.settle();
        secret_->forgetEvents();
    }

    bool isFocused() {
        return stage_.windows().active() == secret_->window() && stage_.windows().hasFocus(secret_->window());
    }

    void expectUntouched() {
        stage_.settle();
        EXPECT_TRUE(isFocused());
        EXPECT_EQ(secret_->count("focus"), 0);
        secret_->forgetEvents();
        stage_.desktop().keyboard().type("a");
        EXPECT_EQ(secret_->count("key "), 1);
        secret_->forgetEvents();
    }

    Stage stage_;
    std::unique_ptr<support::TestClient> secret_;
};

TEST_P(Focus, StaysWhenAnOverlayIsShown) {
    stage_.add();

    expectUntouched();
}

TEST_P(Focus, StaysWhenAnOverlayIsClicked) {
    const Program::Overlay overlay = stage_.add();

    stage_.pointer().click(overlay.rect.centre());

    expectUntouched();
}

TEST_P(Focus, StaysWhenAnOverlayIsDraggedAndResized) {
    const Program::Overlay overlay = stage_.add();

    const Program::Overlay moved = stage_.dragBy(overlay, {.x = -40, .y = 20});
    const PixelPoint handle = stage_.resizeHandle(moved.rect);
    stage_.pointer().drag(handle, {.x = handle.x - 30, .y = handle.y - 30});
    stage_.program().awaitOverlayAt({moved.rect.x, moved.rect.y, moved.rect.width - 30, moved.rect.height - 30});

    expectUntouched();
}

TEST_P(Focus, StaysWhenAnOverlayIsDeletedByAClick) {
    const Program::Overlay overlay = stage_.add();

    stage_.pointer().click(stage_.deleteControl(overlay.rect));
    stage_.program().awaitOverlayCount(0);

    expectUntouched();
}

TEST_P(Focus, StaysWhenOverlaysAreLockedAndCleared) {
    stage_.add();
    stage_.lock();
    stage_.unlock();

    stage_.operate("Clear");
    stage_.program().awaitOverlayCount(0);

    expectUntouched();
}

PALLWICK_ON_EVERY_DESKTOP(Focus);

}  // namespace
}  // namespace pallwick::desktop
