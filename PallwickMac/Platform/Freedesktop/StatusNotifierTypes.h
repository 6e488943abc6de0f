#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QIcon>
#include <QList>
#include <QMetaType>
#include <QString>

namespace pallwick::freedesktop {

/// A picture of an icon, as StatusNotifierItem sends it: (iiay).
struct IconImage {
    int width = 0;
    int height = 0;
    /// Rows from the top, each pixel as alpha, red, green, blue, one byte each; not premultiplied.
    QByteArray pixels;
};

using IconImages = QList<IconImage>;

/// (sa(iiay)ss)
struct StatusToolTip {
    QString iconName;
    IconImages icon;
    QString title;
    /// May hold markup.
    QString text;
};

QDBusArgument& operator<<(QDBusArgument& argument, const IconImage& image);
const QDBusArgument& operator>>(const QDBusArgument& argument, IconImage& image);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusToolTip& toolTip);

/// The icon in the sizes that panels show: 16, 22, 24, 32, 48 and 64 pixels.
[[nodiscard]] IconImages imagesOf(const QIcon& icon);

/// Makes the types known to the toolkit's D-Bus library. Harmless when repeated.
void registerStatusNotifierTypes();

}  // namespace pallwick::freedesktop

Q_DECLARE_METATYPE(pallwick::freedesktop::IconImage)
Q_DECLARE_METATYPE(pallwick::freedesktop::StatusToolTip)
