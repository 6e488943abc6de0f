#include "ViewTestSupport.h"

#include <PallwickMac/Views/StyleInspectorView.h>
#include <PallwickMac/Views/SymbolButton.h>
#include <PallwickMac/Views/TextLabel.h>
#include <PallwickMac/Views/WindowPicker.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QLabel>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <utility>

namespace pallwick {
namespace {

using ::testing::ElementsAre;

WindowRecord window(std::uint32_t number, const std::string& owner, const std::string& title) {
    return {.layer = 0,
            .number = number,
            .ownerProcessID = 512,
            .ownerName = owner,
            .title = title,
            .bounds = Rect{.x = 100, .y = 50, .width = 400, .height = 300}};
}

class WindowAttachmentSectionTest : public ModelTest {
protected:
    WindowAttachmentSectionTest() {
        platform.setOnScreenWindows({{window(7, "Nova", "Notes"), window(8, "Mint", "")}});
        model.refreshWindows();
        addOverlays(1);
        view.resize(440, 600);
        showNow(view);
    }

    [[nodiscard]] WindowPicker* picker() { return named<WindowPicker>(view, "Attach to"); }
    [[nodiscard]] SymbolButton* button(const char* name) { return named<SymbolButton>(view, name); }

    [[nodiscard]] std::vector<std::string> entries() {
        std::vector<std::string> texts;
        for (int i = 0; i < picker()->count(); ++i) {
            texts.push_back(picker()->itemText(i).toStdString());
        }
        return texts;
    }

    [[nodiscard]] TextLabel* attachedLine() {
        for (TextLabel* label : view.findChildren<TextLabel*>()) {
            if (label->text().startsWith(QStringLiteral("Attached to "))) {
                return label;
            }
        }
        return nullptr;
    }

    void tick() {
        QMetaObject::invokeMethod(model.findChild<QTimer*>(), "timeout");
        QCoreApplication::sendPostedEvents();
    }

    StyleInspectorView view{model};
};

TEST_F(WindowAttachmentSectionTest, OffersNoWindowAndThenThoseOnTheScreen) {
    EXPECT_THAT(entries(), ElementsAre("Choose window", "Mint", "Nova - Notes"));
    EXPECT_EQ(picker()->currentText(), QStringLiteral("Choose window"));
    EXPECT_TRUE(showsText(view, "Window"));
    EXPECT_EQ(picker()->width(), 190);
}

TEST_F(WindowAttachmentSectionTest, AttachesOnlyToAChosenWindowAndDetachesOnlyAnAttachedOverlay) {
    EXPECT_FALSE(button("Attach")->isEnabled());
    EXPECT_FALSE(button("Detach")->isEnabled());

    model.setSelectedWindowID(7);
    EXPECT_TRUE(button("Attach")->isEnabled());
    EXPECT_FALSE(button("Detach")->isEnabled());

    click(button("Attach"));
    EXPECT_TRUE(model.overlays()[0].windowAttachment);
    EXPECT_TRUE(button("Detach")->isEnabled());

    click(button("Detach"));
    EXPECT_FALSE(model.overlays()[0].windowAttachment);
    EXPECT_FALSE(button("Detach")->isEnabled());
}

TEST_F(WindowAttachmentSectionTest, ChoosesAWindowByThePicker) {
    QTest::keyClick(picker(), Qt::Key_End);
    EXPECT_EQ(model.selectedWindowID(), 7U);

    QTest::keyClick(picker(), Qt::Key_Home);
    EXPECT_EQ(model.selectedWindowID(), std::nullopt);
}

TEST_F(WindowAttachmentSectionTest, ShowsTheWindowThatTheModelHasChosen) {
    model.setSelectedWindowID(8);
    EXPECT_EQ(picker()->currentText(), QStringLiteral("Mint"));

    model.setSelectedWindowID(99);
    EXPECT_EQ(picker()->currentText(), QStringLiteral("Choose window"));
    EXPECT_EQ(model.selectedWindowID(), 99U) << "showing a choice does not change it";
}

TEST_F(WindowAttachmentSectionTest, AsksForTheWindowsAnewByItsButton) {
    auto* refresh = named<SymbolOnlyButton>(view, "Refresh");
    EXPECT_EQ(refresh->toolTip(), QStringLiteral("Refresh windows"));
    model.setSelectedWindowID(7);
    platform.setOnScreenWindows({{window(9, "Zeta", "New")}});

    click(refresh);

    EXPECT_THAT(entries(), ElementsAre("Choose window", "Zeta - New"));
    EXPECT_EQ(model.selectedWindowID(), std::nullopt);
    EXPECT_EQ(picker()->currentText(), QStringLiteral("Choose window"));
    EXPECT_FALSE(button("Attach")->isEnabled());
}

TEST_F(WindowAttachmentSectionTest, NamesTheAttachedWindowOnlyWhileThereIsOne) {
    EXPECT_EQ(attachedLine(), nullptr);

    model.setSelectedWindowID(7);
    model.attachSelectedOverlayToWindow();
    EXPECT_TRUE(showsText(view, "Attached to Nova - Notes"));

    addOverlays(1);
    EXPECT_FALSE(showsText(view, "Attached to Nova - Notes")) << "the new overlay is selected and not attached";

    model.setSelectedOverlayID(idOf(1));
    EXPECT_TRUE(showsText(view, "Attached to Nova - Notes"));

    model.detachSelectedOverlayFromWindow();
    EXPECT_FALSE(showsText(view, "Attached to Nova - Notes"));
}

TEST_F(WindowAttachmentSectionTest, NamesAnAttachedWindowWithoutATitleByItsOwner) {
    model.setSelectedWindowID(8);

    model.attachSelectedOverlayToWindow();

    EXPECT_TRUE(showsText(view, "Attached to Mint"));
}

TEST_F(WindowAttachmentSectionTest, GivesALongNameTwoLinesAtTheMost) {
    model.setSelectedWindowID(7);
    model.attachSelectedOverlayToWindow();
    QCoreApplication::sendPostedEvents();
    const int oneLine = attachedLine()->height();

    platform.setOnScreenWindows({{window(7, "Nova", std::string(4096, 'x'))}});
    model.refreshWindows();
    model.attachSelectedOverlayToWindow();
    QCoreApplication::sendPostedEvents();

    EXPECT_GT(attachedLine()->height(), oneLine);
    EXPECT_LE(attachedLine()->height(), 2 * attachedLine()->fontMetrics().lineSpacing());
    EXPECT_EQ(picker()->width(), 190);
    EXPECT_LE(view.minimumSizeHint().width(), 440);
}

TEST_F(WindowAttachmentSectionTest, LeavesTheWheelToWhatScrollsAroundIt) {
    const QPointF middle = QRectF(picker()->rect()).center();
    QWheelEvent event(middle, picker()->mapToGlobal(middle), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);

    QApplication::sendEvent(picker(), &event);

    EXPECT_EQ(model.selectedWindowID(), std::nullopt);
    EXPECT_FALSE(event.isAccepted());
}

TEST_F(WindowAttachmentSectionTest, KeepsItsPickerOpenAndTheFocusWhileAnOverlayFollowsAWindow) {
    model.setSelectedWindowID(7);
    model.attachSelectedOverlayToWindow();
    picker()->setFocus();
    picker()->showPopup();
    picker()->view()->setCurrentIndex(picker()->model()->index(1, 0));

    tick();
    tick();

    EXPECT_TRUE(picker()->view()->isVisible());
    EXPECT_EQ(picker()->view()->currentIndex().row(), 1);
    picker()->hidePopup();
    EXPECT_TRUE(picker()->hasFocus());
}

TEST_F(WindowAttachmentSectionTest, LeavesAHeldSliderAloneWhileAnOverlayFollowsAWindow) {
    model.setSelectedWindowID(7);
    model.attachSelectedOverlayToWindow();
    auto* slider = named<QSlider>(view, "Blur");
    slider->setSliderDown(true);
    slider->setSliderPosition(20);
    ASSERT_EQ(model.overlays()[0].style.intensity, 20);

    tick();

    EXPECT_TRUE(slider->isSliderDown());
    EXPECT_EQ(slider->sliderPosition(), 20);
    slider->setSliderDown(false);
}

}  // namespace
}  // namespace pallwick
