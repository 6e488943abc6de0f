#include <PallwickMac/Platform/Freedesktop/DBusMenuAdaptor.h>

#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace pallwick::freedesktop {

namespace {

constexpr int rootId = 0;

int idOf(std::size_t index) {
    return static_cast<int>(index) + 1;
}

QVariantMap propertiesOfEntry(const StatusItemEntry& entry) {
    if (entry.isSeparator) {
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    }
    QString label = entry.label;
    // A single one marks the character after it as the entry's key.
    label.replace(QLatin1Char('_'), QLatin1String("__"));
    return {{QStringLiteral("label"), label}};
}

QVariantMap only(const QStringList& names, QVariantMap properties) {
    if (!names.isEmpty()) {
        erase_if(properties, [&names](QVariantMap::iterator property) { return !names.contains(property.key()); });
    }
    return properties;
}

bool haveSameKinds(const std::vector<StatusItemEntry>& a, const std::vector<StatusItemEntry>& b) {
    return std::ranges::equal(a, b, {}, &StatusItemEntry::isSeparator, &StatusItemEntry::isSeparator);
}

}  // namespace

DBusMenuAdaptor::DBusMenuAdaptor(QObject* object, std::function<void(int index)> choose)
    : QDBusAbstractAdaptor(object), choose_(std::move(choose)) {
    registerDBusMenuTypes();
}

void DBusMenuAdaptor::setEntries(const std::vector<StatusItemEntry>& entries) {
    const std::vector<StatusItemEntry> before = std::exchange(entries_, entries);
    if (before == entries) {
        return;
    }
    if (!haveSameKinds(before, entries)) {
        Q_EMIT LayoutUpdated(++revision_, rootId);
        return;
    }
    QList<MenuItem> updated;
    for (std::size_t index = 0; index < entries.size(); ++index) {
        if (entries[index] != before[index]) {
            updated.append({.id = idOf(index), .properties = propertiesOfEntry(entries[index])});
        }
    }
    Q_EMIT ItemsPropertiesUpdated(updated, {});
}

QString DBusMenuAdaptor::textDirection() {
    return QGuiApplication::layoutDirection() == Qt::RightToLeft ? QStringLiteral("rtl") : QStringLiteral("ltr");
}

bool DBusMenuAdaptor::isEntry(int id) const {
    return id > rootId && static_cast<std::size_t>(id) <= entries_.size();
}

std::optional<QVariantMap> DBusMenuAdaptor::propertiesOf(int id) const {
    if (id == rootId) {
        return QVariantMap{{QStringLiteral("children-display"), QStringLiteral("submenu")}};
    }
    return isEntry(id) ? std::optional(propertiesOfEntry(entries_[static_cast<std::size_t>(id) - 1])) : std::nullopt;
}

uint DBusMenuAdaptor::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                                MenuLayout& layout) const {
    layout.id = parentId;
    layout.properties = only(propertyNames, propertiesOf(parentId).value_or(QVariantMap()));
    if (parentId == rootId && recursionDepth != 0) {
        for (std::size_t index = 0; index < entries_.size(); ++index) {
            layout.children.append(
                {.id = idOf(index), .properties = only(propertyNames, propertiesOfEntry(entries_[index]))});
        }
    }
    return revision_;
}

QList<MenuItem> DBusMenuAdaptor::GetGroupProperties(const QList<int>& ids, const QStringList& propertyNames) const {
    QList<int> wanted = ids;
    if (wanted.isEmpty()) {
        for (int id = rootId; id <= static_cast<int>(entries_.size()); ++id) {
            wanted.append(id);
        }
    }
    QList<MenuItem> items;
    for (const int id : wanted) {
        if (const auto properties = propertiesOf(id)) {
            items.append({.id = id, .properties = only(propertyNames, *properties)});
        }
    }
    return items;
}

QDBusVariant DBusMenuAdaptor::GetProperty(int id, const QString& name) const {
    const QVariant value = propertiesOf(id).value_or(QVariantMap()).value(name);
    // An invalid value cannot be sent.
    return QDBusVariant(value.isValid() ? value : QVariant(QString()));
}

void DBusMenuAdaptor::Event(int id, const QString& eventId, const QDBusVariant& /*data*/, uint /*timestamp*/) {
    if (eventId == QLatin1String("clicked") && isEntry(id)) {
        choose_(id - 1);
    }
}

QList<int> DBusMenuAdaptor::EventGroup(const QList<MenuEvent>& events) {
    QList<int> unknown;
    for (const MenuEvent& event : events) {
        if (propertiesOf(event.id)) {
            Event(event.id, event.name, event.data, event.timestamp);
        } else {
            unknown.append(event.id);
        }
    }
    return unknown;
}

bool DBusMenuAdaptor::AboutToShow(int /*id*/) const {
    return false;
}

QList<int> DBusMenuAdaptor::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) const {
    for (const int id : ids) {
        if (!propertiesOf(id)) {
            idErrors.append(id);
        }
    }
    return {};
}

}  // namespace pallwick::freedesktop
