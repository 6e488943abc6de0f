#pragma once

#include <QPalette>
#include <QRectF>

class QPainter;
class QStyleOption;

namespace pallwick {

/// What a control's surface is filled with, by its state.
[[nodiscard]] QColor controlFill(const QStyleOption& option);

/// A bordered surface that can be pressed.
void drawControlSurface(QPainter& painter, const QRectF& rect, double radius, const QStyleOption& option);

/// True while the keyboard is in use and would act on the control.
[[nodiscard]] bool showsFocus(const QStyleOption& option);

/// The mark of the focused control, drawn along the inner edge of `rect`.
void drawFocusRing(QPainter& painter, const QRectF& rect, double radius, const QPalette& palette);

}  // namespace pallwick
