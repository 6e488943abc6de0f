#include "ViewTestSupport.h"

#include <PallwickMac/App/OverlayMenu.h>

namespace pallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class OverlayMenuTest : public ModelTest {
protected:
    [[nodiscard]] std::vector<std::string> labels() const {
        std::vector<std::string> labels;
        for (const QAction* action : menu.actions()) {
            labels.push_back(action->text().toStdString());
        }
        return labels;
    }

    [[nodiscard]] QAction* action(int index) const { return menu.actions().at(index); }

    OverlayMenu menu{model};
};

TEST_F(OverlayMenuTest, HasThreeEntriesWithAKeyEach) {
    EXPECT_EQ(menu.title(), QStringLiteral("Overlay"));
    EXPECT_THAT(labels(), ElementsAre("Add Overlay", "Lock Overlays", "Clear All"));
    EXPECT_EQ(action(0)->shortcut(), QKeySequence(QStringLiteral("Ctrl+N")));
    EXPECT_EQ(action(1)->shortcut(), QKeySequence(QStringLiteral("Ctrl+E")));
    EXPECT_EQ(action(2)->shortcut(), QKeySequence(QStringLiteral("Ctrl+Backspace")));
}

TEST_F(OverlayMenuTest, ActsOnceForAKeyThatIsHeldDown) {
    for (const QAction* entry : menu.actions()) {
        EXPECT_FALSE(entry->autoRepeat()) << entry->text().toStdString();
    }
}

TEST_F(OverlayMenuTest, AddsAnOverlay) {
    action(0)->trigger();

    EXPECT_THAT(model.overlays(), SizeIs(1));
}

TEST_F(OverlayMenuTest, AlwaysNamesTheModeThatItLeadsTo) {
    action(1)->trigger();
    EXPECT_FALSE(model.editMode());
    EXPECT_THAT(labels(), ElementsAre("Add Overlay", "Edit Overlays", "Clear All"));

    model.toggleEditMode();
    EXPECT_THAT(labels(), ElementsAre("Add Overlay", "Lock Overlays", "Clear All"));
}

TEST_F(OverlayMenuTest, ClearsAllOverlays) {
    addOverlays(2);

    action(2)->trigger();

    EXPECT_THAT(model.overlays(), IsEmpty());
}

}  // namespace
}  // namespace pallwick
