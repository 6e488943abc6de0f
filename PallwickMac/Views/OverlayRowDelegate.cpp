#include <PallwickMac/Views/OverlayRowDelegate.h>

#include <PallwickMac/Views/Appearance.h>
#include <PallwickMac/Views/ControlPainting.h>
#include <PallwickMac/Views/OverlayListModel.h>

#include <QAbstractItemView>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace pallwick {

namespace {

constexpr int outerMargin = 8;
constexpr int rowGap = 1;
constexpr int padding = 8;
constexpr int lineSpacing = 2;
constexpr double radius = 6;

/// What a row is filled with; pale enough for the same text colours on every row.
QColor rowFill(const QStyleOptionViewItem& option) {
    const QColor background = sidebarBackground(option.palette);
    if (option.state.testFlag(QStyle::State_Selected)) {
        return blended(background, option.palette.color(QPalette::Active, QPalette::Highlight), 0.24);
    }
    if (option.state.testFlag(QStyle::State_MouseOver)) {
        return blended(background, option.palette.color(QPalette::WindowText), 0.05);
    }
    return background;
}

QColor detailColor(const QPalette& palette, const QColor& fill) {
    return legibleOn(fill, textColor(TextColor::secondary, palette), palette.color(QPalette::WindowText));
}

QRect textArea(const QRect& row) {
    return row.adjusted(outerMargin + padding, rowGap + padding - 2, -(outerMargin + padding), -(rowGap + padding - 2));
}

}  // namespace

void OverlayRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QFont titleFont = textFont(TextStyle::body, option.font);
    const QFont detailFont = textFont(TextStyle::caption, option.font);
    const QFontMetrics titleMetrics(titleFont);
    const QFontMetrics detailMetrics(detailFont);
    const QRect shape = option.rect.adjusted(outerMargin, rowGap, -outerMargin, -rowGap);
    const QRect text = textArea(option.rect);
    const QColor fill = rowFill(option);

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(fill);
    painter->drawRoundedRect(shape, radius, radius);
    if (showsFocus(option)) {
        drawFocusRing(*painter, shape, radius, option.palette);
    }

    painter->setFont(titleFont);
    painter->setPen(option.palette.color(QPalette::WindowText));
    painter->drawText(QRect(text.x(), text.y(), text.width(), titleMetrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
                      index.data(OverlayListModel::TitleRole).toString());

    painter->setFont(detailFont);
    painter->setPen(detailColor(option.palette, fill));
    painter->drawText(
        QRect(text.x(), text.y() + titleMetrics.height() + lineSpacing, text.width(), detailMetrics.height()),
        Qt::AlignLeft | Qt::AlignVCenter,
        detailMetrics.elidedText(index.data(OverlayListModel::DetailRole).toString(), Qt::ElideRight, text.width()));
    painter->restore();
}

QSize OverlayRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    const int height = QFontMetrics(textFont(TextStyle::body, option.font)).height() + lineSpacing +
                       QFontMetrics(textFont(TextStyle::caption, option.font)).height() + 2 * (rowGap + padding - 2);
    return {0, height};
}

bool OverlayRowDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                                   const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    const QString detail = index.data(OverlayListModel::DetailRole).toString();
    const QFontMetrics metrics(textFont(TextStyle::caption, option.font));
    if (metrics.horizontalAdvance(detail) > textArea(option.rect).width()) {
        QToolTip::showText(event->globalPos(), detail, view);
    } else {
        QToolTip::hideText();
    }
    return true;
}

}  // namespace pallwick
