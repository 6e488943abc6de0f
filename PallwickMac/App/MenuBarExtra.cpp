#include <PallwickMac/App/MenuBarExtra.h>

#include <PallwickMac/App/AppModel.h>
#include <PallwickMac/App/OverlayMenu.h>
#include <PallwickMac/Platform/DesktopPlatform.h>

#include <QCoreApplication>
#include <QCursor>
#include <QEvent>

namespace pallwick {

MenuBarExtra::MenuBarExtra(AppModel& model, DesktopPlatform& platform, const QIcon& icon) : icon_(icon) {
    makeEntries(model);
    item_ = platform.makeStatusItem(
        {.title = QStringLiteral("Pallwick"), .toolTip = QStringLiteral("Pallwick"), .icon = icon_, .menu = entries()});
    for (QAction* action : menu_.actions()) {
        connect(action, &QAction::changed, this, [this] { item_->setMenu(entries()); });
    }
    connect(item_.get(), &StatusItem::activated, this, &MenuBarExtra::activated);
    connect(item_.get(), &StatusItem::entryChosen, this, &MenuBarExtra::choose);
    connect(item_.get(), &StatusItem::menuRequested, this, [this] { menu_.popup(QCursor::pos()); });
    qApp->installEventFilter(this);
}

MenuBarExtra::~MenuBarExtra() = default;

void MenuBarExtra::makeEntries(AppModel& model) {
    menu_.addAction(QStringLiteral("Add Overlay"), &model, &AppModel::addOverlay);
    menu_.addAction(makeEditModeAction(model, &menu_));
    menu_.addSeparator();
    menu_.addAction(QStringLiteral("Save Display Preset"), &model, &AppModel::saveDisplayPreset);
    menu_.addAction(QStringLiteral("Load Display Preset"), &model, &AppModel::loadDisplayPreset);
    menu_.addSeparator();
    menu_.addAction(QStringLiteral("Clear All"), &model, &AppModel::clearOverlays);
    menu_.addAction(QStringLiteral("Quit"), qApp, &QCoreApplication::quit);
}

std::vector<StatusItemEntry> MenuBarExtra::entries() const {
    std::vector<StatusItemEntry> entries;
    for (const QAction* action : menu_.actions()) {
        entries.push_back({.label = action->text(), .isSeparator = action->isSeparator()});
    }
    return entries;
}

void MenuBarExtra::choose(int index) {
    if (QAction* action = menu_.actions().value(index)) {
        action->trigger();
    }
}

bool MenuBarExtra::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
        item_->setIcon(icon_);
    }
    return false;
}

}  // namespace pallwick
