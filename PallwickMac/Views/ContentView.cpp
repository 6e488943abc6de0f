#include <PallwickMac/Views/ContentView.h>

#include <PallwickMac/App/AppModel.h>
#include <PallwickMac/Views/Divider.h>
#include <PallwickMac/Views/HairlineSplitter.h>
#include <PallwickMac/Views/MenuAccessibility.h>
#include <PallwickMac/Views/OverlayListView.h>
#include <PallwickMac/Views/StyleInspectorView.h>
#include <PallwickMac/Views/SymbolButton.h>
#include <PallwickMac/Views/TextLabel.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QMenu>
#include <QScrollArea>
#include <QVBoxLayout>

namespace pallwick {

namespace {

constexpr int minimumSidebarWidth = 240;
constexpr int idealSidebarWidth = 280;
constexpr int maximumSidebarWidth = 340;

}  // namespace

ContentView::ContentView(AppModel& model, QWidget* parent) : QWidget(parent), model_(model) {
    auto* sidebar = new OverlayListView(model_);
    sidebar->setMinimumWidth(minimumSidebarWidth);
    sidebar->setMaximumWidth(maximumSidebarWidth);

    auto* columns = new HairlineSplitter(this);
    columns->addWidget(sidebar);
    columns->addWidget(makeDetailColumn());
    columns->setChildrenCollapsible(false);
    columns->setStretchFactor(0, 0);
    columns->setStretchFactor(1, 1);
    columns->setSizes({idealSidebarWidth, idealSidebarWidth * 2});

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(columns);

    connect(&model_, &AppModel::overlaysChanged, this, &ContentView::showOverlays);
    connect(&model_, &AppModel::editModeChanged, this, &ContentView::showEditMode);
    connect(&model_, &AppModel::statusTextChanged, this, &ContentView::showStatusText);
    showOverlays();
    showEditMode();
    showStatusText();
}

QWidget* ContentView::makeDetailColumn() {
    auto* detail = new QWidget;
    auto* column = new QVBoxLayout(detail);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(makeButtonBar());
    column->addWidget(new Divider);
    column->addWidget(makeInspector(), 1);
    column->addLayout(makeStatusRow());
    return detail;
}

QLayout* ContentView::makeButtonBar() {
    auto* addButton = new SymbolButton(QStringLiteral("Add"), Symbol::plusRectangleOnRectangle);
    modeButton_ = new SymbolButton(QStringLiteral("Lock"), Symbol::lock);
    clearButton_ = new SymbolButton(QStringLiteral("Clear"), Symbol::trash);
    connect(addButton, &QAbstractButton::clicked, &model_, &AppModel::addOverlay);
    connect(modeButton_, &QAbstractButton::clicked, &model_, &AppModel::toggleEditMode);
    connect(clearButton_, &QAbstractButton::clicked, &model_, &AppModel::clearOverlays);

    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(12, 8, 12, 8);
    bar->setSpacing(8);
    bar->addWidget(addButton);
    bar->addWidget(modeButton_);
    bar->addWidget(clearButton_);
    bar->addStretch();
    bar->addWidget(makePresetsButton());
    return bar;
}

QWidget* ContentView::makePresetsButton() {
    auto* button = new SymbolButton(QStringLiteral("Presets"), Symbol::trayFull);
    auto* menu = new QMenu(button);
    menu->addAction(QStringLiteral("Save Display Preset"), &model_, &AppModel::saveDisplayPreset);
    menu->addAction(QStringLiteral("Load Display Preset"), &model_, &AppModel::loadDisplayPreset);
    menu->addSeparator();
    menu->addAction(QStringLiteral("Save App Preset"), &model_, &AppModel::saveApplicationPreset);
    menu->addAction(QStringLiteral("Load App Preset"), &model_, &AppModel::loadApplicationPreset);
    MenuAccessibility::follow(*menu);
    button->setMenu(menu);
    return button;
}

QWidget* ContentView::makeInspector() {
    auto* content = new QWidget;
    auto* padding = new QVBoxLayout(content);
    padding->setContentsMargins(16, 12, 16, 12);
    padding->addWidget(new StyleInspectorView(model_));

    auto* scrollArea = new QScrollArea;
    scrollArea->setFrameShape(QFrame::NoFrame);
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollArea->setWidgetResizable(true);
    scrollArea->setWidget(content);
    scrollArea->setFocusPolicy(Qt::NoFocus);
    scrollArea->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    // The Tab key brings what it reaches into sight by itself; a screen reader that moves the focus does not.
    connect(qApp, &QApplication::focusChanged, scrollArea, [scrollArea](const QWidget*, QWidget* now) {
        // What is pressed by the mouse stays under it.
        if (now && scrollArea->widget()->isAncestorOf(now) && QGuiApplication::mouseButtons() == Qt::NoButton) {
            scrollArea->ensureWidgetVisible(now);
        }
    });
    return scrollArea;
}

QLayout* ContentView::makeStatusRow() {
    statusLabel_ = new TextLabel(TextStyle::caption, TextColor::secondary);
    statusLabel_->setOverflow(TextLabel::Overflow::elided);
    modeLabel_ = new TextLabel(TextStyle::caption, TextColor::secondary);

    auto* row = new QHBoxLayout;
    row->setContentsMargins(12, 12, 12, 12);
    row->setSpacing(12);
    row->addWidget(statusLabel_, 1);
    row->addWidget(modeLabel_);
    return row;
}

void ContentView::showOverlays() {
    clearButton_->setEnabled(!model_.overlays().empty());
}

void ContentView::showEditMode() {
    if (model_.editMode()) {
        modeButton_->setLabel(QStringLiteral("Lock"), Symbol::lock);
        modeLabel_->setText(QStringLiteral("Edit mode"));
        modeLabel_->setTextColor(TextColor::blue);
    } else {
        modeButton_->setLabel(QStringLiteral("Edit"), Symbol::sliderHorizontal3);
        modeLabel_->setText(QStringLiteral("Locked"));
        modeLabel_->setTextColor(TextColor::secondary);
    }
}

void ContentView::showStatusText() {
    statusLabel_->setText(model_.statusText());
}

}  // namespace pallwick
