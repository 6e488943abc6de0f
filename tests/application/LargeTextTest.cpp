// Every view with the desktop's text twice as large as usual, from the start or from one moment to the next.

#include "ViewTestSupport.h"

#include <PallwickMac/Views/ContentView.h>
#include <PallwickMac/Views/SettingsView.h>
#include <PallwickMac/Views/TextLabel.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QApplication>
#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolTip>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace pallwick {
namespace {

using ::testing::IsEmpty;

/// Sets the application's font size as long as it lives, as the desktop does.
class TextSize {
public:
    explicit TextSize(double factor) : before_(QApplication::font()) {
        QFont font = before_;
        font.setPointSizeF(font.pointSizeF() * factor);
        QApplication::setFont(font);
    }
    ~TextSize() { QApplication::setFont(before_); }
    TextSize(const TextSize&) = delete;
    TextSize& operator=(const TextSize&) = delete;

private:
    QFont before_;
};

std::string nameOf(const QWidget& widget) {
    const auto* label = qobject_cast<const QLabel*>(&widget);
    return (label ? label->text() : widget.accessibleName()).toStdString() + " (" + widget.metaObject()->className() +
           ")";
}

/// What a person reads or uses: the widgets with nothing but decoration in them.
std::vector<QWidget*> leaves(const QWidget& view) {
    std::vector<QWidget*> found;
    for (QWidget* widget : view.findChildren<QWidget*>()) {
        const bool isLeaf = qobject_cast<QLabel*>(widget) || qobject_cast<QAbstractButton*>(widget) ||
                            qobject_cast<QAbstractSlider*>(widget) || qobject_cast<QComboBox*>(widget) ||
                            qobject_cast<QAbstractItemView*>(widget);
        if (widget->isVisibleTo(&view) && isLeaf && !widget->isWindow() && !qobject_cast<QScrollBar*>(widget)) {
            found.push_back(widget);
        }
    }
    return found;
}

/// Where a widget can be seen, in the view's coordinates: what scrolls shows no further than its pane.
QRect seenRect(const QWidget& widget, const QWidget& view) {
    QRect rect(widget.mapTo(&view, QPoint(0, 0)), widget.size());
    for (const QWidget* parent = widget.parentWidget(); parent && parent != &view; parent = parent->parentWidget()) {
        rect &= QRect(parent->mapTo(&view, QPoint(0, 0)), parent->size());
    }
    return rect;
}

std::vector<std::string> overlapping(const QWidget& view) {
    std::vector<std::string> found;
    const std::vector<QWidget*> widgets = leaves(view);
    for (std::size_t one = 0; one < widgets.size(); ++one) {
        for (std::size_t other = one + 1; other < widgets.size(); ++other) {
            if (seenRect(*widgets[one], view).intersects(seenRect(*widgets[other], view))) {
                found.push_back(nameOf(*widgets[one]) + " and " + nameOf(*widgets[other]));
            }
        }
    }
    return found;
}

QString toolTipOf(QWidget& widget) {
    QToolTip::hideText();
    const QPoint middle = widget.rect().center();
    QHelpEvent help(QEvent::ToolTip, middle, widget.mapToGlobal(middle));
    QApplication::sendEvent(&widget, &help);
    const QString text = QToolTip::text();
    QToolTip::hideText();
    return text;
}

/// Whether all of a widget's text can be read where it stands.
bool showsAllOfItsText(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        const int flags = label->hasHeightForWidth() ? Qt::TextWordWrap : Qt::TextSingleLine;
        const QRect room = label->contentsRect();
        const QRect needed = label->fontMetrics().boundingRect(QRect(0, 0, room.width(), 10'000), flags, label->text());
        return needed.width() <= room.width() && needed.height() <= room.height();
    }
    if (const auto* picker = qobject_cast<const QComboBox*>(&widget)) {
        // Less the arrow and its frame.
        constexpr int arrow = 30;
        return picker->fontMetrics().horizontalAdvance(picker->currentText()) <= picker->width() - arrow &&
               picker->height() >= picker->fontMetrics().height();
    }
    return widget.width() >= widget.minimumSizeHint().width() && widget.height() >= widget.minimumSizeHint().height();
}

std::vector<std::string> cutShort(const QWidget& view) {
    std::vector<std::string> found;
    for (QWidget* widget : leaves(view)) {
        if (qobject_cast<QAbstractItemView*>(widget) || showsAllOfItsText(*widget)) {
            continue;
        }
        const auto* label = qobject_cast<const QLabel*>(widget);
        const auto* picker = qobject_cast<const QComboBox*>(widget);
        const QString text = label ? label->text() : picker ? picker->currentText() : QString();
        if (text.isEmpty() || !toolTipOf(*widget).contains(text)) {
            found.push_back(nameOf(*widget));
        }
    }
    return found;
}

/// What cannot be brought into sight as a whole.
std::vector<std::string> outOfReach(QWidget& view) {
    std::vector<std::string> found;
    auto* pane = view.findChild<QScrollArea*>();
    for (QWidget* widget : leaves(view)) {
        if (pane && pane->widget()->isAncestorOf(widget)) {
            pane->ensureWidgetVisible(widget, 0, 0);
        }
        if (seenRect(*widget, view).size() != widget->size()) {
            found.push_back(nameOf(*widget));
        }
    }
    return found;
}

/// The toolkit tells windows of a font in one turn of the event loop and lays them out in the next.
void settle() {
    for (int turn = 0; turn < 4; ++turn) {
        QApplication::processEvents();
    }
}

class LargeText : public ModelTest {
protected:
    LargeText() {
        platform.setOnScreenWindows({{WindowRecord{.layer = 0,
                                                   .number = 7,
                                                   .ownerProcessID = 512,
                                                   .ownerName = "Spreadsheet of the accounts department",
                                                   .title = "Quarterly figures, not yet approved by anybody",
                                                   .bounds = Rect{.x = 0, .y = 0, .width = 400, .height = 300}}}});
    }

    void attachOverlay() {
        addOverlays(2);
        model.refreshWindows();
        model.setSelectedWindowID(7);
        model.attachSelectedOverlayToWindow();
    }

    /// Shows the view no larger than its window may be made.
    static void showSmall(QWidget& view) {
        showNow(view);
        view.resize(760, 460);
        settle();
    }

    static void expectWhole(QWidget& view) {
        EXPECT_EQ(view.size(), QSize(760, 460));
        EXPECT_THAT(overlapping(view), IsEmpty());
        EXPECT_THAT(cutShort(view), IsEmpty());
        EXPECT_THAT(outOfReach(view), IsEmpty());
    }
};

TEST_F(LargeText, LeavesTheEmptyWindowWhole) {
    const TextSize twice(2);
    ContentView view(model);

    showSmall(view);

    expectWhole(view);
}

TEST_F(LargeText, LeavesTheWindowOfAnAttachedOverlayWhole) {
    const TextSize twice(2);
    ContentView view(model);
    attachOverlay();

    showSmall(view);

    expectWhole(view);
}

TEST_F(LargeText, LeavesTheWindowWholeWhenItComesWhileItIsOpen) {
    ContentView view(model);
    attachOverlay();
    showSmall(view);
    expectWhole(view);

    const TextSize twice(2);
    settle();

    expectWhole(view);
}

TEST_F(LargeText, GivesTheRoomBackWhenItGoes) {
    ContentView view(model);
    attachOverlay();
    showSmall(view);
    const auto heights = [&] {
        std::vector<int> found;
        for (const QWidget* widget : leaves(view)) {
            found.push_back(widget->height());
        }
        return found;
    };
    const std::vector<int> before = heights();

    {
        const TextSize twice(2);
        settle();
        EXPECT_NE(heights(), before);
    }
    settle();

    EXPECT_EQ(heights(), before);
    expectWhole(view);
}

TEST_F(LargeText, HasARowsDetailAsATooltip) {
    const TextSize twice(2);
    ContentView view(model);
    addOverlays(1);
    showSmall(view);
    auto* list = named<QAbstractItemView>(view, "Manual Overlays");
    const QRect row = list->visualRect(list->model()->index(0, 0));

    QHelpEvent help(QEvent::ToolTip, row.center(), list->viewport()->mapToGlobal(row.center()));
    QApplication::sendEvent(list->viewport(), &help);

    EXPECT_TRUE(QToolTip::text().startsWith(QStringLiteral("Rectangle - "))) << QToolTip::text().toStdString();
    QToolTip::hideText();
}

class LargeTextInSettings : public ::testing::Test {};

TEST_F(LargeTextInSettings, IsAllShown) {
    const TextSize twice(2);
    SettingsView view;
    showNow(view);

    EXPECT_THAT(overlapping(view), IsEmpty());
    EXPECT_THAT(cutShort(view), IsEmpty());
    EXPECT_THAT(outOfReach(view), IsEmpty());
}

TEST_F(LargeTextInSettings, MakesAnOpenWindowHigher) {
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    auto* view = new SettingsView;
    layout->addWidget(view);
    showNow(window);
    const int height = window.height();

    const TextSize twice(2);
    settle();

    EXPECT_GT(window.height(), height);
    EXPECT_THAT(overlapping(*view), IsEmpty());
    EXPECT_THAT(cutShort(*view), IsEmpty());
    EXPECT_THAT(outOfReach(*view), IsEmpty());
}

}  // namespace
}  // namespace pallwick
