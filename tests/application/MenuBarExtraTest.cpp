#include "ViewTestSupport.h"

#include <PallwickMac/App/MenuBarExtra.h>
#include <PallwickMac/App/OverlayMenu.h>
#include <PallwickMac/Views/SymbolIcon.h>

#include <QSignalSpy>
#include <QTest>

namespace pallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class MenuBarExtraTest : public ModelTest {
protected:
    [[nodiscard]] const StatusItemDescription& shown() const { return platform.statusItem()->description(); }

    /// As the panel has them, with a dash for a separator.
    [[nodiscard]] std::vector<std::string> labels() const {
        std::vector<std::string> labels;
        for (const StatusItemEntry& entry : shown().menu) {
            labels.push_back(entry.isSeparator ? "-" : entry.label.toStdString());
        }
        return labels;
    }

    MenuBarExtra extra{model, platform, statusIcon()};
};

TEST_F(MenuBarExtraTest, HasEightEntries) {
    EXPECT_EQ(shown().title, QStringLiteral("Pallwick"));
    EXPECT_FALSE(shown().icon.isNull());
    EXPECT_THAT(labels(), ElementsAre("Add Overlay", "Lock Overlays", "-", "Save Display Preset", "Load Display Preset",
                                      "-", "Clear All", "Quit"));
}

TEST_F(MenuBarExtraTest, HasNoKeys) {
    for (const QAction* action : extra.menu().actions()) {
        EXPECT_TRUE(action->shortcut().isEmpty()) << action->text().toStdString();
    }
}

TEST_F(MenuBarExtraTest, AddsAnOverlay) {
    platform.statusItem()->choose(0);

    EXPECT_THAT(model.overlays(), SizeIs(1));
}

TEST_F(MenuBarExtraTest, NamesTheModeThatItLeadsToTogetherWithTheOverlayMenu) {
    const OverlayMenu menu(model);

    platform.statusItem()->choose(1);

    EXPECT_FALSE(model.editMode());
    EXPECT_EQ(labels().at(1), "Edit Overlays");
    EXPECT_EQ(menu.actions().at(1)->text(), QStringLiteral("Edit Overlays"));

    menu.actions().at(1)->trigger();

    EXPECT_TRUE(model.editMode());
    EXPECT_EQ(labels().at(1), "Lock Overlays");
}

TEST_F(MenuBarExtraTest, SavesForTheDisplay) {
    platform.statusItem()->choose(3);

    EXPECT_EQ(model.statusText(), QStringLiteral("Could not save display preset"));
}

TEST_F(MenuBarExtraTest, LoadsForTheDisplay) {
    platform.statusItem()->choose(4);

    EXPECT_EQ(model.statusText(), QStringLiteral("Could not load display preset"));
}

TEST_F(MenuBarExtraTest, ClearsAllOverlays) {
    addOverlays(2);

    platform.statusItem()->choose(6);

    EXPECT_THAT(model.overlays(), IsEmpty());
}

TEST_F(MenuBarExtraTest, DoesNothingForSeparatorsAndEntriesThatThereAreNot) {
    addOverlays(1);
    const NotificationLog log(model);

    for (const int index : {-1, 2, 5, 8}) {
        platform.statusItem()->choose(index);
    }

    EXPECT_THAT(log.names(), IsEmpty());
}

TEST_F(MenuBarExtraTest, ShowsItsMenuWhereTheDesktopDoesNot) {
    platform.statusItem()->requestMenu();

    EXPECT_TRUE(extra.menu().isVisible());
}

TEST_F(MenuBarExtraTest, PassesAClickOn) {
    QSignalSpy activated(&extra, &MenuBarExtra::activated);

    platform.statusItem()->click({.id = {}, .time = 7});

    ASSERT_EQ(activated.count(), 1);
    EXPECT_EQ(activated.front().front().value<ActivationToken>().time, 7U);
}

TEST_F(MenuBarExtraTest, FollowsTheColourScheme) {
    const QImage before = shown().icon.pixmap(32, 32).toImage();

    const ApplicationPalette dark(darkPalette());

    EXPECT_GE(platform.statusItem()->iconChanges(), 1);
    EXPECT_NE(shown().icon.pixmap(32, 32).toImage(), before);
}

TEST(MenuBarExtra, TakesItsIconAwayWithIt) {
    FakePlatform platform;
    AppModel model(platform, withoutPresets);
    auto extra = std::make_unique<MenuBarExtra>(model, platform, statusIcon());
    ASSERT_NE(platform.statusItem(), nullptr);

    extra.reset();

    EXPECT_EQ(platform.statusItem(), nullptr);
}

}  // namespace
}  // namespace pallwick
