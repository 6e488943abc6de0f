#include <PallwickMac/Views/ControlPainting.h>

#include <PallwickMac/Views/Appearance.h>

#include <QPainter>
#include <QStyleOption>

namespace pallwick {

QColor controlFill(const QStyleOption& option) {
    const QPalette& palette = option.palette;
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const bool pressed = option.state.testFlag(QStyle::State_Sunken);
    const bool hovered = enabled && option.state.testFlag(QStyle::State_MouseOver);
    if (isDark(palette)) {
        return blended(palette.color(QPalette::Button), text, pressed ? 0.04 : hovered ? 0.16 : enabled ? 0.1 : 0.05);
    }
    const QColor raised = blended(palette.color(QPalette::Button), Qt::white, enabled ? 0.75 : 0.2);
    return pressed ? blended(window, text, 0.1) : hovered ? blended(raised, text, 0.04) : raised;
}

void drawControlSurface(QPainter& painter, const QRectF& rect, double radius, const QStyleOption& option) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor outline = controlOutline(option.palette);
    if (!option.state.testFlag(QStyle::State_Enabled)) {
        outline = separatorColor(option.palette);
    }
    painter.setPen(outline);
    painter.setBrush(controlFill(option));
    painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.restore();
}

bool showsFocus(const QStyleOption& option) {
    return option.state.testFlag(QStyle::State_HasFocus) && option.state.testFlag(QStyle::State_KeyboardFocusChange);
}

void drawFocusRing(QPainter& painter, const QRectF& rect, double radius, const QPalette& palette) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(focusColor(palette), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius, radius);
    painter.restore();
}

}  // namespace pallwick
