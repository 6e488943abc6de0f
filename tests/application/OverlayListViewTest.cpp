#include "ViewTestSupport.h"

#include <PallwickMac/Views/OverlayListModel.h>
#include <PallwickMac/Views/OverlayListView.h>
#include <PallwickMac/Views/SymbolButton.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QListView>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <limits>

namespace pallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

BlurOverlay overlayAt(const Rect& frame, OverlayShape shape = OverlayShape::rectangle) {
    return BlurOverlay({.frame = frame, .shape = shape});
}

std::string detailOf(const BlurOverlay& overlay) {
    OverlayListModel rows;
    rows.setOverlays({overlay});
    return rows.index(0).data(OverlayListModel::DetailRole).toString().toStdString();
}

std::vector<std::string> titles(const QAbstractItemModel& rows) {
    std::vector<std::string> texts;
    for (int row = 0; row < rows.rowCount(); ++row) {
        texts.push_back(rows.index(row, 0).data(OverlayListModel::TitleRole).toString().toStdString());
    }
    return texts;
}

TEST(OverlayListModel, DescribesAnOverlayInWholePoints) {
    EXPECT_EQ(detailOf(overlayAt({.x = -12.5, .y = 40, .width = 320.7, .height = 180})),
              "Rectangle - 320 x 180 at -12, 40");
    EXPECT_EQ(detailOf(overlayAt({.x = 0, .y = 0, .width = 120, .height = 40}, OverlayShape::circle)),
              "Circle - 120 x 40 at 0, 0");
}

TEST(OverlayListModel, CutsFractionsOffTowardsZero) {
    EXPECT_EQ(detailOf(overlayAt({.x = -0.9, .y = 0.9, .width = 1.999, .height = 2.999})), "Rectangle - 1 x 2 at 0, 0");
}

TEST(OverlayListModel, WritesLargeNumbersWithoutGrouping) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));

    const std::string detail = detailOf(overlayAt({.x = -12345, .y = 1234567, .width = 10000, .height = 2000}));

    QLocale::setDefault(before);
    EXPECT_EQ(detail, "Rectangle - 10000 x 2000 at -12345, 1234567");
}

TEST(OverlayListModel, ShowsTheStandardizedFrame) {
    BlurOverlay overlay = overlayAt({.width = 1, .height = 1});
    overlay.frame = {.x = 100, .y = 50, .width = -30, .height = -20};

    EXPECT_EQ(detailOf(overlay), "Rectangle - 30 x 20 at 70, 30");
}

TEST(OverlayListModel, HoldsNumbersBeyondAnyScreenToTheLargestInteger) {
    BlurOverlay overlay = overlayAt({.width = 1, .height = 1});
    overlay.frame = {.x = -1e300, .y = 9223372036854775808.0, .width = 1e300, .height = 5};

    EXPECT_EQ(detailOf(overlay), "Rectangle - 9223372036854775807 x 5 at -9223372036854775808, 9223372036854775807");
}

TEST(OverlayListModel, ShowsWhatIsNotANumberAsZero) {
    BlurOverlay overlay = overlayAt({.width = 1, .height = 1});
    overlay.frame.x = std::numeric_limits<double>::quiet_NaN();

    EXPECT_EQ(detailOf(overlay), "Rectangle - 1 x 1 at 0, 0");
}

TEST(OverlayListModel, TellsAScreenReaderBothLines) {
    OverlayListModel rows;

    rows.setOverlays({overlayAt({.x = 1, .y = 2, .width = 3, .height = 4})});

    EXPECT_EQ(rows.index(0).data(Qt::AccessibleTextRole).toString(),
              QStringLiteral("Overlay 1, Rectangle - 3 x 4 at 1, 2"));
}

class OverlayListPatchTest : public ::testing::Test {
protected:
    OverlayListPatchTest() {
        rows.setOverlays({a, b, c});
        inserted.clear();
        changed.clear();
    }

    BlurOverlay a = overlayAt({.x = 1, .width = 10, .height = 10});
    BlurOverlay b = overlayAt({.x = 2, .width = 10, .height = 10});
    BlurOverlay c = overlayAt({.x = 3, .width = 10, .height = 10});
    BlurOverlay d = overlayAt({.x = 4, .width = 10, .height = 10});
    OverlayListModel rows;
    QSignalSpy inserted{&rows, &QAbstractItemModel::rowsInserted};
    QSignalSpy removed{&rows, &QAbstractItemModel::rowsRemoved};
    QSignalSpy moved{&rows, &QAbstractItemModel::rowsMoved};
    QSignalSpy changed{&rows, &QAbstractItemModel::dataChanged};
    QSignalSpy reset{&rows, &QAbstractItemModel::modelReset};

    BlurOverlay withFrame(BlurOverlay overlay, const Rect& frame) {
        overlay.frame = frame;
        return overlay;
    }

    void expectRows(const std::vector<BlurOverlay>& overlays) {
        rows.setOverlays(overlays);
        EXPECT_EQ(rows.overlays(), overlays);
        EXPECT_EQ(reset.count(), 0);
    }
};

TEST_F(OverlayListPatchTest, LeavesRowsAloneThatStayAsTheyAre) {
    expectRows({a, b, c});

    EXPECT_EQ(inserted.count() + removed.count() + moved.count() + changed.count(), 0);
}

TEST_F(OverlayListPatchTest, ChangesTheOneRowWhoseTextChanges) {
    expectRows({a, withFrame(b, {.x = 7, .width = 10, .height = 10}), c});

    EXPECT_EQ(inserted.count() + removed.count() + moved.count(), 0);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
}

TEST_F(OverlayListPatchTest, LeavesTheRowAloneOfAnOverlayThatOnlyLooksDifferent) {
    BlurOverlay styled = b;
    styled.style = BlurStyle(1, "#FF0000", 1, false);

    expectRows({a, styled, c});

    EXPECT_EQ(changed.count(), 0);
}

TEST_F(OverlayListPatchTest, RenumbersTheRowsBehindARemovedOne) {
    expectRows({b, c});

    EXPECT_EQ(removed.count(), 1);
    EXPECT_EQ(inserted.count() + moved.count(), 0);
    EXPECT_EQ(changed.count(), 2);
    EXPECT_THAT(titles(rows), ElementsAre("Overlay 1", "Overlay 2"));
}

TEST_F(OverlayListPatchTest, AppendsARow) {
    expectRows({a, b, c, d});

    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(removed.count() + moved.count(), 0);
}

TEST_F(OverlayListPatchTest, TakesInAnyOtherList) {
    expectRows({c, d, a});
    expectRows({});
    expectRows({d, a});
    expectRows({b});
}

TEST_F(OverlayListPatchTest, MovesRowsThatChangePlaces) {
    const QPersistentModelIndex third(rows.index(2));

    expectRows({c, b, a});

    EXPECT_EQ(third.row(), 0);
    EXPECT_EQ(inserted.count() + removed.count(), 0);
}

TEST_F(OverlayListPatchTest, KeepsEveryRowOfARepeatedIdentity) {
    expectRows({a, a, b});
    expectRows({a, b, a});
    expectRows({a});
}

TEST_F(OverlayListPatchTest, FindsTheFirstRowOfAnIdentity) {
    expectRows({a, b, b});

    EXPECT_EQ(rows.indexOf(b.id()).row(), 1);
    EXPECT_FALSE(rows.indexOf(d.id()).isValid());
}

class OverlayListViewTest : public ModelTest {
protected:
    OverlayListViewTest() {
        view.resize(280, 300);
        showNow(view);
    }

    [[nodiscard]] QListView* list() { return view.findChild<QListView*>(); }

    [[nodiscard]] SymbolOnlyButton* button(const char* name) { return named<SymbolOnlyButton>(view, name); }

    [[nodiscard]] std::vector<int> selectedRows() {
        std::vector<int> selected;
        for (const QModelIndex& index : list()->selectionModel()->selectedIndexes()) {
            selected.push_back(index.row());
        }
        return selected;
    }

    [[nodiscard]] QPoint middleOf(int row) { return list()->visualRect(list()->model()->index(row, 0)).center(); }

    void clickRow(int row, Qt::MouseButton mouseButton = Qt::LeftButton) {
        QTest::mouseClick(list()->viewport(), mouseButton, Qt::NoModifier, middleOf(row));
    }

    void openMenuOf(int row) {
        QTest::mousePress(list()->viewport(), Qt::RightButton, Qt::NoModifier, middleOf(row));
        QContextMenuEvent event(QContextMenuEvent::Mouse, middleOf(row),
                                list()->viewport()->mapToGlobal(middleOf(row)));
        QApplication::sendEvent(list()->viewport(), &event);
        QTest::mouseRelease(list()->viewport(), Qt::RightButton, Qt::NoModifier, middleOf(row));
    }

    /// The row menu that is open; null where none is.
    [[nodiscard]] static QMenu* openMenu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

    static void chooseRemove() {
        QMenu* menu = openMenu();
        ASSERT_TRUE(menu);
        ASSERT_THAT(menu->actions(), SizeIs(1));
        ASSERT_EQ(menu->actions()[0]->text(), QStringLiteral("Remove"));
        menu->actions()[0]->trigger();
        menu->close();
    }

    OverlayListView view{model};
};

TEST_F(OverlayListViewTest, ShowsOnlyItsHeaderWithoutOverlays) {
    EXPECT_TRUE(showsText(view, "Manual Overlays"));
    EXPECT_EQ(list()->model()->rowCount(), 0);
    EXPECT_TRUE(button("Add")->isEnabled());
    EXPECT_FALSE(button("Remove")->isEnabled());
}

TEST_F(OverlayListViewTest, ExplainsItsButtons) {
    EXPECT_EQ(button("Add")->toolTip(), QStringLiteral("Add overlay"));
    EXPECT_EQ(button("Remove")->toolTip(), QStringLiteral("Remove selected overlay"));
    EXPECT_EQ(button("Remove")->accessibleDescription(), QStringLiteral("Remove selected overlay"));
    EXPECT_TRUE(button("Add")->text().isEmpty());
}

TEST_F(OverlayListViewTest, AddsAnOverlayAndShowsItSelected) {
    click(button("Add"));
    click(button("Add"));

    EXPECT_THAT(titles(*list()->model()), ElementsAre("Overlay 1", "Overlay 2"));
    EXPECT_THAT(selectedRows(), ElementsAre(1));
    EXPECT_TRUE(button("Remove")->isEnabled());
}

TEST_F(OverlayListViewTest, RemovesTheSelectedOverlay) {
    addOverlays(2);
    const UUID second = idOf(2);
    model.setSelectedOverlayID(idOf(1));

    click(button("Remove"));

    ASSERT_THAT(model.overlays(), SizeIs(1));
    EXPECT_EQ(model.overlays()[0].id(), second);
    EXPECT_TRUE(button("Remove")->isEnabled());

    click(button("Remove"));
    EXPECT_FALSE(button("Remove")->isEnabled());
}

TEST_F(OverlayListViewTest, CanRemoveTheFirstOverlayWhileNothingIsSelected) {
    addOverlays(2);

    model.setSelectedOverlayID(std::nullopt);

    EXPECT_THAT(selectedRows(), IsEmpty());
    EXPECT_TRUE(button("Remove")->isEnabled());
}

TEST_F(OverlayListViewTest, RenumbersTheRestWhenTheFirstOfThreeGoes) {
    addOverlays(3);

    model.removeOverlay(idOf(1));

    EXPECT_THAT(titles(*list()->model()), ElementsAre("Overlay 1", "Overlay 2"));
}

TEST_F(OverlayListViewTest, FollowsADraggedPanel) {
    addOverlays(1);

    dragPanelTo(1, {.x = -700.5, .y = -20});

    EXPECT_EQ(list()->model()->index(0, 0).data(OverlayListModel::DetailRole).toString(),
              QStringLiteral("Rectangle - 360 x 175 at -700, -20"));
}

TEST_F(OverlayListViewTest, PublishesTheRowAPersonClicks) {
    addOverlays(3);
    const NotificationLog log(model);

    clickRow(0);

    EXPECT_EQ(model.selectedOverlayID(), idOf(1));
    EXPECT_THAT(log.names(), ElementsAre("selectedOverlayID"));
}

TEST_F(OverlayListViewTest, PublishesTheRowReachedByKeyboard) {
    addOverlays(3);
    list()->setFocus();

    QTest::keyClick(list(), Qt::Key_Up);

    EXPECT_EQ(model.selectedOverlayID(), idOf(2));
}

TEST_F(OverlayListViewTest, ClearsTheSelectionOnEmptySpace) {
    addOverlays(1);

    QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, list()->viewport()->height() - 5));

    EXPECT_EQ(model.selectedOverlayID(), std::nullopt);
    EXPECT_THAT(selectedRows(), IsEmpty());
}

TEST_F(OverlayListViewTest, ShowsTheModelsSelectionWithoutWritingItBack) {
    addOverlays(3);
    const NotificationLog log(model);

    model.setSelectedOverlayID(idOf(1));
    EXPECT_THAT(selectedRows(), ElementsAre(0));

    model.setSelectedOverlayID(UUID::random());
    EXPECT_THAT(selectedRows(), IsEmpty());

    model.setSelectedOverlayID(std::nullopt);
    EXPECT_THAT(selectedRows(), IsEmpty());
    EXPECT_THAT(log.names(), ElementsAre("selectedOverlayID", "selectedOverlayID", "selectedOverlayID"));
}

TEST_F(OverlayListViewTest, MovesTheSelectionOnlyAsTheModelDoesWhenARowGoes) {
    addOverlays(3);
    const NotificationLog log(model);

    model.removeOverlay(idOf(3));

    EXPECT_THAT(selectedRows(), ElementsAre(0));
    EXPECT_THAT(log.names(), ElementsAre("selectedOverlayID", "statusText", "overlays"));
}

TEST_F(OverlayListViewTest, KeepsSelectionFocusAndScrollPositionOverARefresh) {
    addOverlays(20);
    list()->setFocus();
    list()->verticalScrollBar()->setValue(37);
    ASSERT_EQ(list()->verticalScrollBar()->value(), 37);
    const std::vector<int> selected = selectedRows();

    dragPanelTo(20, {.x = 3, .y = 4});

    EXPECT_EQ(list()->verticalScrollBar()->value(), 37);
    EXPECT_EQ(selectedRows(), selected);
    EXPECT_EQ(QApplication::focusWidget(), list());
}

TEST_F(OverlayListViewTest, ScrollsToANewlySelectedRow) {
    addOverlays(20);
    list()->verticalScrollBar()->setValue(0);

    model.setSelectedOverlayID(idOf(15));

    EXPECT_TRUE(list()->viewport()->rect().contains(list()->visualRect(list()->model()->index(14, 0))));
}

TEST_F(OverlayListViewTest, LeavesTheSelectionAloneWhenTheSecondaryButtonIsPressed) {
    addOverlays(2);

    clickRow(0, Qt::RightButton);

    EXPECT_EQ(model.selectedOverlayID(), idOf(2));
    EXPECT_THAT(selectedRows(), ElementsAre(1));
}

TEST_F(OverlayListViewTest, RemovesTheOverlayUnderThePointerByItsMenu) {
    addOverlays(3);
    const UUID second = idOf(2);
    const UUID third = idOf(3);

    openMenuOf(0);
    EXPECT_EQ(model.selectedOverlayID(), third);
    chooseRemove();

    ASSERT_THAT(model.overlays(), SizeIs(2));
    EXPECT_EQ(model.overlays()[0].id(), second);
    EXPECT_EQ(model.overlays()[1].id(), third);
    EXPECT_EQ(model.statusText(), QStringLiteral("Overlay removed"));
}

TEST_F(OverlayListViewTest, RemovesThroughTheSelection) {
    addOverlays(3);
    const UUID second = idOf(2);
    std::vector<std::optional<UUID>> selections;
    QObject::connect(&model, &AppModel::selectedOverlayIDChanged, &view,
                     [&] { selections.push_back(model.selectedOverlayID()); });

    openMenuOf(1);
    chooseRemove();

    EXPECT_THAT(selections, ElementsAre(second, idOf(1)));
}

TEST_F(OverlayListViewTest, RemovesNothingWhenTheOverlayWentWhileItsMenuWasOpen) {
    addOverlays(2);
    const UUID second = idOf(2);
    openMenuOf(0);

    model.removeOverlay(idOf(1));
    chooseRemove();

    ASSERT_THAT(model.overlays(), SizeIs(1));
    EXPECT_EQ(model.overlays()[0].id(), second);
}

TEST_F(OverlayListViewTest, HasNoMenuOnEmptySpace) {
    addOverlays(1);
    const QPoint empty(20, list()->viewport()->height() - 5);
    QContextMenuEvent event(QContextMenuEvent::Mouse, empty, list()->viewport()->mapToGlobal(empty));

    QApplication::sendEvent(list()->viewport(), &event);

    EXPECT_EQ(openMenu(), nullptr);
}

TEST_F(OverlayListViewTest, OpensTheMenuOfTheCurrentRowByShiftF10) {
    addOverlays(3);
    list()->setFocus();

    QTest::keyClick(list(), Qt::Key_F10, Qt::ShiftModifier);
    const UUID third = idOf(3);
    chooseRemove();

    ASSERT_THAT(model.overlays(), SizeIs(2));
    EXPECT_NE(model.overlays()[0].id(), third);
    EXPECT_NE(model.overlays()[1].id(), third);
}

TEST_F(OverlayListViewTest, OpensTheMenuOfTheCurrentRowByTheMenuKey) {
    addOverlays(2);
    list()->setFocus();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(0, 0), QPoint(0, 0));

    QApplication::sendEvent(list(), &event);

    ASSERT_TRUE(openMenu());
    openMenu()->close();
}

TEST_F(OverlayListViewTest, ChoosesAMenusEntryByKeyboard) {
    addOverlays(2);
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_TRUE(openMenu());

    QTest::keyClick(openMenu(), Qt::Key_Down);
    QTest::keyClick(openMenu(), Qt::Key_Return);

    EXPECT_THAT(model.overlays(), SizeIs(1));
}

}  // namespace
}  // namespace pallwick
