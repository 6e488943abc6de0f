#pragma once

#include <PallwickMac/Platform/Freedesktop/StatusNotifierHostMonitor.h>
#include <PallwickMac/Platform/StatusItem.h>

#include <QDBusConnection>

namespace pallwick::freedesktop {

class DBusMenuAdaptor;
class StatusNotifierAdaptor;

/// A status item on the session bus, where a panel reads it and shows it in its own style (StatusNotifierItem).
///
/// While no panel does, it is not on the bus at all, so that it never shows there and elsewhere together. No member
/// waits for the bus.
class StatusNotifierItem final : public StatusItem {
    Q_OBJECT

public:
    explicit StatusNotifierItem(const StatusItemDescription& description);
    ~StatusNotifierItem() override;

    void setIcon(const QIcon& icon) override;
    void setMenu(const std::vector<StatusItemEntry>& entries) override;
    [[nodiscard]] bool isShown() const override { return shown_; }

    /// Known to be of no use now: no panel shows status items from the bus, or the one that does refused this one.
    [[nodiscard]] bool isUnwanted() const { return unwanted_; }

Q_SIGNALS:
    /// Becoming wanted is told before the item is offered to a panel.
    void unwantedChanged(bool unwanted);

private:
    void followHost();
    void offer();
    void withdraw();
    void setShown(bool shown);
    void setUnwanted(bool unwanted);
    void callBus(const QString& method, const QVariantList& arguments);

    QDBusConnection connection_;
    QObject itemObject_;
    QObject menuObject_;
    /// Owned by their objects.
    StatusNotifierAdaptor* item_;
    DBusMenuAdaptor* menu_;
    StatusNotifierHostMonitor monitor_;
    bool isOffered_ = false;
    /// Answers to earlier offers no longer count.
    int offers_ = 0;
    bool shown_ = false;
    bool unwanted_ = false;
};

}  // namespace pallwick::freedesktop
