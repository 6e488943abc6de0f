#include <PallwickMac/Platform/Freedesktop/StatusNotifierHostMonitor.h>

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace pallwick::freedesktop {

namespace {

QString watcherInterface() {
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

}  // namespace

QString statusNotifierWatcherService() {
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

QString statusNotifierWatcherPath() {
    return QStringLiteral("/StatusNotifierWatcher");
}

StatusNotifierHostMonitor::StatusNotifierHostMonitor(QDBusConnection connection)
    : connection_(std::move(connection)),
      watcher_(statusNotifierWatcherService(), connection_, QDBusServiceWatcher::WatchForOwnerChange) {
    if (!connection_.isConnected()) {
        host_ = Host::none;
        return;
    }
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) { handleOwnerChange(newOwner); });
    // From any sender: to name one, the toolkit's library would wait for the bus to say who that is. Whoever else sends
    // such a signal causes no more than a question.
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        connection_.connect(QString(), statusNotifierWatcherPath(), watcherInterface(), QString::fromLatin1(signal),
                            this, SLOT(query()));
    }
    connection_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                        SLOT(lose()));
    query();
}

void StatusNotifierHostMonitor::handleOwnerChange(const QString& newOwner) {
    lose();
    if (!newOwner.isEmpty()) {
        query();
    }
}

void StatusNotifierHostMonitor::query() {
    QDBusMessage question =
        QDBusMessage::createMethodCall(statusNotifierWatcherService(), statusNotifierWatcherPath(),
                                       QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << watcherInterface() << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto* answer = new QDBusPendingCallWatcher(connection_.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, number = ++questions_](auto* call) {
        call->deleteLater();
        if (number == questions_) {
            const QDBusPendingReply<QDBusVariant> reply = *call;
            set(!reply.isError() && reply.value().variant().toBool() ? Host::present : Host::none);
        }
    });
}

void StatusNotifierHostMonitor::lose() {
    ++questions_;
    set(Host::none);
}

void StatusNotifierHostMonitor::set(Host host) {
    if (std::exchange(host_, host) != host) {
        Q_EMIT changed();
    }
}

}  // namespace pallwick::freedesktop
