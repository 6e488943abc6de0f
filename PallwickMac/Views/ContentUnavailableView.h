#pragma once

#include <PallwickMac/Views/SymbolIcon.h>

#include <QWidget>

namespace pallwick {

/// Stands where content would be: a symbol, a title and what to do about it, in the middle of its area.
class ContentUnavailableView final : public QWidget {
    Q_OBJECT

public:
    ContentUnavailableView(const QString& title, Symbol symbol, const QString& description, QWidget* parent = nullptr);
};

}  // namespace pallwick
