#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace pallwick::freedesktop {

/// An entry of a menu with its properties, as com.canonical.dbusmenu sends it: (ia{sv}).
struct MenuItem {
    int id = 0;
    QVariantMap properties;
};

/// A menu and what is in it: (ia{sv}av), where each child is of this type.
struct MenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<MenuItem> children;
};

/// Properties that an entry has no more: (ias).
struct MenuItemPropertyNames {
    int id = 0;
    QStringList names;
};

/// (isvu)
struct MenuEvent {
    int id = 0;
    /// "clicked", "hovered" and others.
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const MenuItem& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuItem& item);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuItemPropertyNames& names);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuItemPropertyNames& names);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEvent& event);

/// Makes the types known to the toolkit's D-Bus library. Harmless when repeated.
void registerDBusMenuTypes();

}  // namespace pallwick::freedesktop

Q_DECLARE_METATYPE(pallwick::freedesktop::MenuItem)
Q_DECLARE_METATYPE(pallwick::freedesktop::MenuLayout)
Q_DECLARE_METATYPE(pallwick::freedesktop::MenuItemPropertyNames)
Q_DECLARE_METATYPE(pallwick::freedesktop::MenuEvent)
