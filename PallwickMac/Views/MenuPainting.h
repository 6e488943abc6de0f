#pragma once

#include <QSize>

class QPainter;
class QStyleOptionMenuItem;
class QWidget;

namespace pallwick {

/// Whether an entry stands in a menu of texts alone, without icons and check marks, or in a picker's list: those are
/// drawn here, all others by the toolkit.
/// `widget` is the menu or the picker, if it is known.
[[nodiscard]] bool isPlainMenuItem(const QStyleOptionMenuItem& option, const QWidget* widget);

/// The size of such an entry, keys not counted.
[[nodiscard]] QSize plainMenuItemSize(const QStyleOptionMenuItem& option);

/// Text at the left, cut in its middle where it is too long, keys at the right; a rounded surface marks the entry that
/// would be chosen.
void drawPlainMenuItem(QPainter& painter, const QStyleOptionMenuItem& option);

/// A title in a menu bar.
void drawMenuBarItem(QPainter& painter, const QStyleOptionMenuItem& option);

}  // namespace pallwick
