#include <PallwickMac/Views/SymbolIcon.h>

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPointer>
#include <QSvgRenderer>
#include <QWidget>

#include <algorithm>
#include <utility>

// A linker drops the resources of a static library unless something asks for them, from the global namespace.
static void loadSymbols() {
    Q_INIT_RESOURCE(symbols);
}

namespace pallwick {

namespace {

QString fileName(Symbol symbol) {
    switch (symbol) {
        case Symbol::arrowClockwise:
            return QStringLiteral("arrow.clockwise");
        case Symbol::eyeSlash:
            return QStringLiteral("eye.slash");
        case Symbol::link:
            return QStringLiteral("link");
        case Symbol::linkSlash:
            return QStringLiteral("link.slash");
        case Symbol::lock:
            return QStringLiteral("lock");
        case Symbol::minus:
            return QStringLiteral("minus");
        case Symbol::plus:
            return QStringLiteral("plus");
        case Symbol::plusRectangleOnRectangle:
            return QStringLiteral("plus.rectangle.on.rectangle");
        case Symbol::rectangleDashed:
            return QStringLiteral("rectangle.dashed");
        case Symbol::sliderHorizontal3:
            return QStringLiteral("slider.horizontal.3");
        case Symbol::trash:
            return QStringLiteral("trash");
        case Symbol::trayFull:
            return QStringLiteral("tray.full");
    }
    return {};
}

QByteArray drawing(const QString& name) {
    loadSymbols();
    QFile file(QStringLiteral(":/pallwick/symbols/%1.svg").arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QRectF centredSquare(const QRect& rect) {
    const int side = std::min(rect.width(), rect.height());
    return QRectF(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2, side, side);
}

/// Painted anew in every size.
class DrawnIconEngine : public QIconEngine {
public:
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }
};

/// Keeps the drawing, not its pixels, so that no palette and no pixel ratio can go stale.
class SymbolIconEngine final : public DrawnIconEngine {
public:
    SymbolIconEngine(QByteArray drawing, const QWidget* host, std::optional<TextColor> color)
        : drawing_(std::move(drawing)), host_(host), color_(color) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        QByteArray coloured = drawing_;
        coloured.replace("currentColor", colorFor(mode).name().toLatin1());
        QSvgRenderer renderer(coloured);
        painter->setRenderHint(QPainter::Antialiasing);
        renderer.render(painter, centredSquare(rect));
    }

    [[nodiscard]] QIconEngine* clone() const override { return new SymbolIconEngine(drawing_, host_, color_); }

private:
    [[nodiscard]] QColor colorFor(QIcon::Mode mode) const {
        const QPalette palette = host_ ? host_->palette() : QGuiApplication::palette();
        const QPalette::ColorRole role = host_ ? host_->foregroundRole() : QPalette::WindowText;
        switch (mode) {
            case QIcon::Disabled:
                return disabledTextColor(palette);
            case QIcon::Selected:
                return palette.color(QPalette::Active, QPalette::HighlightedText);
            case QIcon::Normal:
            case QIcon::Active:
                break;
        }
        return color_ ? textColor(*color_, palette) : palette.color(QPalette::Active, role);
    }

    QByteArray drawing_;
    QPointer<const QWidget> host_;
    std::optional<TextColor> color_;
};

/// The symbol drawn twice, first as a wide line in the colour of what it contrasts with.
class StatusIconEngine final : public DrawnIconEngine {
public:
    explicit StatusIconEngine(QByteArray drawing) : drawing_(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
        const QPalette palette = QGuiApplication::palette();
        painter->setRenderHint(QPainter::Antialiasing);
        const QRectF square = centredSquare(rect);
        paintLines(*painter, square, outlineWidth, palette.color(QPalette::Active, QPalette::Window));
        paintLines(*painter, square, lineWidth, palette.color(QPalette::Active, QPalette::WindowText));
    }

    [[nodiscard]] QIconEngine* clone() const override { return new StatusIconEngine(drawing_); }

private:
    // Of 24. Panels show icons as small as 16 pixels: there the line is a little more than one pixel wide, and its
    // outline one on either side.
    static constexpr double lineWidth = 1.9;
    static constexpr double outlineWidth = 4.9;

    void paintLines(QPainter& painter, const QRectF& square, double width, const QColor& color) const {
        QByteArray lines = drawing_;
        lines.replace("currentColor", color.name().toLatin1());
        lines.replace("stroke-width=\"1.5\"", "stroke-width=\"" + QByteArray::number(width) + "\"");
        QSvgRenderer(lines).render(&painter, square);
    }

    QByteArray drawing_;
};

}  // namespace

SymbolIcon::SymbolIcon(Symbol symbol, const QWidget* host)
    : QIcon(new SymbolIconEngine(drawing(fileName(symbol)), host, std::nullopt)) {}

SymbolIcon::SymbolIcon(Symbol symbol, const QWidget* host, TextColor color)
    : QIcon(new SymbolIconEngine(drawing(fileName(symbol)), host, color)) {}

QIcon statusIcon() {
    return QIcon(new StatusIconEngine(drawing(fileName(Symbol::eyeSlash))));
}

QIcon programIcon() {
    return QIcon(new SymbolIconEngine(drawing(QStringLiteral("pallwick")), nullptr, std::nullopt));
}

}  // namespace pallwick
