#include <PallwickMac/Views/MenuPainting.h>

#include <PallwickMac/Views/Appearance.h>

#include <QComboBox>
#include <QPainter>
#include <QStyleOptionMenuItem>

namespace pallwick {

namespace {

constexpr int padding = 14;
constexpr int verticalPadding = 4;
constexpr int gapBeforeKeys = 24;
constexpr double radius = 4;

void drawSelection(QPainter& painter, const QRect& rect, const QPalette& palette) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(selectionColor(palette));
    painter.drawRoundedRect(rect, radius, radius);
}

QColor itemColor(const QStyleOptionMenuItem& option, bool selected) {
    if (!option.state.testFlag(QStyle::State_Enabled)) {
        return disabledTextColor(option.palette);
    }
    return option.palette.color(QPalette::Active, selected ? QPalette::HighlightedText : QPalette::Text);
}

bool isSelected(const QStyleOptionMenuItem& option) {
    return option.state.testFlag(QStyle::State_Selected) && option.state.testFlag(QStyle::State_Enabled);
}

}  // namespace

bool isPlainMenuItem(const QStyleOptionMenuItem& option, const QWidget* widget) {
    const bool isText =
        option.menuItemType == QStyleOptionMenuItem::Normal || option.menuItemType == QStyleOptionMenuItem::DefaultItem;
    // A picker leaves room for icons and check marks whether it has any or not.
    const bool isPicker = qobject_cast<const QComboBox*>(widget) != nullptr;
    const bool isBare = !option.menuHasCheckableItems && option.maxIconWidth == 0;
    return isText && option.icon.isNull() && (isPicker || isBare);
}

QSize plainMenuItemSize(const QStyleOptionMenuItem& option) {
    const qsizetype tab = option.text.indexOf(QLatin1Char('\t'));
    const QString text = tab < 0 ? option.text : option.text.left(tab);
    return QFontMetrics(option.font).size(Qt::TextSingleLine | Qt::TextHideMnemonic, text) +
           QSize(2 * padding + gapBeforeKeys, 2 * verticalPadding);
}

void drawPlainMenuItem(QPainter& painter, const QStyleOptionMenuItem& option) {
    const bool selected = isSelected(option);
    const int flags = static_cast<int>(Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextHideMnemonic);
    const QRect text = option.rect.adjusted(padding, 0, -padding, 0);
    const qsizetype tab = option.text.indexOf(QLatin1Char('\t'));

    painter.save();
    painter.fillRect(option.rect, option.palette.color(QPalette::Base));
    if (selected) {
        drawSelection(painter, option.rect.adjusted(4, 0, -4, 0), option.palette);
    }
    painter.setFont(option.font);
    painter.setPen(itemColor(option, selected));
    painter.drawText(text, flags | static_cast<int>(Qt::AlignLeft),
                     QFontMetrics(option.font)
                         .elidedText(tab < 0 ? option.text : option.text.left(tab), Qt::ElideMiddle, text.width(),
                                     Qt::TextHideMnemonic));
    if (tab >= 0) {
        if (!selected) {
            painter.setPen(legibleOn(option.palette.color(QPalette::Base),
                                     textColor(TextColor::secondary, option.palette),
                                     option.palette.color(QPalette::Text)));
        }
        painter.drawText(text, flags | static_cast<int>(Qt::AlignRight), option.text.mid(tab + 1));
    }
    painter.restore();
}

void drawMenuBarItem(QPainter& painter, const QStyleOptionMenuItem& option) {
    const bool selected = isSelected(option);

    painter.save();
    painter.fillRect(option.rect, option.palette.color(QPalette::Window));
    if (selected) {
        drawSelection(painter, option.rect.adjusted(1, 2, -1, -2), option.palette);
    }
    painter.setFont(option.font);
    painter.setPen(option.palette.color(QPalette::Active, selected ? QPalette::HighlightedText : QPalette::WindowText));
    painter.drawText(option.rect, static_cast<int>(Qt::AlignCenter | Qt::TextSingleLine | Qt::TextShowMnemonic),
                     option.text);
    painter.restore();
}

}  // namespace pallwick
