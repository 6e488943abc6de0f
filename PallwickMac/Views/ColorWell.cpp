#include <PallwickMac/Views/ColorWell.h>

#include <PallwickMac/Views/Appearance.h>
#include <PallwickMac/Views/ControlPainting.h>

#include <QColorDialog>
#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace pallwick {

namespace {

constexpr int swatchWidth = 44;
constexpr int swatchHeight = 22;
constexpr int gap = 8;
constexpr int maximumWellWidth = 190;

}  // namespace

ColorWell::ColorWell(const QString& text, QWidget* parent) : QPushButton(text, parent) {
    setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(text);
    setMaximumWidth(maximumWellWidth);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setColor(color_);
    connect(this, &QAbstractButton::clicked, this, &ColorWell::openChooser);
}

void ColorWell::setColor(const QColor& color) {
    // Told anew at every publish of the list; what is painted anew without need makes panels above it look again.
    if (color == color_ && !accessibleDescription().isEmpty()) {
        return;
    }
    color_ = color;
    setAccessibleDescription(color.name().toUpper());
    update();
}

void ColorWell::dismissChooser() {
    if (QColorDialog* chooser = chooser_) {
        chooser->reject();
    }
}

QSize ColorWell::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + gap + swatchWidth,
            std::max(fontMetrics().height(), swatchHeight + 2)};
}

void ColorWell::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QStyleOptionButton option;
    initStyleOption(&option);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect().adjusted(0, 0, -(gap + swatchWidth), 0), Qt::AlignLeft | Qt::AlignVCenter, text());

    const QRectF frame(width() - swatchWidth, (height() - swatchHeight) / 2, swatchWidth, swatchHeight);
    drawControlSurface(painter, frame, 5, option);
    painter.setPen(blended(color_, palette().color(QPalette::WindowText), 0.25));
    painter.setBrush(color_);
    painter.drawRoundedRect(frame.adjusted(3.5, 3.5, -3.5, -3.5), 2.5, 2.5);
    if (showsFocus(option)) {
        drawFocusRing(painter, frame, 5, palette());
    }
}

void ColorWell::openChooser() {
    if (QColorDialog* chooser = chooser_) {
        chooser->activateWindow();
        return;
    }
    auto* chooser = new QColorDialog(color_, this);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setOptions(QColorDialog::DontUseNativeDialog);
    chooser->setWindowTitle(text());
    connect(chooser, &QColorDialog::colorSelected, this, &ColorWell::colorPicked);
    chooser_ = chooser;
    chooser->open();
}

}  // namespace pallwick
