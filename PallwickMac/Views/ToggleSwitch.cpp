#include <PallwickMac/Views/ToggleSwitch.h>

#include <PallwickMac/Views/Appearance.h>
#include <PallwickMac/Views/ControlPainting.h>

#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace pallwick {

namespace {

constexpr int trackWidth = 34;
constexpr int trackHeight = 20;
constexpr int gap = 8;

}  // namespace

ToggleSwitch::ToggleSwitch(const QString& text, QWidget* parent) : QCheckBox(text, parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(text);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + gap + trackWidth,
            std::max(fontMetrics().height(), trackHeight + 4)};
}

void ToggleSwitch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QStyleOptionButton option;
    initStyleOption(&option);
    const QColor text = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
    painter.setPen(text);
    painter.drawText(rect().adjusted(0, 0, -(gap + trackWidth), 0), Qt::AlignLeft | Qt::AlignVCenter, this->text());

    const double diameter = trackHeight - 4.0;
    const QRectF track(width() - trackWidth, (height() - trackHeight) / 2, trackWidth, trackHeight);
    const QColor off = blended(palette().color(QPalette::Window), text, 0.35);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? palette().color(QPalette::Highlight) : off);
    painter.drawRoundedRect(track, trackHeight / 2.0, trackHeight / 2.0);
    painter.setBrush(Qt::white);
    painter.drawEllipse(
        QRectF(isChecked() ? track.x() + trackWidth - 2 - diameter : track.x() + 2, track.y() + 2, diameter, diameter));
    if (showsFocus(option)) {
        drawFocusRing(painter, track.adjusted(-2, -2, 0, 2), trackHeight / 2.0 + 1, palette());
    }
}

}  // namespace pallwick
