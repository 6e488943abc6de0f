#include <PallwickMac/Platform/Null/NullPlatform.h>

#include <gmock/gmock.h>

namespace pallwick {
namespace {

using ::testing::IsEmpty;

/// Fails the test when it is told or asked anything.
class UntouchedContent final : public OverlaySurfaceContent {
public:
    void draw(QPainter& /*painter*/) override { ADD_FAILURE() << "drawn"; }
    void mouseEntered() override { ADD_FAILURE() << "entered"; }
    void mouseExited() override { ADD_FAILURE() << "exited"; }
    void mouseDown(const PointerEvent& /*event*/) override { ADD_FAILURE() << "pressed"; }
    void mouseDragged(const PointerEvent& /*event*/) override { ADD_FAILURE() << "dragged"; }
    void mouseUp() override { ADD_FAILURE() << "released"; }
    void gestureCancelled() override { ADD_FAILURE() << "cancelled"; }
};

TEST(NullPlatform, HasNoScreenAndNoApplication) {
    const NullPlatform platform;

    EXPECT_THAT(platform.screens(), IsEmpty());
    EXPECT_EQ(platform.screenFrames().size(), 0U);
    EXPECT_EQ(platform.onScreenWindows(), std::nullopt);
    EXPECT_EQ(platform.onScreenWindow(1), std::nullopt);
    EXPECT_EQ(platform.frontmostProcessID(), std::nullopt);
    EXPECT_EQ(platform.frontmostBundleID(), std::nullopt);
    EXPECT_EQ(platform.pointerLocation(), Point());
    EXPECT_EQ(platform.capabilities(), PlatformCapabilities());
}

TEST(NullPlatform, MakesSurfacesThatKeepTheirFrameAndNeverShow) {
    NullPlatform platform;
    UntouchedContent content;
    const std::unique_ptr<OverlaySurface> surface = platform.makeOverlaySurface(content);
    const Rect frame{.x = 1, .y = 2, .width = 300, .height = 200};

    surface->setFrame(frame);
    surface->setEffectLayer({.alpha = 0.5});
    surface->setCursorRegions({CursorRegion{}});
    surface->setIgnoresMouseEvents(true);
    surface->setAccessibleName(QStringLiteral("Name"));
    surface->setNeedsDisplay();
    surface->show();

    EXPECT_EQ(surface->frame(), frame);
    EXPECT_FALSE(surface->isVisible());
}

TEST(NullPlatform, HasAStatusItemThatNeverShows) {
    NullPlatform platform;
    const std::unique_ptr<StatusItem> item =
        platform.makeStatusItem({.title = QStringLiteral("Pallwick"), .toolTip = {}, .icon = {}, .menu = {}});

    item->setMenu({{.label = QStringLiteral("Quit")}});

    EXPECT_FALSE(item->isShown());
}

TEST(NullPlatform, HasNoOtherInstance) {
    NullPlatform platform;

    EXPECT_TRUE(platform.claimInstance({}));
}

}  // namespace
}  // namespace pallwick
