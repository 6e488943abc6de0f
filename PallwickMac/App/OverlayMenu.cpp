#include <PallwickMac/App/OverlayMenu.h>

#include <PallwickMac/App/AppModel.h>

namespace pallwick {

OverlayMenu::OverlayMenu(AppModel& model, QWidget* parent) : QMenu(QStringLiteral("Overlay"), parent) {
    QAction* add = addAction(QStringLiteral("Add Overlay"), &model, &AppModel::addOverlay);
    add->setShortcut(Qt::CTRL | Qt::Key_N);
    QAction* mode = makeEditModeAction(model, this);
    mode->setShortcut(Qt::CTRL | Qt::Key_E);
    addAction(mode);
    QAction* clear = addAction(QStringLiteral("Clear All"), &model, &AppModel::clearOverlays);
    clear->setShortcut(Qt::CTRL | Qt::Key_Backspace);
    for (QAction* action : actions()) {
        action->setShortcutContext(Qt::ApplicationShortcut);
        // A key held down for a moment too long must not add one overlay after another, nor flip the mode back.
        action->setAutoRepeat(false);
    }
}

QAction* makeEditModeAction(AppModel& model, QObject* parent) {
    auto* action = new QAction(parent);
    const auto showMode = [action, &model] {
        action->setText(model.editMode() ? QStringLiteral("Lock Overlays") : QStringLiteral("Edit Overlays"));
    };
    QObject::connect(action, &QAction::triggered, &model, &AppModel::toggleEditMode);
    QObject::connect(&model, &AppModel::editModeChanged, action, showMode);
    showMode();
    return action;
}

}  // namespace pallwick
