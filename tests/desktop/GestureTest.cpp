// Delete control and resize handle under a real mouse: where they begin and end, and which gestures count.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::MouseButton;
using support::PixelPoint;
using support::PixelRect;
using support::Program;

class Gesture : public testing::Test {
protected:
    Gesture() : stage_(DesktopKind::openbox), overlay_(stage_.add()) {}

    /// A root point from one of the overlay's own.
    [[nodiscard]] PixelPoint at(int x, int y) const { return {.x = overlay_.rect.x + x, .y = overlay_.rect.y + y}; }

    [[nodiscard]] PixelRect movedBy(int x, int y) const {
        return {overlay_.rect.x + x, overlay_.rect.y + y, overlay_.rect.width, overlay_.rect.height};
    }
    [[nodiscard]] PixelRect grownBy(int x, int y) const {
        return {overlay_.rect.x, overlay_.rect.y, overlay_.rect.width + x, overlay_.rect.height + y};
    }

    void dragFrom(PixelPoint from, int x, int y) { stage_.pointer().drag(from, {.x = from.x + x, .y = from.y + y}); }

    PixelRect settledRect() {
        stage_.settle();
        return stage_.rectOf(overlay_.window);
    }

    Stage stage_;
    /// 360x200 at scale 1.
    Program::Overlay overlay_;
};

TEST_F(Gesture, AClickInTheMiddleOfTheDeleteControlDeletes) {
    stage_.pointer().click(stage_.deleteControl(overlay_.rect));

    stage_.program().awaitOverlayCount(0);
    stage_.awaitStatus("Overlay removed");
}

TEST_F(Gesture, TheDeleteControlDeletesAtThePressAlready) {
    stage_.pointer().moveTo(stage_.deleteControl(overlay_.rect));
    stage_.pointer().press();

    stage_.program().awaitOverlayCount(0);
    stage_.pointer().release();
}

struct Edge {
    const char* name;
    int x;
    int y;
    bool isInside;
};

class DeleteControlEdge : public Gesture, public testing::WithParamInterface<Edge> {};

TEST_P(DeleteControlEdge, IsHalfOpen) {
    // A press outside begins a move, so that the two can be told apart.
    dragFrom(at(GetParam().x, GetParam().y), 40, 30);
    stage_.settle();

    EXPECT_EQ(stage_.program().overlays().empty(), GetParam().isInside);
    EXPECT_TRUE(GetParam().isInside || stage_.rectOf(overlay_.window) == movedBy(40, 30));
}

INSTANTIATE_TEST_SUITE_P(Edges, DeleteControlEdge,
                         testing::Values(Edge{"topLeft", 8, 8, true}, Edge{"leftOfIt", 7, 20, false},
                                         Edge{"aboveIt", 20, 7, false}, Edge{"bottomRight", 33, 33, true},
                                         Edge{"rightOfIt", 34, 20, false}, Edge{"belowIt", 20, 34, false}),
                         [](const auto& instance) { return std::string(instance.param.name); });

class ResizeHandleEdge : public Gesture, public testing::WithParamInterface<Edge> {};

TEST_P(ResizeHandleEdge, IsHalfOpen) {
    dragFrom(at(GetParam().x, GetParam().y), 40, 30);

    EXPECT_EQ(settledRect(), GetParam().isInside ? grownBy(40, 30) : movedBy(40, 30));
}

INSTANTIATE_TEST_SUITE_P(Edges, ResizeHandleEdge,
                         testing::Values(Edge{"topLeft", 326, 166, true}, Edge{"leftOfIt", 325, 180, false},
                                         Edge{"aboveIt", 340, 165, false}, Edge{"bottomRight", 353, 193, true},
                                         Edge{"rightOfIt", 354, 180, false}, Edge{"belowIt", 340, 194, false}),
                         [](const auto& instance) { return std::string(instance.param.name); });

class OtherButton : public Gesture, public testing::WithParamInterface<MouseButton> {};

TEST_P(OtherButton, NeitherDeletesNorMovesNorResizes) {
    stage_.pointer().click(stage_.deleteControl(overlay_.rect), GetParam());
    stage_.pointer().drag(overlay_.rect.centre(), at(100, 60), 4, GetParam());
    stage_.pointer().drag(stage_.resizeHandle(overlay_.rect), at(400, 240), 4, GetParam());

    EXPECT_EQ(settledRect(), overlay_.rect);
    EXPECT_EQ(stage_.program().overlays().size(), 1U);
}

TEST_P(OtherButton, DoesNotEndADragOfTheLeftOne) {
    stage_.pointer().moveTo(at(180, 100));
    stage_.pointer().press();
    stage_.pointer().press(GetParam());
    stage_.pointer().release(GetParam());
    stage_.pointer().glideTo(at(210, 120));
    stage_.pointer().release();

    EXPECT_EQ(settledRect(), movedBy(30, 20));
}

INSTANTIATE_TEST_SUITE_P(Buttons, OtherButton,
                         testing::Values(MouseButton::middle, MouseButton::right, MouseButton::wheelUp,
                                         MouseButton::wheelDown),
                         [](const auto& instance) {
                             return "button" + std::to_string(static_cast<int>(instance.param));
                         });

TEST_F(Gesture, ADragFollowsThePointerBeyondTheScreensEdgeAndEndsThere) {
    dragFrom(at(180, 100), -960, 0);
    stage_.pointer().moveTo(at(100, 100));

    EXPECT_EQ(settledRect(), movedBy(-960, 0));
}

TEST_F(Gesture, AResizeEndsAtAReleaseOutsideTheOverlay) {
    // Far up and left of the least size the pointer is outside; the drag goes on until the release there.
    stage_.pointer().drag(stage_.resizeHandle(overlay_.rect), at(-200, -100));
    stage_.program().awaitOverlayAt({overlay_.rect.x, overlay_.rect.y, 120, 40});
    stage_.pointer().moveTo(at(300, 150));

    EXPECT_EQ(settledRect(), (PixelRect{overlay_.rect.x, overlay_.rect.y, 120, 40}));
}

TEST_F(Gesture, ADragEndsWhenTheOverlayIsLockedInBetween) {
    stage_.pointer().moveTo(at(180, 100));
    stage_.pointer().press();
    stage_.pointer().glideTo(at(200, 110));
    stage_.program().awaitOverlayAt(movedBy(20, 10));

    stage_.lock();
    stage_.pointer().glideTo(at(300, 200));
    const PixelRect whileLocked = settledRect();
    stage_.unlock();
    stage_.pointer().glideTo(at(100, 100));
    const PixelRect unlockedAgain = settledRect();
    stage_.pointer().release();

    EXPECT_EQ(whileLocked, movedBy(20, 10));
    EXPECT_EQ(unlockedAgain, movedBy(20, 10));
}

TEST_F(Gesture, ADragEndsWhenTheKeyboardLocksInBetween) {
    stage_.windows().activate(stage_.mainWindow());
    const support::Accessible button = stage_.program().controls().await("push button", "Lock");
    button.grabFocus();
    stage_.program().controls().awaitCondition("Lock focused",
                                               [&] { return button.has(support::AccessibleState::focused); });
    stage_.pointer().moveTo(at(180, 100));
    stage_.pointer().press();
    stage_.pointer().glideTo(at(200, 110));
    stage_.program().awaitOverlayAt(movedBy(20, 10));

    stage_.desktop().keyboard().press(XK_space);
    stage_.awaitStatus("Overlays locked; clicks pass through");
    stage_.pointer().glideTo(at(300, 200));
    stage_.pointer().release();

    EXPECT_EQ(settledRect(), movedBy(20, 10));
}

TEST_F(Gesture, ADragEndsWhenTheOverlayIsRemovedInBetween) {
    stage_.pointer().moveTo(at(180, 100));
    stage_.pointer().press();
    stage_.pointer().glideTo(at(200, 110));
    stage_.program().awaitOverlayAt(movedBy(20, 10));

    stage_.operate("Clear");
    stage_.program().awaitOverlayCount(0);
    stage_.pointer().glideTo(at(300, 200));
    const Program::Overlay next = stage_.add();
    stage_.pointer().glideTo(at(150, 90));
    stage_.pointer().release();
    stage_.settle();

    EXPECT_EQ(stage_.rectOf(next.window), overlay_.rect);
}

}  // namespace
}  // namespace pallwick::desktop
