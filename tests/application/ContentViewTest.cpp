#include "ViewTestSupport.h"

#include <PallwickMac/Views/ContentView.h>
#include <PallwickMac/Views/OverlayListView.h>
#include <PallwickMac/Views/SymbolButton.h>
#include <PallwickMac/Views/TextLabel.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QSplitter>
#include <QTest>

namespace pallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// The names of the controls that get the focus one after another, from `first` until it has it again.
std::vector<std::string> reachedByTab(QWidget* first) {
    constexpr std::size_t tooMany = 100;
    std::vector<std::string> names;
    first->setFocus();
    do {
        names.push_back(QApplication::focusWidget()->accessibleName().toStdString());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (QApplication::focusWidget() != first && names.size() < tooMany);
    return names;
}

/// The names of the controls that look the same with the keyboard's focus and without.
std::vector<std::string> withoutVisibleFocus(QWidget& view) {
    std::vector<std::string> names;
    // From here on the keyboard is in use.
    QTest::keyClick(&view, Qt::Key_Tab);
    for (QWidget* control : view.findChildren<QWidget*>()) {
        if (!control->isVisible() || !control->isEnabled() || control->focusPolicy() == Qt::NoFocus) {
            continue;
        }
        control->setFocus(Qt::TabFocusReason);
        const QImage focused = control->grab().toImage();
        control->clearFocus();
        if (control->grab().toImage() == focused) {
            names.push_back(control->accessibleName().toStdString());
        }
    }
    return names;
}

class ContentViewTest : public ModelTest {
protected:
    ContentViewTest() {
        view.resize(760, 460);
        showNow(view);
    }

    [[nodiscard]] SymbolButton* button(const char* name) { return named<SymbolButton>(view, name); }

    /// The label with that text.
    [[nodiscard]] TextLabel* label(const char* text) {
        for (TextLabel* candidate : view.findChildren<TextLabel*>()) {
            if (candidate->text() == QLatin1String(text)) {
                return candidate;
            }
        }
        ADD_FAILURE() << "nothing reads " << text;
        return nullptr;
    }

    ContentView view{model};
};

/// The picture of a button's icon, for comparing one with another.
QImage iconImage(const QAbstractButton& button) {
    return button.icon().pixmap(QSize(32, 32)).toImage();
}

TEST_F(ContentViewTest, StartsLockableAndWithNothingToClear) {
    EXPECT_TRUE(button("Add")->isEnabled());
    EXPECT_TRUE(button("Lock")->isEnabled());
    EXPECT_FALSE(button("Clear")->isEnabled());
    EXPECT_TRUE(showsText(view, "Ready"));
    EXPECT_TRUE(showsText(view, "Edit mode"));
}

TEST_F(ContentViewTest, AddsAnOverlay) {
    click(button("Add"));

    EXPECT_THAT(model.overlays(), SizeIs(1));
    EXPECT_TRUE(showsText(view, "Overlay added"));
}

TEST_F(ContentViewTest, ClearsTheOverlaysOnlyWhileThereAreAny) {
    addOverlays(2);
    ASSERT_TRUE(button("Clear")->isEnabled());

    click(button("Clear"));

    EXPECT_THAT(model.overlays(), IsEmpty());
    EXPECT_FALSE(button("Clear")->isEnabled());
    EXPECT_TRUE(showsText(view, "All overlays cleared"));
}

TEST_F(ContentViewTest, OffersThePresetCommandsWhateverThereIs) {
    const QMenu* menu = button("Presets")->menu();
    ASSERT_TRUE(menu);

    std::vector<std::string> entries;
    for (const QAction* entry : menu->actions()) {
        EXPECT_TRUE(entry->isEnabled());
        entries.push_back(entry->isSeparator() ? "-" : entry->text().toStdString());
    }
    EXPECT_THAT(entries,
                ElementsAre("Save Display Preset", "Load Display Preset", "-", "Save App Preset", "Load App Preset"));
}

TEST_F(ContentViewTest, CallsThePresetCommands) {
    std::vector<std::string> answers;
    for (QAction* entry : button("Presets")->menu()->actions()) {
        entry->trigger();
        answers.push_back(model.statusText().toStdString());
    }

    // There is no store in this test; each command says so in words of its own.
    EXPECT_THAT(answers, ElementsAre("Could not save display preset", "Could not load display preset",
                                     "Could not load display preset", "No foreground app detected",
                                     "No foreground app detected"));
}

TEST_F(ContentViewTest, ChangesButtonAndLabelTogetherWithTheMode) {
    const QImage lock = iconImage(*button("Lock"));

    click(button("Lock"));

    EXPECT_FALSE(model.editMode());
    EXPECT_EQ(button("Edit")->text(), QStringLiteral("Edit"));
    EXPECT_NE(iconImage(*button("Edit")), lock);
    EXPECT_TRUE(showsText(view, "Locked"));
    EXPECT_FALSE(showsText(view, "Edit mode"));
    EXPECT_TRUE(showsText(view, "Overlays locked; clicks pass through"));

    click(button("Edit"));

    EXPECT_TRUE(model.editMode());
    EXPECT_EQ(iconImage(*button("Lock")), lock);
    EXPECT_TRUE(showsText(view, "Edit mode"));
    EXPECT_TRUE(showsText(view, "Edit mode on"));
}

TEST_F(ContentViewTest, ReadsEditModeInBlueAndLockedDimmed) {
    EXPECT_EQ(label("Edit mode")->color(), TextColor::blue);

    model.toggleEditMode();

    EXPECT_EQ(label("Locked")->color(), TextColor::secondary);
}

TEST_F(ContentViewTest, ShowsTheModeWhenAnAddedOverlayChangesIt) {
    model.toggleEditMode();

    model.addOverlay();

    EXPECT_TRUE(showsText(view, "Edit mode"));
    EXPECT_TRUE(button("Lock")->isVisible());
}

TEST_F(ContentViewTest, KeepsTheSidebarBetweenItsWidths) {
    auto* splitter = view.findChild<QSplitter*>();
    const auto* sidebar = view.findChild<OverlayListView*>();
    EXPECT_EQ(sidebar->width(), 280);

    splitter->setSizes({1, 759});
    EXPECT_EQ(sidebar->width(), 240);

    splitter->setSizes({759, 1});
    EXPECT_EQ(sidebar->width(), 340);
}

TEST_F(ContentViewTest, GivesAddedWidthToTheDetailColumn) {
    view.resize(1400, 900);

    EXPECT_EQ(view.findChild<OverlayListView*>()->width(), 280);
}

TEST_F(ContentViewTest, KeepsAStatusOfAnyLengthOnItsLineWithoutWideningTheWindow) {
    TextLabel* status = label("Ready");
    const int minimum = view.minimumSizeHint().width();

    status->setText(QString(4000, QLatin1Char('x')));

    EXPECT_EQ(view.minimumSizeHint().width(), minimum);
    EXPECT_LT(status->width(), 760);
}

TEST_F(ContentViewTest, ReachesEveryControlByTabInTheOrderOfTheLayout) {
    addOverlays(1);

    const std::vector<std::string> reached = reachedByTab(named<QWidget>(view, "Manual Overlays"));

    EXPECT_THAT(reached,
                ElementsAre("Manual Overlays", "Add", "Remove", "Add", "Lock", "Clear", "Presets", "Rectangle", "Blur",
                            "Opacity", "Glass blur", "Color", "Refresh", "Attach to", "Remove Overlay"));
}

TEST_F(ContentViewTest, ShowsTheFocusOfEveryControl) {
    EXPECT_THAT(withoutVisibleFocus(view), IsEmpty()) << "while the list is empty";

    addOverlays(1);
    EXPECT_THAT(withoutVisibleFocus(view), IsEmpty());
}

TEST_F(ContentViewTest, PressesItsButtonsByKeyboard) {
    button("Add")->setFocus();

    QTest::keyClick(button("Add"), Qt::Key_Space);

    EXPECT_THAT(model.overlays(), SizeIs(1));
}

/// How often a widget or one within it is painted.
class PaintLog : public QObject {
public:
    explicit PaintLog(QWidget& root) {
        root.installEventFilter(this);
        for (QWidget* widget : root.findChildren<QWidget*>()) {
            widget->installEventFilter(this);
        }
    }

    [[nodiscard]] const std::vector<std::string>& painted() const { return painted_; }

private:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            painted_.push_back(static_cast<QWidget*>(watched)->accessibleName().toStdString() + " " +
                               watched->metaObject()->className());
        }
        return false;
    }

    std::vector<std::string> painted_;
};

TEST_F(ContentViewTest, PaintsNothingAtAPublishThatChangesNothingToSee) {
    addOverlays(2);
    platform.setOnScreenWindows({{WindowRecord{.layer = 0,
                                               .number = 7,
                                               .ownerProcessID = 512,
                                               .ownerName = "Nova",
                                               .title = "Notes",
                                               .bounds = Rect{.x = 0, .y = 0, .width = 400, .height = 300}}}});
    model.refreshWindows();
    model.setSelectedWindowID(7);
    model.attachSelectedOverlayToWindow();
    // The first one sets the status line too.
    model.updateSelectedStyle(std::nullopt, std::nullopt, std::nullopt, std::nullopt);
    QApplication::processEvents();
    const NotificationLog notifications(model);
    const PaintLog paints(view);

    model.updateSelectedStyle(std::nullopt, std::nullopt, std::nullopt, std::nullopt);
    QApplication::processEvents();

    EXPECT_THAT(notifications.names(), ElementsAre("overlays"));
    EXPECT_THAT(paints.painted(), IsEmpty());
}

class TextColorTest : public ::testing::TestWithParam<Scheme> {};

TEST_P(TextColorTest, IsLegibleOnTheWindowAndOnTheSidebar) {
    const QPalette palette = GetParam().palette;

    for (const TextColor color : {TextColor::primary, TextColor::secondary, TextColor::blue, TextColor::destructive}) {
        const QColor text = textColor(color, palette);
        EXPECT_GE(contrastRatio(text, palette.color(QPalette::Window)), 4.5) << text.name().toStdString();
        EXPECT_GE(contrastRatio(text, sidebarBackground(palette)), 4.5) << text.name().toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Schemes, TextColorTest,
    ::testing::Values(Scheme{"Light", QPalette(QColor(0xef, 0xef, 0xef))}, Scheme{"White", QPalette(Qt::white)},
                      Scheme{"Dark", darkPalette()}, Scheme{"Black", QPalette(QColor(0x10, 0x10, 0x10))},
                      Scheme{"Grey", QPalette(QColor(0x31, 0x36, 0x3b), QColor(0x40, 0x45, 0x4a))}),
    [](const auto& scheme) { return std::string(scheme.param.name); });

TEST(ContrastRatio, IsThatOfBlackAndWhiteAtMost) {
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21, 1e-6);
    EXPECT_NEAR(contrastRatio(Qt::white, Qt::white), 1, 1e-6);
    EXPECT_NEAR(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
}

TEST_F(ContentViewTest, FollowsAPaletteChange) {
    addOverlays(1);
    const QPoint onDetail(view.width() - 40, view.height() / 2);
    const QPoint onSidebar(3, view.height() / 2);
    const QRgb before = view.grab().toImage().pixel(onDetail);

    const ApplicationPalette dark(darkPalette());
    const QImage after = view.grab().toImage();

    EXPECT_NE(after.pixel(onDetail), before);
    EXPECT_EQ(after.pixel(onDetail), darkPalette().color(QPalette::Window).rgb());
    EXPECT_EQ(after.pixel(onSidebar), sidebarBackground(darkPalette()).rgb());
}

}  // namespace
}  // namespace pallwick
