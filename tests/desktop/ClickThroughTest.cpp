// Locked, an overlay is air to the mouse; in edit mode every pixel of its frame is its own.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::MouseButton;
using support::PixelPoint;
using support::Program;

class ClickThrough : public testing::TestWithParam<DesktopKind> {
protected:
    ClickThrough() : stage_(GetParam()), secret_(stage_.openSecret()), overlay_(stage_.add()) {
        stage_.awaitCovered(overlay_.rect);
        origin_ = {.x = secret_->rect().x, .y = secret_->rect().y};
        stage_.settle();
        secret_->forgetEvents();
    }

    /// "press 1 x y" of a root point, as the client beneath is to see it.
    [[nodiscard]] std::string inClient(const std::string& event, PixelPoint point) const {
        return event + " " + std::to_string(point.x - origin_.x) + " " + std::to_string(point.y - origin_.y);
    }

    /// The root's child that a click there goes to.
    xcb_window_t targetAt(PixelPoint point) {
        stage_.pointer().moveTo(point);
        return windowUnderPointer(stage_.desktop().x());
    }

    void scrollAt(PixelPoint point) {
        stage_.pointer().click(point, MouseButton::wheelUp);
        stage_.pointer().click(point, MouseButton::wheelDown);
    }

    void expectAllThrough() {
        const PixelPoint middle = overlay_.rect.centre();
        const PixelPoint goal{.x = middle.x + 24, .y = middle.y - 16};
        secret_->forgetEvents();
        EXPECT_EQ(targetAt(middle), stage_.windows().rootChild(secret_->window()));

        stage_.pointer().click(middle);
        secret_->awaitEvent(inClient("release 1", middle));
        scrollAt(goal);
        secret_->awaitEvent(inClient("release 5", goal));
        stage_.pointer().drag(middle, goal, 4);
        secret_->awaitEvent(inClient("release 1", goal));

        EXPECT_EQ(secret_->count(inClient("press 1", middle)), 2);
        EXPECT_EQ(secret_->count(inClient("release 1", middle)), 1);
        EXPECT_EQ(secret_->count(inClient("press 4", goal)), 1);
        EXPECT_EQ(secret_->count(inClient("release 4", goal)), 1);
        EXPECT_EQ(secret_->count(inClient("press 5", goal)), 1);
        EXPECT_EQ(secret_->count(inClient("drag", goal)), 1);
        EXPECT_EQ(stage_.rectOf(overlay_.window), overlay_.rect);
    }

    void expectNothingThrough() {
        const PixelPoint middle = overlay_.rect.centre();
        secret_->forgetEvents();
        EXPECT_EQ(targetAt(middle), overlay_.window);

        stage_.pointer().click(middle);
        scrollAt(middle);
        stage_.pointer().drag(middle, {.x = middle.x + 24, .y = middle.y - 16}, 4);
        stage_.program().awaitOverlayAt(
            {overlay_.rect.x + 24, overlay_.rect.y - 16, overlay_.rect.width, overlay_.rect.height});
        stage_.pointer().drag({.x = middle.x + 24, .y = middle.y - 16}, middle, 4);
        stage_.program().awaitOverlayAt(overlay_.rect);
        stage_.settle();

        EXPECT_EQ(secret_->count("press"), 0);
        EXPECT_EQ(secret_->count("release"), 0);
        EXPECT_EQ(secret_->count("drag"), 0);
    }

    Stage stage_;
    std::unique_ptr<support::TestClient> secret_;
    Program::Overlay overlay_;
    PixelPoint origin_;
};

TEST_P(ClickThrough, LetsAllThroughWhileLocked) {
    stage_.lock();
    stage_.settle();

    expectAllThrough();
}

TEST_P(ClickThrough, LetsNothingThroughInEditMode) {
    expectNothingThrough();
}

TEST_P(ClickThrough, FollowsTheModeBackAndForth) {
    stage_.lock();
    stage_.settle();
    expectAllThrough();
    stage_.unlock();
    stage_.settle();
    expectNothingThrough();
    stage_.lock();
    stage_.settle();
    expectAllThrough();
}

TEST_P(ClickThrough, OfACircleIncludesItsCornersOnlyWhileLocked) {
    stage_.setShape(Shape::circle);
    stage_.settle();
    const PixelPoint corner{.x = overlay_.rect.maxX() - 3, .y = overlay_.rect.y + 3};

    const xcb_window_t inEditMode = targetAt(corner);
    stage_.pointer().click(corner);
    stage_.settle();
    const int pressesInEditMode = secret_->count("press");
    stage_.lock();
    stage_.settle();
    const xcb_window_t whileLocked = targetAt(corner);
    stage_.pointer().click(corner);
    secret_->awaitEvent(inClient("release 1", corner));

    EXPECT_EQ(inEditMode, overlay_.window);
    EXPECT_EQ(pressesInEditMode, 0);
    EXPECT_EQ(whileLocked, stage_.windows().rootChild(secret_->window()));
    EXPECT_EQ(secret_->count(inClient("press 1", corner)), 1);
    stage_.desktop().awaitPixels("what lies beneath the corner",
                                 [&](const support::Screenshot& screen) { return isSecret(screen.at(corner)); });
    stage_.awaitCovered(overlay_.rect, Shape::circle);
}

PALLWICK_ON_EVERY_DESKTOP(ClickThrough);

TEST(Circle, IsDraggedByACornerOutsideItsEllipse) {
    Stage stage(DesktopKind::openbox);
    const Program::Overlay overlay = stage.add();
    stage.setShape(Shape::circle);
    stage.settle();
    const PixelPoint corner{.x = overlay.rect.maxX() - 3, .y = overlay.rect.y + 3};

    stage.pointer().drag(corner, {.x = corner.x - 31, .y = corner.y + 17});

    stage.program().awaitOverlayAt({overlay.rect.x - 31, overlay.rect.y + 17, overlay.rect.width, overlay.rect.height});
}

}  // namespace
}  // namespace pallwick::desktop
