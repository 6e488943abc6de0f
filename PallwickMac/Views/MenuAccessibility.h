#pragma once

#include <QWindow>

class QMenu;

namespace pallwick {

/// Lets a screen reader find an open menu that no menu bar holds. The toolkit lists neither a button's menu nor a
/// context menu anywhere, only what hangs on a window that is no popup: so this is one, never created on the server,
/// for as long as the menu is open.
class MenuAccessibility final : public QWindow {
    Q_OBJECT

public:
    /// Stands for `menu`, which owns it, whenever that is open.
    static void follow(QMenu& menu);

    [[nodiscard]] QAccessibleInterface* accessibleRoot() const override;

private:
    explicit MenuAccessibility(QMenu& menu) : menu_(menu) {}

    QMenu& menu_;
};

}  // namespace pallwick
