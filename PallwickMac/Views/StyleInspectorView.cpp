#include <PallwickMac/Views/StyleInspectorView.h>

#include <PallwickMac/App/AppModel.h>
#include <PallwickMac/Services/OverlayColor.h>
#include <PallwickMac/Views/ColorWell.h>
#include <PallwickMac/Views/ContentUnavailableView.h>
#include <PallwickMac/Views/Divider.h>
#include <PallwickMac/Views/OverlayHexString.h>
#include <PallwickMac/Views/SegmentedPicker.h>
#include <PallwickMac/Views/SliderRow.h>
#include <PallwickMac/Views/SymbolButton.h>
#include <PallwickMac/Views/TextLabel.h>
#include <PallwickMac/Views/ToggleSwitch.h>
#include <PallwickMac/Views/WindowAttachmentSection.h>
#include <PallwickMac/Views/WrappingRow.h>

#include <QGridLayout>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <cstddef>

namespace pallwick {

namespace {

constexpr int maximumPaneWidth = 440;
constexpr int rowLabelWidth = 58;
constexpr int shapePickerWidth = 220;

QString shapeTitle(OverlayShape shape) {
    const std::string_view text = title(shape);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QStringList shapeTitles() {
    QStringList titles;
    for (const OverlayShape shape : allCases<OverlayShape>()) {
        titles.append(shapeTitle(shape));
    }
    return titles;
}

int shapeIndex(OverlayShape shape) {
    const auto& shapes = allCases<OverlayShape>();
    return static_cast<int>(std::ranges::find(shapes, shape) - shapes.begin());
}

}  // namespace

StyleInspectorView::StyleInspectorView(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      shapePicker_(new SegmentedPicker(shapeTitles())),
      blurRow_(new SliderRow(QStringLiteral("Blur"), 0, 100, QStringLiteral("%"))),
      opacityRow_(new SliderRow(QStringLiteral("Opacity"), 0, 100, QStringLiteral("%"))),
      glassSwitch_(new ToggleSwitch(QStringLiteral("Glass blur"))),
      colorWell_(new ColorWell(QStringLiteral("Color"))),
      colorText_(new TextLabel(TextStyle::caption, TextColor::secondary)),
      placeholder_(new ContentUnavailableView(
          QStringLiteral("No Overlays"), Symbol::rectangleDashed,
          QStringLiteral("Add a manual overlay to cover sensitive content before screen sharing."), this)),
      pane_(makePane()),
      pages_(new QStackedLayout) {
    pages_->addWidget(placeholder_);
    pages_->addWidget(pane_);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addLayout(pages_);

    connect(shapePicker_, &SegmentedPicker::indexChosen, &model_, [this](int index) {
        model_.updateSelectedShape(allCases<OverlayShape>()[static_cast<std::size_t>(index)]);
    });
    connect(blurRow_, &SliderRow::valueChosen, &model_,
            [this](int value) { model_.updateSelectedStyle(value, std::nullopt, std::nullopt, std::nullopt); });
    connect(opacityRow_, &SliderRow::valueChosen, &model_,
            [this](int value) { model_.updateSelectedStyle(std::nullopt, std::nullopt, value, std::nullopt); });
    // A screen reader flips the switch without a click.
    connect(glassSwitch_, &QAbstractButton::toggled, &model_,
            [this](bool on) { model_.updateSelectedStyle(std::nullopt, std::nullopt, std::nullopt, on); });
    connect(colorWell_, &ColorWell::colorPicked, &model_, [this](const QColor& color) {
        model_.updateSelectedStyle(std::nullopt, overlayHexString(color).toStdString(), std::nullopt, std::nullopt);
    });
    connect(&model_, &AppModel::overlaysChanged, this, &StyleInspectorView::showSelectedOverlay);
    connect(&model_, &AppModel::selectedOverlayIDChanged, this, &StyleInspectorView::showSelectedOverlay);
    showSelectedOverlay();
}

QWidget* StyleInspectorView::makePane() {
    auto* pane = new QWidget(this);

    auto* subtitle =
        new TextLabel(TextStyle::callout, TextColor::secondary,
                      QStringLiteral("Drag the overlay to move it. Pull the bottom-right handle to resize."));
    subtitle->setWordWrap(true);
    auto* header = new QVBoxLayout;
    header->setSpacing(2);
    header->addWidget(new TextLabel(TextStyle::title3, TextColor::primary, QStringLiteral("Overlay Style")));
    header->addWidget(subtitle);

    auto* removeButton =
        new SymbolButton(QStringLiteral("Remove Overlay"), Symbol::trash, SymbolButton::Role::destructive);
    connect(removeButton, &QAbstractButton::clicked, &model_, &AppModel::removeSelectedOverlay);

    auto* content = new QWidget(pane);
    content->setMaximumWidth(maximumPaneWidth);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(12);
    column->addLayout(header);
    column->addLayout(makeShapeRow());
    column->addWidget(blurRow_);
    column->addWidget(opacityRow_);
    column->addLayout(makeGlassAndColorRow());
    column->addWidget(new Divider);
    column->addWidget(new WindowAttachmentSection(model_));
    column->addWidget(new Divider);
    column->addWidget(removeButton, 0, Qt::AlignLeft);
    column->addStretch();

    auto* row = new QHBoxLayout(pane);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    // All the width goes to the content until it has its maximum; only then does the stretch take the rest.
    row->addWidget(content, 1000);
    row->addStretch(1);
    return pane;
}

QLayout* StyleInspectorView::makeShapeRow() {
    auto* label = new TextLabel(TextStyle::body, TextColor::secondary, QStringLiteral("Shape"));
    shapePicker_->setAccessibleName(label->text());

    // Both columns grow with a larger font.
    auto* row = new QGridLayout;
    row->setHorizontalSpacing(12);
    row->setColumnMinimumWidth(0, rowLabelWidth);
    row->setColumnMinimumWidth(1, shapePickerWidth);
    row->setColumnStretch(2, 1);
    row->addWidget(label, 0, 0);
    row->addWidget(shapePicker_, 0, 1);
    return row;
}

QLayout* StyleInspectorView::makeGlassAndColorRow() {
    auto* row = new WrappingRow(16, 8);
    row->addWidget(glassSwitch_);
    row->addWidget(colorWell_);
    row->addWidget(colorText_);
    return row;
}

void StyleInspectorView::showSelectedOverlay() {
    const BlurOverlay* overlay = model_.selectedOverlay();
    const std::optional<UUID> id = overlay ? std::optional(overlay->id()) : std::nullopt;
    if (shownOverlayID_ != id) {
        // A colour chosen for one overlay must not land on another.
        colorWell_->dismissChooser();
        shownOverlayID_ = id;
    }
    pages_->setCurrentWidget(overlay ? pane_ : placeholder_);
    if (!overlay) {
        return;
    }
    const BlurStyle& style = overlay->style;
    shapePicker_->setCurrentIndex(shapeIndex(overlay->shape));
    blurRow_->setValue(style.intensity);
    opacityRow_->setValue(style.opacity);
    {
        const QSignalBlocker onlyShown(glassSwitch_);
        glassSwitch_->setChecked(style.glassBlur);
    }
    colorWell_->setColor(overlayColor(style.colorHex, 1));
    colorText_->setText(QString::fromStdString(style.colorHex));
}

}  // namespace pallwick
