// Draws a picture as a square PNG: pallwick-render-icon <picture.svg> <side in pixels> <icon.png>

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace {

constexpr int largestSide = 1024;

int fail(const char* what, const QString& which) {
    std::fprintf(stderr, "pallwick-render-icon: %s: %s\n", what, qUtf8Printable(which));
    return 1;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 4) {
        return fail("three arguments are needed", QStringLiteral("picture, side, icon"));
    }
    const QString picture = QFile::decodeName(arguments[1]);
    const QString icon = QFile::decodeName(arguments[3]);
    const int side = QByteArray(arguments[2]).toInt();
    if (side < 1 || side > largestSide) {
        return fail("no side of an icon", QString::fromLocal8Bit(arguments[2]));
    }
    QSvgRenderer renderer(picture);
    if (!renderer.isValid()) {
        return fail("no picture", picture);
    }
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    painter.end();
    return image.save(icon, "PNG") ? 0 : fail("cannot be written", icon);
}
