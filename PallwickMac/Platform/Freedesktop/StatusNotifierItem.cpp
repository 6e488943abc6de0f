#include <PallwickMac/Platform/Freedesktop/DBusMenuAdaptor.h>
#include <PallwickMac/Platform/Freedesktop/StatusNotifierAdaptor.h>
#include <PallwickMac/Platform/Freedesktop/StatusNotifierItem.h>

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace pallwick::freedesktop {

namespace {

QString itemPath() {
    return QStringLiteral("/StatusNotifierItem");
}

QString menuPath() {
    return QStringLiteral("/StatusNotifierItem/Menu");
}

/// A name that goes with the item, unlike the connection's own: watchers forget an item when its name goes.
QString serviceName() {
    return QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid());
}

}  // namespace

StatusNotifierItem::StatusNotifierItem(const StatusItemDescription& description)
    : connection_(QDBusConnection::sessionBus()),
      item_(new StatusNotifierAdaptor(&itemObject_, description, menuPath(),
                                      {.activate = [this](const ActivationToken& token) { Q_EMIT activated(token); },
                                       .requestMenu = [this] { Q_EMIT menuRequested(); }})),
      menu_(new DBusMenuAdaptor(&menuObject_, [this](int index) { Q_EMIT entryChosen(index); })),
      monitor_(connection_) {
    menu_->setEntries(description.menu);
    connect(&monitor_, &StatusNotifierHostMonitor::changed, this, &StatusNotifierItem::followHost);
    followHost();
}

StatusNotifierItem::~StatusNotifierItem() {
    withdraw();
}

void StatusNotifierItem::setIcon(const QIcon& icon) {
    item_->setIcon(icon);
}

void StatusNotifierItem::setMenu(const std::vector<StatusItemEntry>& entries) {
    menu_->setEntries(entries);
}

void StatusNotifierItem::followHost() {
    switch (monitor_.host()) {
        case StatusNotifierHostMonitor::Host::unknown:
            break;
        case StatusNotifierHostMonitor::Host::none:
            withdraw();
            setUnwanted(true);
            break;
        case StatusNotifierHostMonitor::Host::present:
            setUnwanted(false);
            offer();
            break;
    }
}

void StatusNotifierItem::offer() {
    if (!std::exchange(isOffered_, true)) {
        connection_.registerObject(itemPath(), &itemObject_);
        connection_.registerObject(menuPath(), &menuObject_);
        callBus(QStringLiteral("RequestName"), {serviceName(), 0U});
    }
    QDBusMessage registration = QDBusMessage::createMethodCall(
        statusNotifierWatcherService(), statusNotifierWatcherPath(), QStringLiteral("org.kde.StatusNotifierWatcher"),
        QStringLiteral("RegisterStatusNotifierItem"));
    registration << serviceName();
    registration.setAutoStartService(false);
    auto* answer = new QDBusPendingCallWatcher(connection_.asyncCall(registration), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, number = ++offers_](auto* call) {
        call->deleteLater();
        if (number != offers_) {
            return;
        }
        const QDBusPendingReply<> reply = *call;
        if (reply.isError()) {
            withdraw();
            setUnwanted(true);
        } else {
            setShown(true);
        }
    });
}

void StatusNotifierItem::withdraw() {
    ++offers_;
    if (std::exchange(isOffered_, false)) {
        callBus(QStringLiteral("ReleaseName"), {serviceName()});
        connection_.unregisterObject(menuPath());
        connection_.unregisterObject(itemPath());
    }
    setShown(false);
}

void StatusNotifierItem::callBus(const QString& method, const QVariantList& arguments) {
    // Not by the toolkit's own functions for names, which wait for the answer.
    QDBusMessage call =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), method);
    call.setArguments(arguments);
    connection_.send(call);
}

void StatusNotifierItem::setShown(bool shown) {
    if (std::exchange(shown_, shown) != shown) {
        Q_EMIT shownChanged(shown);
    }
}

void StatusNotifierItem::setUnwanted(bool unwanted) {
    if (std::exchange(unwanted_, unwanted) != unwanted) {
        Q_EMIT unwantedChanged(unwanted);
    }
}

}  // namespace pallwick::freedesktop
