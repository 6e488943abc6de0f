#include <PallwickMac/Views/WrappingRow.h>

#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace pallwick {

WrappingRow::WrappingRow(int spacing, int lineSpacing) : lineSpacing_(lineSpacing) {
    setContentsMargins(0, 0, 0, 0);
    setSpacing(spacing);
}

WrappingRow::~WrappingRow() = default;

void WrappingRow::addItem(QLayoutItem* item) {
    items_.emplace_back(item);
}

QLayoutItem* WrappingRow::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* WrappingRow::takeAt(int index) {
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    const auto position = items_.begin() + index;
    QLayoutItem* item = position->release();
    items_.erase(position);
    return item;
}

int WrappingRow::heightForWidth(int width) const {
    int height = 0;
    for (const Line& line : lines(width)) {
        height += (height == 0 ? 0 : lineSpacing_) + line.height;
    }
    return height;
}

QSize WrappingRow::sizeHint() const {
    QSize size(0, 0);
    for (const auto& item : items_) {
        const QSize hint = item->sizeHint();
        size = {size.width() + (size.width() == 0 ? 0 : spacing()) + hint.width(),
                std::max(size.height(), hint.height())};
    }
    return size;
}

QSize WrappingRow::minimumSize() const {
    QSize size(0, 0);
    for (const auto& item : items_) {
        size = size.expandedTo(item->minimumSize());
    }
    return size;
}

void WrappingRow::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    const Qt::LayoutDirection direction = parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight;
    int y = rect.y();
    for (const Line& line : lines(rect.width())) {
        int x = rect.x();
        for (std::size_t index = line.first; index < line.end; ++index) {
            QLayoutItem& item = *items_[index];
            const QSize size = item.sizeHint().boundedTo({rect.width(), line.height});
            const QRect place(x, y + (line.height - size.height()) / 2, size.width(), size.height());
            item.setGeometry(QStyle::visualRect(direction, rect, place));
            x += size.width() + spacing();
        }
        y += line.height + lineSpacing_;
    }
}

std::vector<WrappingRow::Line> WrappingRow::lines(int width) const {
    std::vector<Line> lines;
    int x = 0;
    for (std::size_t index = 0; index < items_.size(); ++index) {
        const QSize size = items_[index]->sizeHint();
        if (lines.empty() || x + size.width() > width) {
            lines.push_back({.first = index, .end = index, .height = 0});
            x = 0;
        }
        lines.back().end = index + 1;
        lines.back().height = std::max(lines.back().height, size.height());
        x += size.width() + spacing();
    }
    return lines;
}

}  // namespace pallwick
