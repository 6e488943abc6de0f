#include <PallwickMac/Platform/Freedesktop/DBusMenuTypes.h>

#include <QDBusMetaType>

namespace pallwick::freedesktop {

namespace {

/// A child of a layout may have children itself; ours have none.
struct Leaf {
    MenuItem item;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Leaf& leaf) {
    argument.beginStructure();
    argument << leaf.item.id << leaf.item.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Leaf& leaf) {
    argument.beginStructure();
    argument >> leaf.item.id >> leaf.item.properties;
    argument.beginArray();
    argument.endArray();
    argument.endStructure();
    return argument;
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const MenuItem& item) {
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuItem& item) {
    argument.beginStructure();
    argument >> item.id >> item.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuLayout& layout) {
    argument.beginStructure();
    argument << layout.id << layout.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const MenuItem& child : layout.children) {
        argument << QDBusVariant(QVariant::fromValue(Leaf{child}));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLayout& layout) {
    layout.children.clear();
    argument.beginStructure();
    argument >> layout.id >> layout.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        layout.children.append(qdbus_cast<Leaf>(child.variant()).item);
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuItemPropertyNames& names) {
    argument.beginStructure();
    argument << names.id << names.names;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuItemPropertyNames& names) {
    argument.beginStructure();
    argument >> names.id >> names.names;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuEvent& event) {
    argument.beginStructure();
    argument << event.id << event.name << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEvent& event) {
    argument.beginStructure();
    argument >> event.id >> event.name >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

void registerDBusMenuTypes() {
    qDBusRegisterMetaType<MenuItem>();
    qDBusRegisterMetaType<QList<MenuItem>>();
    qDBusRegisterMetaType<Leaf>();
    qDBusRegisterMetaType<MenuLayout>();
    qDBusRegisterMetaType<MenuItemPropertyNames>();
    qDBusRegisterMetaType<QList<MenuItemPropertyNames>>();
    qDBusRegisterMetaType<MenuEvent>();
    qDBusRegisterMetaType<QList<MenuEvent>>();
    qDBusRegisterMetaType<QList<int>>();
}

}  // namespace pallwick::freedesktop
