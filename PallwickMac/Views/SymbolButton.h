#pragma once

#include <PallwickMac/Views/SymbolIcon.h>

#include <QPushButton>
#include <QToolButton>

namespace pallwick {

/// A bordered button of a symbol and a text.
class SymbolButton final : public QPushButton {
    Q_OBJECT

public:
    enum class Role { normal, destructive };

    SymbolButton(const QString& text, Symbol symbol, Role role = Role::normal, QWidget* parent = nullptr);

    void setLabel(const QString& text, Symbol symbol);

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
    void changeEvent(QEvent* event) override;

private:
    Role role_;
};

/// A borderless button of a symbol alone; `name` is what a screen reader says, `toolTip` what it does.
class SymbolOnlyButton final : public QToolButton {
    Q_OBJECT

public:
    SymbolOnlyButton(const QString& name, Symbol symbol, const QString& toolTip, QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;
};

}  // namespace pallwick
