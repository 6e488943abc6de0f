#include <PallwickMac/Platform/X11/X11StatusItem.h>

#include <utility>

namespace pallwick::x11 {

X11StatusItem::X11StatusItem(SystemTray& tray, const StatusItemDescription& description)
    : notifierItem_(description), trayIcon_(tray, description) {
    for (StatusItem* item : {static_cast<StatusItem*>(&notifierItem_), static_cast<StatusItem*>(&trayIcon_)}) {
        connect(item, &StatusItem::activated, this, &StatusItem::activated);
        connect(item, &StatusItem::entryChosen, this, &StatusItem::entryChosen);
        connect(item, &StatusItem::menuRequested, this, &StatusItem::menuRequested);
        connect(item, &StatusItem::shownChanged, this, [this] {
            if (std::exchange(wasShown_, isShown()) != isShown()) {
                Q_EMIT shownChanged(isShown());
            }
        });
    }
    connect(&notifierItem_, &freedesktop::StatusNotifierItem::unwantedChanged, &trayIcon_, &SystemTrayIcon::setWanted);
    trayIcon_.setWanted(notifierItem_.isUnwanted());
}

void X11StatusItem::setIcon(const QIcon& icon) {
    notifierItem_.setIcon(icon);
    trayIcon_.setIcon(icon);
}

void X11StatusItem::setMenu(const std::vector<StatusItemEntry>& entries) {
    notifierItem_.setMenu(entries);
    trayIcon_.setMenu(entries);
}

}  // namespace pallwick::x11
