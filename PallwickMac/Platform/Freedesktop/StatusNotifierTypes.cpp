#include <PallwickMac/Platform/Freedesktop/StatusNotifierTypes.h>

#include <QDBusMetaType>
#include <QImage>
#include <QPainter>
#include <QtEndian>

#include <array>

namespace pallwick::freedesktop {

namespace {

IconImage imageOf(const QIcon& icon, int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    icon.paint(&painter, image.rect());
    painter.end();
    image.convertTo(QImage::Format_ARGB32);
    const auto bytes = static_cast<qsizetype>(image.sizeInBytes());
    QByteArray pixels(bytes, Qt::Uninitialized);
    qToBigEndian<quint32>(image.constBits(), bytes / static_cast<qsizetype>(sizeof(quint32)), pixels.data());
    return {.width = side, .height = side, .pixels = std::move(pixels)};
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const IconImage& image) {
    argument.beginStructure();
    argument << image.width << image.height << image.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, IconImage& image) {
    argument.beginStructure();
    argument >> image.width >> image.height >> image.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.icon << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.icon >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

IconImages imagesOf(const QIcon& icon) {
    IconImages images;
    for (const int side : std::array{16, 22, 24, 32, 48, 64}) {
        images.append(imageOf(icon, side));
    }
    return images;
}

void registerStatusNotifierTypes() {
    qDBusRegisterMetaType<IconImage>();
    qDBusRegisterMetaType<IconImages>();
    qDBusRegisterMetaType<StatusToolTip>();
}

}  // namespace pallwick::freedesktop
