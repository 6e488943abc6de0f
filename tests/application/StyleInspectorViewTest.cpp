#include "ViewTestSupport.h"

#include <PallwickMac/Services/OverlayColor.h>
#include <PallwickMac/Views/ColorWell.h>
#include <PallwickMac/Views/OverlayHexString.h>
#include <PallwickMac/Views/SegmentedPicker.h>
#include <PallwickMac/Views/SliderRow.h>
#include <PallwickMac/Views/StyleInspectorView.h>
#include <PallwickMac/Views/SymbolButton.h>
#include <PallwickMac/Views/ToggleSwitch.h>

#include <QAccessible>
#include <QApplication>
#include <QColorDialog>
#include <QLabel>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTest>
#include <QWheelEvent>

namespace pallwick {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

/// Where the slider's handle is drawn at its present value.
QPoint handleOf(const QSlider& slider) {
    QStyleOptionSlider option;
    option.initFrom(&slider);
    option.minimum = slider.minimum();
    option.maximum = slider.maximum();
    option.sliderPosition = slider.sliderPosition();
    option.sliderValue = slider.value();
    option.subControls = QStyle::SC_All;
    return slider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider).center();
}

void wheelOver(QSlider* slider) {
    const QPointF middle = QRectF(slider->rect()).center();
    QWheelEvent event(middle, slider->mapToGlobal(middle), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(slider, &event);
}

/// The texts of the labels that are lower than their lines at their width.
std::vector<std::string> cutOffLabels(const QWidget& root) {
    std::vector<std::string> texts;
    for (const QLabel* label : root.findChildren<QLabel*>()) {
        if (label->isVisible() && label->wordWrap() && label->height() < label->heightForWidth(label->width())) {
            texts.push_back(label->text().toStdString());
        }
    }
    return texts;
}

class StyleInspectorViewTest : public ModelTest {
protected:
    StyleInspectorViewTest() {
        view.resize(440, 400);
        showNow(view);
    }

    [[nodiscard]] QSlider* slider(const char* name) { return named<QSlider>(view, name); }
    [[nodiscard]] QRadioButton* segment(const char* name) { return named<QRadioButton>(view, name); }
    [[nodiscard]] ToggleSwitch* glassSwitch() { return view.findChild<ToggleSwitch*>(); }
    [[nodiscard]] ColorWell* colorWell() { return view.findChild<ColorWell*>(); }
    [[nodiscard]] QColorDialog* chooser() { return view.findChild<QColorDialog*>(); }

    [[nodiscard]] const BlurStyle& style() { return model.selectedOverlay()->style; }

    StyleInspectorView view{model};
};

TEST_F(StyleInspectorViewTest, ShowsThePlaceholderAndNoControlsWithoutAnOverlay) {
    EXPECT_TRUE(showsText(view, "No Overlays"));
    EXPECT_TRUE(showsText(view, "Add a manual overlay to cover sensitive content before screen sharing."));
    EXPECT_FALSE(showsText(view, "Overlay Style"));
    EXPECT_FALSE(slider("Blur")->isVisible());
    EXPECT_FALSE(named<SymbolButton>(view, "Remove Overlay")->isVisible());
}

TEST_F(StyleInspectorViewTest, LeavesRoomForEveryLineOfAWrappedText) {
    for (const int width : {300, 388, 440, 900}) {
        view.resize(width, 400);
        QCoreApplication::sendPostedEvents();
        EXPECT_THAT(cutOffLabels(view), IsEmpty()) << width;
    }

    addOverlays(1);
    for (const int width : {300, 388, 440, 900}) {
        view.resize(width, 400);
        QCoreApplication::sendPostedEvents();
        EXPECT_THAT(cutOffLabels(view), IsEmpty()) << width;
    }
}

TEST_F(StyleInspectorViewTest, ShowsTheControlsAndNoPlaceholderWithAnOverlay) {
    addOverlays(1);

    EXPECT_FALSE(showsText(view, "No Overlays"));
    EXPECT_TRUE(showsText(view, "Overlay Style"));
    EXPECT_TRUE(showsText(view, "Drag the overlay to move it. Pull the bottom-right handle to resize."));
    EXPECT_TRUE(showsText(view, "Shape"));
    EXPECT_TRUE(showsText(view, "Blur"));
    EXPECT_TRUE(showsText(view, "50%"));
    EXPECT_TRUE(showsText(view, "Opacity"));
    EXPECT_TRUE(showsText(view, "100%"));
    EXPECT_TRUE(showsText(view, "#000000"));
    EXPECT_EQ(slider("Blur")->value(), 50);
    EXPECT_EQ(slider("Opacity")->value(), 100);
    EXPECT_TRUE(glassSwitch()->isChecked());
    EXPECT_TRUE(segment("Rectangle")->isChecked());
}

TEST_F(StyleInspectorViewTest, IsNoWiderThanItReadsWell) {
    addOverlays(1);

    view.resize(1200, 600);

    EXPECT_EQ(slider("Blur")->width(), 440);
    EXPECT_EQ(slider("Blur")->mapTo(&view, QPoint(0, 0)).x(), 0);
}

TEST_F(StyleInspectorViewTest, ChangesTheShapeByItsSegments) {
    addOverlays(1);

    click(segment("Circle"));

    EXPECT_EQ(model.overlays()[0].shape, OverlayShape::circle);
    EXPECT_TRUE(segment("Circle")->isChecked());
    EXPECT_FALSE(segment("Rectangle")->isChecked());
    EXPECT_EQ(model.statusText(), QStringLiteral("Shape updated"));

    click(segment("Rectangle"));
    EXPECT_EQ(model.overlays()[0].shape, OverlayShape::rectangle);
}

TEST_F(StyleInspectorViewTest, DoesNotChooseTheShownShapeAgain) {
    addOverlays(1);
    const NotificationLog log(model);

    click(segment("Rectangle"));

    EXPECT_THAT(log.names(), IsEmpty());
}

TEST_F(StyleInspectorViewTest, ChangesTheShapeByTheArrowKeys) {
    addOverlays(1);
    segment("Rectangle")->setFocus();

    QTest::keyClick(segment("Rectangle"), Qt::Key_Right);

    EXPECT_EQ(model.overlays()[0].shape, OverlayShape::circle);
    EXPECT_EQ(QApplication::focusWidget(), segment("Circle"));
}

TEST_F(StyleInspectorViewTest, ChangesTheShapeForAScreenReaderThatChecksASegment) {
    addOverlays(1);
    QAccessibleInterface* circle = QAccessible::queryAccessibleInterface(segment("Circle"));
    QAccessibleActionInterface* actions = circle == nullptr ? nullptr : circle->actionInterface();
    ASSERT_NE(actions, nullptr);

    actions->doAction(QAccessibleActionInterface::toggleAction());

    EXPECT_EQ(model.overlays()[0].shape, OverlayShape::circle);
    EXPECT_TRUE(segment("Circle")->isChecked());
}

TEST_F(StyleInspectorViewTest, ShowsTheShapeOfTheSelectedOverlay) {
    addOverlays(2);
    model.updateSelectedShape(OverlayShape::circle);

    model.setSelectedOverlayID(idOf(1));
    EXPECT_TRUE(segment("Rectangle")->isChecked());

    model.setSelectedOverlayID(idOf(2));
    EXPECT_TRUE(segment("Circle")->isChecked());
}

TEST_F(StyleInspectorViewTest, ChangesOnlyTheIntensityByTheBlurSlider) {
    addOverlays(1);
    model.updateSelectedStyle(20, std::string("#FF8000"), 30, false);

    slider("Blur")->setFocus();
    QTest::keyClick(slider("Blur"), Qt::Key_Right);

    EXPECT_EQ(style(), BlurStyle(21, "#FF8000", 30, false));
    EXPECT_TRUE(showsText(view, "21%"));
    EXPECT_EQ(model.statusText(), QStringLiteral("Style updated"));
}

TEST_F(StyleInspectorViewTest, ChangesOnlyTheOpacityByTheOpacitySlider) {
    addOverlays(1);
    model.updateSelectedStyle(20, std::string("#FF8000"), 30, false);

    slider("Opacity")->setFocus();
    QTest::keyClick(slider("Opacity"), Qt::Key_Left);

    EXPECT_EQ(style(), BlurStyle(20, "#FF8000", 29, false));
    EXPECT_TRUE(showsText(view, "29%"));
}

TEST_F(StyleInspectorViewTest, ReachesBothEndsOfARangeByDragging) {
    addOverlays(1);
    QSlider* blur = slider("Blur");

    QTest::mousePress(blur, Qt::LeftButton, Qt::NoModifier, handleOf(*blur));
    QTest::mouseMove(blur, QPoint(-50, blur->height() / 2));
    EXPECT_EQ(style().intensity, 0);
    EXPECT_TRUE(showsText(view, "0%"));

    QTest::mouseMove(blur, QPoint(blur->width() + 50, blur->height() / 2));
    EXPECT_EQ(style().intensity, 100);
    QTest::mouseRelease(blur, Qt::LeftButton, Qt::NoModifier, QPoint(blur->width() + 50, blur->height() / 2));
    EXPECT_EQ(style().intensity, 100);
}

TEST_F(StyleInspectorViewTest, GoesWhereItsGrooveIsClicked) {
    addOverlays(1);
    QSlider* blur = slider("Blur");

    QTest::mouseClick(blur, Qt::LeftButton, Qt::NoModifier, QPoint(blur->width() - 2, blur->height() / 2));

    EXPECT_EQ(style().intensity, 100);
}

TEST_F(StyleInspectorViewTest, LeavesASliderUnderTheMouseToTheMouse) {
    addOverlays(1);
    QSlider* blur = slider("Blur");
    QTest::mousePress(blur, Qt::LeftButton, Qt::NoModifier, handleOf(*blur));

    model.updateSelectedStyle(80, std::nullopt, std::nullopt, std::nullopt);
    dragPanelTo(1, {.x = 5, .y = 5});

    EXPECT_TRUE(blur->isSliderDown());
    EXPECT_EQ(blur->sliderPosition(), 50);
    EXPECT_TRUE(showsText(view, "80%"));

    QTest::mouseRelease(blur, Qt::LeftButton, Qt::NoModifier, handleOf(*blur));
    EXPECT_EQ(style().intensity, 80) << "a press that moves nothing stores nothing";
    EXPECT_EQ(blur->value(), 80);
}

TEST_F(StyleInspectorViewTest, ShowsAStyleWithoutStoringIt) {
    addOverlays(2);
    const NotificationLog log(model);

    model.setSelectedOverlayID(idOf(1));

    EXPECT_THAT(log.names(), testing::ElementsAre("selectedOverlayID"));
}

TEST_F(StyleInspectorViewTest, IgnoresTheWheelUnlessASliderHasTheFocus) {
    addOverlays(1);

    wheelOver(slider("Opacity"));
    EXPECT_EQ(style().opacity, 100);

    slider("Opacity")->setFocus();
    wheelOver(slider("Opacity"));
    EXPECT_LT(style().opacity, 100);
}

TEST(SliderRow, ShowsANumberOutsideItsRangeAsItIs) {
    SliderRow row(QStringLiteral("Blur"), 0, 100, QStringLiteral("%"));
    const QSignalSpy chosen(&row, &SliderRow::valueChosen);
    showNow(row);

    row.setValue(400);
    EXPECT_TRUE(showsText(row, "400%"));
    EXPECT_EQ(row.findChild<QSlider*>()->value(), 100);

    row.setValue(-7);
    EXPECT_TRUE(showsText(row, "-7%"));
    EXPECT_EQ(row.findChild<QSlider*>()->value(), 0);

    row.setValue(std::numeric_limits<std::int64_t>::max());
    EXPECT_TRUE(showsText(row, "9223372036854775807%"));
    EXPECT_EQ(chosen.count(), 0);
}

TEST(SliderRow, CanBeMovedToTheEndItAlreadyStandsAtFromBeyond) {
    SliderRow row(QStringLiteral("Blur"), 0, 100, QStringLiteral("%"));
    const QSignalSpy chosen(&row, &SliderRow::valueChosen);
    row.setValue(400);

    QTest::keyClick(row.findChild<QSlider*>(), Qt::Key_End);

    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen[0][0].toInt(), 100);
}

TEST(SliderRow, LeavesItsValueToWhoeverIsTold) {
    SliderRow row(QStringLiteral("Blur"), 0, 100, QStringLiteral("%"));
    row.setValue(40);
    showNow(row);

    QTest::keyClick(row.findChild<QSlider*>(), Qt::Key_Right);

    EXPECT_TRUE(showsText(row, "40%"));
}

TEST_F(StyleInspectorViewTest, SwitchesOnlyTheGlassBlur) {
    addOverlays(1);

    click(glassSwitch());
    EXPECT_EQ(style(), BlurStyle(50, "#000000", 100, false));
    EXPECT_FALSE(glassSwitch()->isChecked());

    QTest::keyClick(glassSwitch(), Qt::Key_Space);
    EXPECT_TRUE(style().glassBlur);
    EXPECT_TRUE(glassSwitch()->isChecked());
}

TEST_F(StyleInspectorViewTest, ShowsTheColourAndItsText) {
    addOverlays(1);

    model.updateSelectedStyle(std::nullopt, std::string("#FF8000"), std::nullopt, std::nullopt);

    EXPECT_EQ(colorWell()->color(), QColor(255, 128, 0));
    EXPECT_EQ(colorWell()->accessibleDescription(), QStringLiteral("#FF8000"));
    EXPECT_TRUE(showsText(view, "#FF8000"));
    EXPECT_LE(colorWell()->width(), 190);
    const QImage picture = colorWell()->grab().toImage();
    EXPECT_EQ(picture.pixelColor(picture.width() - 22, picture.height() / 2), QColor(255, 128, 0));
}

TEST_F(StyleInspectorViewTest, StoresAPickedColourAndNothingElse) {
    addOverlays(1);
    model.updateSelectedStyle(20, std::string("#FF8000"), 30, false);

    click(colorWell());
    ASSERT_TRUE(chooser());
    EXPECT_EQ(chooser()->currentColor(), QColor(255, 128, 0));
    chooser()->setCurrentColor(Qt::red);
    chooser()->accept();

    EXPECT_EQ(style(), BlurStyle(20, "#FF0000", 30, false));
    EXPECT_TRUE(showsText(view, "#FF0000"));
    EXPECT_EQ(colorWell()->color(), QColor(Qt::red));
}

TEST_F(StyleInspectorViewTest, StoresNothingWhenTheChooserIsCancelled) {
    addOverlays(1);
    click(colorWell());
    const NotificationLog log(model);

    chooser()->setCurrentColor(Qt::red);
    chooser()->reject();

    EXPECT_THAT(log.names(), IsEmpty());
    EXPECT_EQ(style().colorHex, "#000000");
}

TEST_F(StyleInspectorViewTest, OffersNoOpacityInItsOwnChooser) {
    addOverlays(1);

    click(colorWell());

    EXPECT_FALSE(chooser()->testOption(QColorDialog::ShowAlphaChannel));
    EXPECT_TRUE(chooser()->testOption(QColorDialog::DontUseNativeDialog));
    chooser()->reject();
}

TEST_F(StyleInspectorViewTest, OpensOneChooserOnly) {
    addOverlays(1);

    colorWell()->click();
    colorWell()->click();

    EXPECT_THAT(view.findChildren<QColorDialog*>(), SizeIs(1));
    chooser()->reject();
}

TEST_F(StyleInspectorViewTest, ClosesTheChooserWhenItsOverlayGoes) {
    addOverlays(2);
    click(colorWell());
    QColorDialog* open = chooser();
    ASSERT_TRUE(open->isVisible());

    model.removeOverlay(idOf(2));

    EXPECT_FALSE(open->isVisible());
    EXPECT_EQ(style().colorHex, "#000000");
}

TEST_F(StyleInspectorViewTest, KeepsTheChooserOpenWhileItsOverlayChanges) {
    addOverlays(2);
    click(colorWell());

    dragPanelTo(2, {.x = 5, .y = 5});

    EXPECT_TRUE(chooser()->isVisible());
    chooser()->reject();
}

TEST_F(StyleInspectorViewTest, RemovesTheSelectedOverlayAndFallsBackToThePlaceholder) {
    addOverlays(2);
    const UUID first = idOf(1);

    click(named<SymbolButton>(view, "Remove Overlay"));
    ASSERT_THAT(model.overlays(), SizeIs(1));
    EXPECT_EQ(model.overlays()[0].id(), first);
    EXPECT_FALSE(showsText(view, "No Overlays"));

    click(named<SymbolButton>(view, "Remove Overlay"));
    EXPECT_THAT(model.overlays(), IsEmpty());
    EXPECT_TRUE(showsText(view, "No Overlays"));
}

TEST_F(StyleInspectorViewTest, ShowsTheFirstOverlayWhenTheSelectionIsStale) {
    addOverlays(2);
    model.updateSelectedStyle(12, std::nullopt, std::nullopt, std::nullopt);
    ASSERT_TRUE(showsText(view, "12%"));

    model.setSelectedOverlayID(UUID::random());

    EXPECT_TRUE(showsText(view, "50%"));
}

TEST_F(StyleInspectorViewTest, KeepsTheFocusOverARefresh) {
    addOverlays(1);
    slider("Blur")->setFocus();

    dragPanelTo(1, {.x = 5, .y = 5});
    model.toggleEditMode();

    EXPECT_EQ(QApplication::focusWidget(), slider("Blur"));
}

TEST(SegmentedPicker, LeavesItsChoiceToWhoeverIsTold) {
    SegmentedPicker picker({QStringLiteral("One"), QStringLiteral("Two")});
    const QSignalSpy chosen(&picker, &SegmentedPicker::indexChosen);
    showNow(picker);

    click(named<QRadioButton>(picker, "Two"));

    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen[0][0].toInt(), 1);
    EXPECT_TRUE(named<QRadioButton>(picker, "One")->isChecked());
}

TEST(ColorWell, ShowsTextThatIsNoNumberAsBlack) {
    ColorWell well(QStringLiteral("Color"));
    well.setColor(Qt::red);

    well.setColor(overlayColor("blue", 1));

    EXPECT_EQ(well.accessibleDescription(), QStringLiteral("#000000"));
}

struct ColorText {
    QColor color;
    const char* text;
};

class OverlayHexStringTest : public ::testing::TestWithParam<ColorText> {};

TEST_P(OverlayHexStringTest, IsTheNearestText) {
    EXPECT_EQ(overlayHexString(GetParam().color).toStdString(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Colors, OverlayHexStringTest,
                         ::testing::Values(ColorText{QColor(255, 128, 0), "#FF8000"},
                                           ColorText{QColor(10, 11, 12), "#0A0B0C"},
                                           ColorText{QColor(10, 11, 12, 13), "#0A0B0C"},
                                           ColorText{QColor::fromRgbF(0.5F, 0.4999F, 0.501F), "#807F80"},
                                           ColorText{QColor::fromHsv(0, 255, 255), "#FF0000"},
                                           ColorText{QColor::fromRgbF(1.5F, 0.0F, 0.0F), "#17F0000"}));

}  // namespace
}  // namespace pallwick
