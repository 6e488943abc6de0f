// The program's icon in a panel's notification area (System Tray Protocol, XEmbed).

#include <gmock/gmock.h>

#include "NotificationArea.h"
#include "PresetsFile.h"
#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Colour;
using support::difference;
using support::MouseButton;
using support::PixelArea;
using support::PixelRect;
using support::Screenshot;

constexpr Colour white{.red = 255, .green = 255, .blue = 255};
constexpr Colour black{};

/// Pixels of the icon itself on that ground: far from it in either direction.
int linesIn(const Screenshot& screen, const PixelRect& icon, Colour ground) {
    constexpr int clear = 100;
    return screen.count(PixelArea::rectangle(icon), [ground](Colour seen) { return difference(seen, ground) > clear; });
}

class NotificationAreaTest : public testing::Test {
protected:
    void start() {
        stage_.emplace(DesktopKind::openbox,
                       Stage::Options{.prepare = [this](support::PrivateDesktop& desktop) { openArea(desktop); }});
    }

    void openArea(support::PrivateDesktop& desktop) { area_.emplace(desktop, options_); }

    void clickIcon(MouseButton button) { stage_->pointer().click(area_->iconRect().centre(), button); }

    /// Opens the menu and clicks one of its six commands, by a real click each.
    void choose(int command) {
        clickIcon(MouseButton::right);
        const PixelRect menu = stage_->rectOf(stage_->awaitMenu());
        // Six commands of one height, and two separators so thin that the middle of a sixth is in the command.
        stage_->pointer().click({.x = menu.centre().x, .y = menu.y + menu.height * (2 * command + 1) / 12});
    }

    /// The icon drawn at its present size on that ground.
    void expectDrawn(Colour ground) {
        const PixelRect icon = area_->iconRect();
        stage_->desktop().awaitPixels("the icon at " + support::describe(icon), [&](const Screenshot& screen) {
            return linesIn(screen, icon, ground) > icon.width;
        });
        const Screenshot screen = stage_->desktop().screenshot();
        EXPECT_EQ(screen.at({.x = icon.x, .y = icon.y}), ground) << "the panel's own colour around the icon";
        EXPECT_EQ(screen.at({.x = icon.maxX(), .y = icon.maxY()}), ground) << "nothing beside the icon";
        // Symmetric about its middle, more or less: it fills its square.
        const PixelRect upper{.x = icon.x, .y = icon.y, .width = icon.width, .height = icon.height / 2};
        EXPECT_GT(linesIn(screen, upper, ground), icon.width / 4);
    }

    NotificationArea::Options options_;
    std::optional<Stage> stage_;
    std::optional<NotificationArea> area_;
};

TEST_F(NotificationAreaTest, HasTheIconWhereItWasThereFirst) {
    start();

    area_->awaitIcon();
    EXPECT_EQ(stage_->windows().text(area_->awaitIcon(), "_NET_WM_NAME"), "Pallwick");
    expectDrawn(options_.ground);
}

TEST_F(NotificationAreaTest, HasTheIconWhereItComesLater) {
    stage_.emplace(DesktopKind::openbox);
    stage_->settle();

    openArea(stage_->desktop());

    area_->awaitIcon();
    expectDrawn(options_.ground);
}

TEST_F(NotificationAreaTest, HasTheIconAgainAfterACrash) {
    start();
    for (int times = 0; times < 3; ++times) {
        const xcb_window_t icon = area_->awaitIcon();

        area_.reset();

        stage_->desktop().x().await("the icon gone with its panel", [&] { return !stage_->windows().rect(icon); });
        openArea(stage_->desktop());
    }
    area_->awaitIcon();
    expectDrawn(options_.ground);
}

TEST_F(NotificationAreaTest, HasTheIconAgainAfterItWasClosed) {
    start();
    const xcb_window_t icon = area_->awaitIcon();

    area_->close();

    stage_->desktop().x().await("the icon gone with its panel", [&] { return !stage_->windows().rect(icon); });
    area_.reset();
    openArea(stage_->desktop());
    area_->awaitIcon();
}

TEST_F(NotificationAreaTest, HandsTheIconOverToTheNextOne) {
    start();
    area_->awaitIcon();

    NotificationArea next(stage_->desktop(), {.iconSide = 32});

    next.awaitIcon();
    area_->awaitNoIcon();
}

TEST_F(NotificationAreaTest, LeavesNoWindowOfTheIconAmongTheClientsInACrash) {
    start();
    const xcb_window_t icon = area_->awaitIcon();
    const std::vector<xcb_window_t> before = stage_->windows().clients();

    area_.reset();

    stage_->desktop().x().await("the icon gone with its panel", [&] {
        EXPECT_EQ(stage_->windows().clients(), before);
        return !stage_->windows().rect(icon);
    });
}

TEST_F(NotificationAreaTest, ShowsTheIconAtEverySize) {
    start();
    for (const int side : {16, 48, 22, 64}) {
        area_->awaitIcon();
        area_->setIconSide(side);
        expectDrawn(options_.ground);
    }
}

class OnGround : public NotificationAreaTest, public testing::WithParamInterface<Colour> {};

TEST_P(OnGround, ShowsALegibleIcon) {
    options_.ground = GetParam();
    start();

    area_->awaitIcon();

    expectDrawn(GetParam());
}

INSTANTIATE_TEST_SUITE_P(LightAndDark, OnGround, testing::Values(white, black),
                         [](const auto& instance) { return instance.param == white ? "white" : "black"; });

TEST_F(NotificationAreaTest, GetsClearPixelsWhereItWantsThem) {
    options_.wantsAlpha = true;
    start();
    const xcb_window_t icon = area_->awaitIcon();
    ASSERT_EQ(stage_->windows().depth(icon), 32);
    const auto side = static_cast<std::uint16_t>(options_.iconSide);

    std::vector<int> alphas;
    stage_->desktop().x().listenToPixels();
    stage_->desktop().x().await("an icon with solid and clear pixels", [&] {
        const support::Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(
            stage_->desktop().x().forPictures(),
            xcb_get_image(stage_->desktop().x().forPictures(), XCB_IMAGE_FORMAT_Z_PIXMAP, icon, 0, 0, side, side, ~0U),
            nullptr));
        alphas.clear();
        for (int pixel = 0; image && pixel < side * side; ++pixel) {
            alphas.push_back(xcb_get_image_data(image.get())[pixel * 4 + 3]);
        }
        return std::ranges::count(alphas, 255) > side;
    });

    EXPECT_EQ(alphas.front(), 0);
    EXPECT_EQ(alphas.back(), 0);
}

TEST_F(NotificationAreaTest, BringsTheMainWindowToTheFrontAtAClick) {
    start();
    area_->awaitIcon();
    const auto secret = stage_->openSecret("Secret", stage_->rectOf(stage_->mainWindow()));
    stage_->windows().activate(secret->window());

    clickIcon(MouseButton::left);

    stage_->desktop().x().await("the main window in front", [&] {
        return stage_->windows().active() == stage_->mainWindow() &&
               stage_->windows().isAbove(stage_->mainWindow(), secret->window());
    });
}

TEST_F(NotificationAreaTest, OpensTheClosedMainWindowAtAClick) {
    start();
    area_->awaitIcon();
    const PixelRect before = stage_->rectOf(stage_->mainWindow());
    stage_->program().closeMainWindow();

    clickIcon(MouseButton::left);

    const xcb_window_t window = stage_->program().awaitMainWindow();
    stage_->desktop().x().await("it active", [&] { return stage_->windows().active() == window; });
    EXPECT_EQ(stage_->rectOf(window).width, before.width);
    EXPECT_EQ(stage_->rectOf(window).height, before.height);
}

TEST_F(NotificationAreaTest, OffersAMenuThatActsWithoutTheMainWindow) {
    start();
    area_->awaitIcon();
    const PresetsFile presets(stage_->desktop().dataHome());
    stage_->program().closeMainWindow();

    choose(0);
    const auto overlay = stage_->program().awaitOverlayCount(1).front();
    choose(1);
    stage_->desktop().x().await("the overlay locked", [&] {
        stage_->pointer().moveTo(overlay.rect.centre());
        return windowUnderPointer(stage_->desktop().x()) != overlay.window;
    });
    choose(2);
    stage_->desktop().x().await("the preset saved", [&] {
        stage_->desktop().x().roundTrip();
        static_cast<void>(stage_->program().controls().application().role());
        return presets.exists();
    });
    choose(4);
    stage_->program().awaitOverlayCount(0);
    choose(3);
    stage_->program().awaitOverlayCount(1);
    stage_->desktop().x().release(stage_->program().process());
    choose(5);

    EXPECT_EQ(stage_->program().process().awaitExit(), support::ExitStatus{});
}

TEST_F(NotificationAreaTest, DoesWithoutABus) {
    stage_.emplace(DesktopKind::openbox,
                   Stage::Options{.environment = {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"},
                                                  {"AT_SPI_BUS_ADDRESS", "unix:path=/nonexistent"}},
                                  .prepare = [this](support::PrivateDesktop& desktop) { openArea(desktop); }});

    area_->awaitIcon();

    expectDrawn(options_.ground);
}

}  // namespace
}  // namespace pallwick::desktop
