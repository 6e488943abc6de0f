#include <PallwickMac/Views/SymbolButton.h>

#include <QEvent>
#include <QStyleOptionButton>

namespace pallwick {

namespace {

void fitSymbol(QAbstractButton& button) {
    const int side = symbolSide(button.fontMetrics());
    button.setIconSize({side, side});
}

}  // namespace

SymbolButton::SymbolButton(const QString& text, Symbol symbol, Role role, QWidget* parent)
    : QPushButton(parent), role_(role) {
    fitSymbol(*this);
    setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    setLabel(text, symbol);
}

void SymbolButton::setLabel(const QString& text, Symbol symbol) {
    setText(text);
    setAccessibleName(text);
    setIcon(role_ == Role::destructive ? SymbolIcon(symbol, this, TextColor::destructive) : SymbolIcon(symbol, this));
}

void SymbolButton::initStyleOption(QStyleOptionButton* option) const {
    QPushButton::initStyleOption(option);
    if (!isEnabled()) {
        option->palette.setColor(QPalette::ButtonText, disabledTextColor(option->palette));
    } else if (role_ == Role::destructive) {
        option->palette.setColor(QPalette::ButtonText, textColor(TextColor::destructive, option->palette));
    }
}

void SymbolButton::changeEvent(QEvent* event) {
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        fitSymbol(*this);
    }
}

SymbolOnlyButton::SymbolOnlyButton(const QString& name, Symbol symbol, const QString& toolTip, QWidget* parent)
    : QToolButton(parent) {
    setIcon(SymbolIcon(symbol, this));
    fitSymbol(*this);
    setAutoRaise(true);
    setFocusPolicy(Qt::StrongFocus);
    setToolTip(toolTip);
    setAccessibleName(name);
    setAccessibleDescription(toolTip);
}

void SymbolOnlyButton::changeEvent(QEvent* event) {
    QToolButton::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        fitSymbol(*this);
    }
}

}  // namespace pallwick
