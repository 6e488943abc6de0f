// What is written can be read: the contrast of the texts as they are drawn, with the ground they are drawn on.

#include "ViewTestSupport.h"

#include <PallwickMac/Views/Appearance.h>
#include <PallwickMac/Views/ColorWell.h>
#include <PallwickMac/Views/ContentView.h>
#include <PallwickMac/Views/SettingsView.h>
#include <PallwickMac/Views/ToggleSwitch.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>

#include <algorithm>
#include <map>

namespace pallwick {
namespace {

using ::testing::IsEmpty;

/// Four times as large, so that every stroke of a letter has pixels of its full colour.
constexpr int enlargement = 4;
constexpr double legible = 4.5;

QImage enlarged(QWidget& widget) {
    QImage image(widget.size() * enlargement, QImage::Format_RGB32);
    image.setDevicePixelRatio(enlargement);
    image.fill(widget.palette().color(QPalette::Window));
    widget.render(&image);
    return image;
}

/// The contrast of what is drawn there with the colour that most of it has, the ground. A colour counts that many
/// pixels have: not the edges of letters, but their strokes.
double contrastIn(const QImage& picture, const QRect& area) {
    const QImage part = picture.copy(QRect(area.topLeft() * enlargement, area.size() * enlargement));
    std::map<QRgb, int> colours;
    for (int y = 0; y < part.height(); ++y) {
        for (int x = 0; x < part.width(); ++x) {
            ++colours[part.pixel(x, y)];
        }
    }
    const auto byCount = [](const auto& one, const auto& other) { return one.second < other.second; };
    const QColor ground = std::ranges::max_element(colours, byCount)->first;
    constexpr int fewest = 20;
    double highest = 1;
    for (const auto& [colour, count] : colours) {
        if (count >= fewest) {
            highest = std::max(highest, contrastRatio(QColor(colour), ground));
        }
    }
    return highest;
}

/// Where a control's text is, without its frame and without what it shows beside it.
QRect textArea(const QWidget& widget) {
    if (qobject_cast<const ColorWell*>(&widget) || qobject_cast<const ToggleSwitch*>(&widget)) {
        return {0, 0, widget.fontMetrics().horizontalAdvance(static_cast<const QAbstractButton&>(widget).text()),
                widget.height()};
    }
    constexpr int frame = 5;
    return qobject_cast<const QLabel*>(&widget) ? widget.rect() : widget.rect().adjusted(frame, frame, -frame, -frame);
}

bool hasText(const QWidget& widget) {
    const auto* label = qobject_cast<const QLabel*>(&widget);
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    return (label && !label->text().isEmpty()) || (button && !button->text().isEmpty()) ||
           qobject_cast<const QComboBox*>(&widget);
}

std::string textOf(const QWidget& widget) {
    const auto* label = qobject_cast<const QLabel*>(&widget);
    return (label ? label->text() : widget.accessibleName()).toStdString();
}

/// The texts of the view with too little contrast. Those that cannot be used just now need less.
std::vector<std::string> faintTexts(QWidget& view) {
    std::vector<std::string> faint;
    const QImage picture = enlarged(view);
    int looked = 0;
    for (const QWidget* widget : view.findChildren<QWidget*>()) {
        if (!widget->isVisible() || !hasText(*widget)) {
            continue;
        }
        ++looked;
        const double least = widget->isEnabled() ? legible : 2.4;
        const QRect area = textArea(*widget).translated(widget->mapTo(&view, QPoint(0, 0)));
        const double contrast = contrastIn(picture, area);
        if (contrast < least) {
            faint.push_back(textOf(*widget) + ": " + std::to_string(contrast));
        }
    }
    EXPECT_GT(looked, 3) << "texts of the view";
    return faint;
}

class Contrast : public ModelTest, public ::testing::WithParamInterface<Scheme> {
protected:
    /// Before the views, whose fixture is this one's base.
    ApplicationPalette palette_{GetParam().palette};
};

QPalette plasmaDark() {
    QPalette palette = darkPalette();
    palette.setColor(QPalette::Window, QColor(42, 46, 50));
    palette.setColor(QPalette::Base, QColor(27, 30, 32));
    palette.setColor(QPalette::Highlight, QColor(61, 174, 233));
    palette.setColor(QPalette::HighlightedText, QColor(252, 252, 252));
    return palette;
}

INSTANTIATE_TEST_SUITE_P(Schemes, Contrast,
                         ::testing::Values(Scheme{"Light", QPalette(QColor(0xef, 0xef, 0xef))},
                                           Scheme{"Grey", QPalette(QColor(0xd4, 0xd0, 0xc8))},
                                           Scheme{"Dark", darkPalette()}, Scheme{"PlasmaDark", plasmaDark()},
                                           Scheme{"Black", QPalette(QColor(0x10, 0x10, 0x10))}),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(Contrast, OfTheEmptyMainWindowIsEnough) {
    ContentView view(model);
    view.resize(760, 516);
    showNow(view);

    EXPECT_THAT(faintTexts(view), IsEmpty());
}

TEST_P(Contrast, OfTheMainWindowWithAnAttachedOverlayIsEnough) {
    platform.setOnScreenWindows({{WindowRecord{.layer = 0,
                                               .number = 7,
                                               .ownerProcessID = 512,
                                               .ownerName = "Nova",
                                               .title = "Notes",
                                               .bounds = Rect{.x = 0, .y = 0, .width = 400, .height = 300}}}});
    ContentView view(model);
    addOverlays(1);
    model.refreshWindows();
    model.setSelectedWindowID(7);
    model.attachSelectedOverlayToWindow();
    view.resize(760, 516);
    showNow(view);

    EXPECT_THAT(faintTexts(view), IsEmpty()) << "in edit mode";

    model.toggleEditMode();
    EXPECT_THAT(faintTexts(view), IsEmpty()) << "locked";
}

TEST_P(Contrast, OfTheRowsIsEnoughSelectedOrNot) {
    ContentView view(model);
    addOverlays(2);
    view.resize(760, 516);
    showNow(view);
    // Rows are laid out in a turn of the event loop.
    QApplication::processEvents();
    auto* list = named<QAbstractItemView>(view, "Manual Overlays");

    const QImage picture = enlarged(view);
    for (const int row : {0, 1}) {
        const QRect area =
            list->visualRect(list->model()->index(row, 0)).translated(list->viewport()->mapTo(&view, QPoint(0, 0)));
        const int half = area.height() / 2;
        EXPECT_GE(contrastIn(picture, area.adjusted(14, 4, -14, -half)), legible) << "title of row " << row;
        EXPECT_GE(contrastIn(picture, area.adjusted(14, half + 1, -14, -4)), legible) << "detail of row " << row;
    }
}

TEST_P(Contrast, OfTheFocusWithWhatIsAroundItIsEnough) {
    const QPalette& palette = GetParam().palette;

    EXPECT_GE(contrastRatio(focusColor(palette), palette.color(QPalette::Window)), 3);
    EXPECT_GE(contrastRatio(focusColor(palette), sidebarBackground(palette)), 3);
}

TEST_P(Contrast, OfTheSettingsIsEnough) {
    SettingsView view;
    showNow(view);

    EXPECT_THAT(faintTexts(view), IsEmpty());
}

TEST_P(Contrast, OfAMenusEntriesIsEnoughChosenOrNot) {
    QMenu menu;
    QAction* add = menu.addAction(QStringLiteral("Add Overlay"));
    add->setShortcut(Qt::CTRL | Qt::Key_N);
    QAction* clear = menu.addAction(QStringLiteral("Clear All"));
    clear->setShortcut(Qt::CTRL | Qt::Key_Backspace);
    menu.resize(menu.sizeHint());
    menu.setActiveAction(add);
    const QImage picture = enlarged(menu);

    for (QAction* action : {add, clear}) {
        const QRect area = menu.actionGeometry(action).adjusted(10, 1, -10, -1);
        const int half = area.width() / 2;
        EXPECT_GE(contrastIn(picture, area.adjusted(0, 0, -half, 0)), legible) << action->text().toStdString();
        EXPECT_GE(contrastIn(picture, area.adjusted(half, 0, 0, 0)), legible)
            << "the keys of " << action->text().toStdString();
    }
}

TEST_P(Contrast, OfAMenuBarsTitlesIsEnoughChosenOrNot) {
    QMainWindow window;
    QMenu* program = window.menuBar()->addMenu(QStringLiteral("Pallwick"));
    QMenu* overlay = window.menuBar()->addMenu(QStringLiteral("Overlay"));
    window.resize(400, 200);
    showNow(window);
    window.menuBar()->setActiveAction(program->menuAction());
    const QImage picture = enlarged(*window.menuBar());
    program->close();

    for (QMenu* menu : {program, overlay}) {
        const QRect area = window.menuBar()->actionGeometry(menu->menuAction()).adjusted(4, 4, -4, -4);
        EXPECT_GE(contrastIn(picture, area), legible) << menu->title().toStdString();
    }
}

}  // namespace
}  // namespace pallwick
