#include <PallwickMac/Views/MenuAccessibility.h>

#include <QAccessible>
#include <QMenu>

#include <memory>

namespace pallwick {

void MenuAccessibility::follow(QMenu& menu) {
    auto standIn = std::make_shared<std::unique_ptr<MenuAccessibility>>();
    QObject::connect(&menu, &QMenu::aboutToShow, &menu,
                     [standIn, &menu] { standIn->reset(new MenuAccessibility(menu)); });
    QObject::connect(&menu, &QMenu::aboutToHide, &menu, [standIn] { standIn->reset(); });
}

QAccessibleInterface* MenuAccessibility::accessibleRoot() const {
    return QAccessible::queryAccessibleInterface(&menu_);
}

}  // namespace pallwick
