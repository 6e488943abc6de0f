#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>

namespace pallwick::freedesktop {

/// The name on the session bus of the service that keeps the list of all status items, and its only object.
[[nodiscard]] QString statusNotifierWatcherService();
[[nodiscard]] QString statusNotifierWatcherPath();

/// Whether somebody on the session bus shows status items at this moment: a StatusNotifierWatcher runs, and a panel has
/// registered with it as a host. Both may come and go at any time.
///
/// Nothing here waits for the bus, and nothing is started on it.
class StatusNotifierHostMonitor final : public QObject {
    Q_OBJECT

public:
    enum class Host {
        /// The bus has not answered yet.
        unknown,
        none,
        present
    };

    explicit StatusNotifierHostMonitor(QDBusConnection connection);

    [[nodiscard]] Host host() const { return host_; }

Q_SIGNALS:
    /// Whoever had registered an item has to do so again where a host is present: the watcher may be another one.
    void changed();

private Q_SLOTS:
    void query();
    void lose();

private:
    void handleOwnerChange(const QString& newOwner);
    void set(Host host);

    QDBusConnection connection_;
    QDBusServiceWatcher watcher_;
    Host host_ = Host::unknown;
    /// Answers to earlier questions no longer count.
    int questions_ = 0;
};

}  // namespace pallwick::freedesktop
