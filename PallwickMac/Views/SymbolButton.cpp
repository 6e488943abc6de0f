#include <PallwickMac/Views/SymbolButton.h>

#include <QStyleOptionButton>

namespace pallwick {

namespace {

constexpr QSize symbolSize(16, 16);

}  // namespace

SymbolButton::SymbolButton(const QString& text, Symbol symbol, Role role, QWidget* parent)
    : QPushButton(parent), role_(role) {
    setIconSize(symbolSize);
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
    if (role_ == Role::destructive && isEnabled()) {
        option->palette.setColor(QPalette::ButtonText, textColor(TextColor::destructive, option->palette));
    }
}

SymbolOnlyButton::SymbolOnlyButton(const QString& name, Symbol symbol, const QString& toolTip, QWidget* parent)
    : QToolButton(parent) {
    setIcon(SymbolIcon(symbol, this));
    setIconSize(symbolSize);
    setAutoRaise(true);
    setFocusPolicy(Qt::StrongFocus);
    setToolTip(toolTip);
    setAccessibleName(name);
    setAccessibleDescription(toolTip);
}

}  // namespace pallwick
