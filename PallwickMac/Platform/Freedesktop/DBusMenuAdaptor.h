#pragma once

#include <PallwickMac/Platform/Freedesktop/DBusMenuTypes.h>
#include <PallwickMac/Platform/StatusItem.h>

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>

#include <functional>
#include <optional>
#include <vector>

namespace pallwick::freedesktop {

/// A menu of one level on the session bus, which a panel reads and shows in its own style (com.canonical.dbusmenu,
/// version 3). The entry with index 0 has the id 1; the menu itself is 0.
class DBusMenuAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    /// `choose` is told the index of an entry that was clicked. `object` is what is registered on the bus; it owns the
    /// adaptor.
    DBusMenuAdaptor(QObject* object, std::function<void(int index)> choose);

    /// Tells the bus what has changed, if anything has.
    void setEntries(const std::vector<StatusItemEntry>& entries);

    [[nodiscard]] static uint version() { return 3; }
    [[nodiscard]] static QString textDirection();
    [[nodiscard]] static QString status() { return QStringLiteral("normal"); }
    [[nodiscard]] static QStringList iconThemePath() { return {}; }

public Q_SLOTS:
    // The interface's methods, by its names. An empty list of property names stands for all; one of ids too.
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                   pallwick::freedesktop::MenuLayout& layout) const;
    QList<pallwick::freedesktop::MenuItem> GetGroupProperties(const QList<int>& ids,
                                                              const QStringList& propertyNames) const;
    QDBusVariant GetProperty(int id, const QString& name) const;
    void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp);
    /// The ids that there are not.
    QList<int> EventGroup(const QList<pallwick::freedesktop::MenuEvent>& events);
    /// Whether the menu must be read again.
    bool AboutToShow(int id) const;
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) const;

Q_SIGNALS:
    void ItemsPropertiesUpdated(const QList<pallwick::freedesktop::MenuItem>& updatedProps,
                                const QList<pallwick::freedesktop::MenuItemPropertyNames>& removedProps);
    void LayoutUpdated(uint revision, int parent);
    void ItemActivationRequested(int id, uint timestamp);

private:
    [[nodiscard]] std::optional<QVariantMap> propertiesOf(int id) const;
    [[nodiscard]] bool isEntry(int id) const;

    std::function<void(int index)> choose_;
    std::vector<StatusItemEntry> entries_;
    uint revision_ = 1;
};

}  // namespace pallwick::freedesktop
