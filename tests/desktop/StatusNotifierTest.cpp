// The program's icon on the session bus (StatusNotifierItem, com.canonical.dbusmenu), and which of the two ways to a
// panel it takes.

#include <gmock/gmock.h>

#include "NotificationArea.h"
#include "PresetsFile.h"
#include "Stage.h"
#include "StatusNotifierPanel.h"

namespace pallwick::desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StatusNotifierTest : public testing::Test {
protected:
    using Host = StatusNotifierPanel::Host;

    /// Starts the program after whatever `prepare` starts.
    void start(const std::function<void(support::PrivateDesktop&)>& prepare = {}) {
        stage_.emplace(DesktopKind::openbox, Stage::Options{.prepare = prepare});
    }
    void startAfterPanel() {
        start([this](support::PrivateDesktop& desktop) { panel_.emplace(desktop); });
        panel_->awaitItem();
    }

    /// Asked again after each round trip to the program.
    void awaitProgram(const std::string& what, const std::function<bool()>& condition) {
        stage_->program().controls().awaitCondition(what, condition);
    }

    std::optional<Stage> stage_;
    std::optional<NotificationArea> area_;
    std::optional<StatusNotifierPanel> panel_;
};

TEST_F(StatusNotifierTest, SaysWhatItIs) {
    startAfterPanel();

    EXPECT_EQ(panel_->text("Category"), "ApplicationStatus");
    EXPECT_EQ(panel_->text("Id"), "pallwick");
    EXPECT_EQ(panel_->text("Title"), "Pallwick");
    EXPECT_EQ(panel_->text("Status"), "Active");
    EXPECT_EQ(panel_->text("IconName"), "");
    EXPECT_EQ(g_variant_get_boolean(panel_->property("ItemIsMenu").get()), FALSE);
    const auto toolTip = panel_->property("ToolTip");
    EXPECT_STREQ(g_variant_get_type_string(toolTip.get()), "(sa(iiay)ss)");
    const StatusNotifierPanel::Value title(g_variant_get_child_value(toolTip.get(), 2));
    EXPECT_STREQ(g_variant_get_string(title.get(), nullptr), "Pallwick");
}

TEST_F(StatusNotifierTest, HasPicturesInEverySizeWithAlphaFirst) {
    startAfterPanel();

    const auto pictures = panel_->property("IconPixmap");

    ASSERT_STREQ(g_variant_get_type_string(pictures.get()), "a(iiay)");
    std::vector<int> sides;
    for (gsize index = 0; index < g_variant_n_children(pictures.get()); ++index) {
        int width = 0;
        int height = 0;
        GVariant* bytes = nullptr;
        g_variant_get_child(pictures.get(), index, "(ii@ay)", &width, &height, &bytes);
        const StatusNotifierPanel::Value owner(bytes);
        gsize size = 0;
        const auto* pixels = static_cast<const std::uint8_t*>(g_variant_get_fixed_array(bytes, &size, 1));
        sides.push_back(width);
        ASSERT_EQ(size, static_cast<gsize>(width * height * 4));
        int solid = 0;
        for (gsize pixel = 0; pixel < size; pixel += 4) {
            // Its colours are greys, so three bytes are alike and alpha comes before them.
            EXPECT_LE(std::abs(pixels[pixel + 1] - pixels[pixel + 3]), 1);
            solid += pixels[pixel] == 255 ? 1 : 0;
        }
        EXPECT_EQ(pixels[0], 0) << "a clear corner";
        EXPECT_GT(solid, width);
    }
    EXPECT_THAT(sides, ElementsAre(16, 22, 24, 32, 48, 64));
}

TEST_F(StatusNotifierTest, HasEightEntries) {
    startAfterPanel();

    EXPECT_THAT(panel_->labels(), ElementsAre("Add Overlay", "Lock Overlays", "-", "Save Display Preset",
                                              "Load Display Preset", "-", "Clear All", "Quit"));
}

TEST_F(StatusNotifierTest, NamesTheModeThatItLeadsTo) {
    startAfterPanel();
    ASSERT_THAT(panel_->labels(), testing::SizeIs(8));

    stage_->lock();
    std::vector<std::string> announced;
    panel_->await("the changed label", [&] { return !(announced = panel_->takeAnnouncedLabels()).empty(); });
    EXPECT_THAT(announced, ElementsAre("Edit Overlays"));
    EXPECT_EQ(panel_->labels().at(1), "Edit Overlays");

    panel_->choose("Edit Overlays");
    static_cast<void>(stage_->program().controls().await("push button", "Lock"));
    panel_->await("the changed label", [&] { return !(announced = panel_->takeAnnouncedLabels()).empty(); });
    EXPECT_THAT(announced, ElementsAre("Lock Overlays"));
}

TEST_F(StatusNotifierTest, ActsWithoutTheMainWindow) {
    startAfterPanel();
    const PresetsFile presets(stage_->desktop().dataHome());
    stage_->program().closeMainWindow();

    panel_->choose("Add Overlay");
    stage_->program().awaitOverlayCount(1);
    panel_->choose("Save Display Preset");
    awaitProgram("the preset saved", [&] { return presets.exists(); });
    panel_->choose("Clear All");
    stage_->program().awaitOverlayCount(0);
    panel_->choose("Load Display Preset");
    stage_->program().awaitOverlayCount(1);
    stage_->desktop().x().release(stage_->program().process());
    panel_->choose("Quit");

    EXPECT_EQ(stage_->program().process().awaitExit(), support::ExitStatus{});
}

TEST_F(StatusNotifierTest, OpensTheMainWindowAtAClick) {
    startAfterPanel();
    stage_->program().closeMainWindow();

    panel_->activate();

    const xcb_window_t window = stage_->program().awaitMainWindow();
    stage_->desktop().x().await("it active", [&] { return stage_->windows().active() == window; });
}

TEST_F(StatusNotifierTest, ShowsItsMenuForAPanelThatShowsNone) {
    startAfterPanel();

    panel_->requestMenu();

    stage_->awaitMenu();
}

TEST_F(StatusNotifierTest, IsThereForAPanelThatComesLater) {
    start();
    stage_->settle();

    panel_.emplace(stage_->desktop());

    panel_->awaitItem();
    EXPECT_THAT(panel_->labels(), testing::SizeIs(8));
}

TEST_F(StatusNotifierTest, IsThereForAHostThatComesLaterThanTheWatcher) {
    start([this](support::PrivateDesktop& desktop) { panel_.emplace(desktop, Host::absent); });
    stage_->settle();
    ASSERT_THAT(panel_->items(), IsEmpty());

    panel_->setHost(Host::present);

    panel_->awaitItem();
}

TEST_F(StatusNotifierTest, IsThereAgainAfterACrash) {
    startAfterPanel();
    for (int times = 0; times < 3; ++times) {
        panel_.reset();
        panel_.emplace(stage_->desktop());
        panel_->awaitItem();
    }
    EXPECT_THAT(panel_->labels(), testing::SizeIs(8));
}

TEST_F(StatusNotifierTest, GoesWhenTheHostDoes) {
    startAfterPanel();

    panel_->setHost(Host::absent);
    panel_->awaitNoItem();

    panel_->setHost(Host::present);
    panel_->awaitItem();
}

/// A panel of each kind.
class TwoWays : public StatusNotifierTest {
protected:
    /// From now on every registration on the bus finds no icon in the notification area.
    void forbidTwoIcons() {
        panel_->onRegistration([this] { EXPECT_THAT(area_->icons(), IsEmpty()); });
    }
};

TEST_F(TwoWays, PrefersTheBus) {
    start([this](support::PrivateDesktop& desktop) {
        area_.emplace(desktop);
        panel_.emplace(desktop);
        forbidTwoIcons();
    });

    panel_->awaitItem();

    stage_->settle();
    EXPECT_THAT(area_->icons(), IsEmpty());
}

TEST_F(TwoWays, MovesToTheBusWhenThatIsThere) {
    start([this](support::PrivateDesktop& desktop) { area_.emplace(desktop); });
    area_->awaitIcon();

    panel_.emplace(stage_->desktop(), Host::absent);
    forbidTwoIcons();
    panel_->setHost(Host::present);

    panel_->awaitItem();
    EXPECT_THAT(area_->icons(), IsEmpty());
}

TEST_F(TwoWays, MovesToTheNotificationAreaWhenTheBusHasNoHost) {
    start([this](support::PrivateDesktop& desktop) {
        area_.emplace(desktop);
        panel_.emplace(desktop);
        forbidTwoIcons();
    });
    panel_->awaitItem();

    panel_->setHost(Host::absent);

    // The panel answers the program only while it is waited for.
    panel_->awaitNoItem();
    area_->awaitIcon();
}

TEST_F(TwoWays, MovesToTheNotificationAreaWhenThePanelOfTheBusCrashes) {
    start([this](support::PrivateDesktop& desktop) {
        area_.emplace(desktop);
        panel_.emplace(desktop);
    });
    panel_->awaitItem();

    panel_.reset();

    area_->awaitIcon();
}

TEST_F(TwoWays, StaysOnTheBusWhenANotificationAreaComes) {
    startAfterPanel();

    area_.emplace(stage_->desktop());

    stage_->settle();
    EXPECT_THAT(area_->icons(), IsEmpty());
    EXPECT_THAT(panel_->items(), testing::SizeIs(1));
}

}  // namespace
}  // namespace pallwick::desktop
