#include <PallwickMac/Views/TextLabel.h>

#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <QToolTip>

#include <algorithm>

namespace pallwick {

TextLabel::TextLabel(TextStyle style, TextColor color, const QString& text, QWidget* parent)
    : QLabel(text, parent), style_(style), color_(color) {
    setTextFormat(Qt::PlainText);
    followParent();
}

void TextLabel::setTextColor(TextColor color) {
    if (color_ == color) {
        return;
    }
    color_ = color;
    update();
}

void TextLabel::setOverflow(Overflow overflow) {
    overflow_ = overflow;
    QSizePolicy policy(overflow == Overflow::none ? QSizePolicy::Preferred : QSizePolicy::Ignored,
                       overflow == Overflow::twoLines ? QSizePolicy::Minimum : QSizePolicy::Preferred);
    policy.setHeightForWidth(overflow == Overflow::twoLines);
    setSizePolicy(policy);
}

void TextLabel::setMonospacedDigits(bool monospaced) {
    monospacedDigits_ = monospaced;
    updateGeometry();
}

QSize TextLabel::sizeHint() const {
    const QSize size = QLabel::sizeHint();
    return monospacedDigits_ ? QSize(std::max(size.width(), monospacedWidth()), size.height()) : size;
}

QSize TextLabel::minimumSizeHint() const {
    const QSize size = QLabel::minimumSizeHint();
    if (overflow_ != Overflow::none) {
        return {0, size.height()};
    }
    return monospacedDigits_ ? QSize(std::max(size.width(), monospacedWidth()), size.height()) : size;
}

bool TextLabel::hasHeightForWidth() const {
    return overflow_ == Overflow::twoLines || QLabel::hasHeightForWidth();
}

int TextLabel::heightForWidth(int width) const {
    if (overflow_ != Overflow::twoLines) {
        return QLabel::heightForWidth(width);
    }
    const QSize margins = size() - contentsRect().size();
    const auto count = static_cast<int>(lines(width - margins.width()).shown.size());
    return margins.height() + fontMetrics().height() + (count - 1) * fontMetrics().lineSpacing();
}

TextLabel::Lines TextLabel::lines(int width) const {
    QTextLayout layout(text(), font());
    QTextOption wrapping;
    wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(wrapping);
    layout.beginLayout();
    QTextLine first = layout.createLine();
    if (first.isValid()) {
        first.setLineWidth(width);
    }
    layout.endLayout();
    const qsizetype broken = first.isValid() ? first.textLength() : text().size();
    if (broken >= text().size()) {
        return {.shown = {text()}, .isCutShort = false};
    }
    const QString rest = text().mid(broken);
    const QString shown = fontMetrics().elidedText(rest, Qt::ElideRight, width);
    return {.shown = {text().left(broken).trimmed(), shown}, .isCutShort = shown != rest};
}

bool TextLabel::isCutShort() const {
    const int width = contentsRect().width();
    switch (overflow_) {
        case Overflow::none:
            return false;
        case Overflow::elided:
            return fontMetrics().horizontalAdvance(text()) > width;
        case Overflow::twoLines:
            return lines(width).isCutShort;
    }
    return false;
}

bool TextLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && isCutShort()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), plainToolTip(text()), this);
        return true;
    }
    if (event->type() == QEvent::ParentChange) {
        followParent();
    }
    return QLabel::event(event);
}

// The application's font reaches windows and what they hold, but no size that a widget has set itself.
bool TextLabel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FontChange && watched == parentWidget()) {
        setFont(textFont(style_, parentWidget()->font()));
    }
    return QLabel::eventFilter(watched, event);
}

void TextLabel::followParent() {
    QWidget* parent = parentWidget();
    if (parent == nullptr) {
        setFont(textFont(style_, QApplication::font()));
        return;
    }
    // What a former parent says later is not heeded.
    parent->installEventFilter(this);
    setFont(textFont(style_, parent->font()));
}

// The colour is worked out here rather than kept in a palette of the label's own, which would hide the window's
// changes.
void TextLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, textColor(color_, colours));
    const QRect area = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
    if (monospacedDigits_) {
        painter.setPen(colours.color(QPalette::WindowText));
        int x = area.x() + area.width() - monospacedWidth();
        const QString shown = text();
        for (const QChar character : shown) {
            const int width = advance(character);
            painter.drawText(QRect(x, area.y(), width, area.height()), Qt::AlignCenter | Qt::TextDontClip, character);
            x += width;
        }
        return;
    }
    const QString shown =
        overflow_ == Overflow::elided ? fontMetrics().elidedText(text(), Qt::ElideRight, area.width()) : text();
    if (overflow_ == Overflow::twoLines) {
        const QStringList shownLines = lines(area.width()).shown;
        const int first = static_cast<int>(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignTop));
        for (int i = 0; i < shownLines.size(); ++i) {
            style()->drawItemText(&painter, area.translated(0, i * fontMetrics().lineSpacing()), first, colours,
                                  isEnabled(), shownLines[i], QPalette::WindowText);
        }
        return;
    }
    const int flags = static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())) |
                      (wordWrap() ? static_cast<int>(Qt::TextWordWrap) : 0);
    style()->drawItemText(&painter, area, flags, colours, isEnabled(), shown, QPalette::WindowText);
}

int TextLabel::digitWidth() const {
    int width = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        width = std::max(width, fontMetrics().horizontalAdvance(QChar(digit)));
    }
    return width;
}

int TextLabel::advance(QChar character) const {
    const bool isDigit = character >= QLatin1Char('0') && character <= QLatin1Char('9');
    return isDigit ? digitWidth() : fontMetrics().horizontalAdvance(character);
}

int TextLabel::monospacedWidth() const {
    const QString shown = text();
    int width = 0;
    for (const QChar character : shown) {
        width += advance(character);
    }
    return width;
}

}  // namespace pallwick
