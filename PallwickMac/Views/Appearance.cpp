#include <PallwickMac/Views/Appearance.h>

#include <algorithm>
#include <cmath>

namespace pallwick {

namespace {

constexpr double legibleContrast = 4.5;

double linear(double component) {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double relativeLuminance(const QColor& color) {
    const QColor rgb = color.toRgb();
    return 0.2126 * linear(rgb.redF()) + 0.7152 * linear(rgb.greenF()) + 0.0722 * linear(rgb.blueF());
}

/// `wanted` moved towards `text` just far enough for that contrast.
QColor standingOut(const QColor& background, const QColor& wanted, const QColor& text, double contrast) {
    for (double share = 0; share < 1; share += 0.05) {
        const QColor candidate = blended(wanted, text, share);
        if (contrastRatio(candidate, background) >= contrast) {
            return candidate;
        }
    }
    return text;
}

/// `wanted` moved towards the palette's own text just far enough to be read on the window and on the sidebar.
QColor legible(const QColor& wanted, const QPalette& palette) {
    const QColor text = palette.color(QPalette::WindowText);
    return legibleOn(sidebarBackground(palette), legibleOn(palette.color(QPalette::Window), wanted, text), text);
}

struct FontChange {
    double factor;
    QFont::Weight weight;
};

FontChange fontChange(TextStyle style) {
    switch (style) {
        case TextStyle::body:
            return {1.0, QFont::Normal};
        case TextStyle::caption:
            return {0.9, QFont::Normal};
        case TextStyle::callout:
            return {0.95, QFont::Normal};
        case TextStyle::headline:
            return {1.0, QFont::DemiBold};
        case TextStyle::title3:
            return {1.25, QFont::DemiBold};
    }
    return {1.0, QFont::Normal};
}

}  // namespace

QColor blended(const QColor& under, const QColor& over, double share) {
    const QColor from = under.toRgb();
    const QColor to = over.toRgb();
    const auto mix = [share](float a, float b) {
        return static_cast<float>(std::clamp(a + (static_cast<double>(b) - a) * share, 0.0, 1.0));
    };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()));
}

double contrastRatio(const QColor& first, const QColor& second) {
    const double a = relativeLuminance(first);
    const double b = relativeLuminance(second);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

bool isDark(const QPalette& palette) {
    return relativeLuminance(palette.color(QPalette::Window)) < relativeLuminance(palette.color(QPalette::WindowText));
}

QColor sidebarBackground(const QPalette& palette) {
    return blended(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.04);
}

QColor separatorColor(const QPalette& palette) {
    return blended(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.14);
}

QColor controlOutline(const QPalette& palette) {
    return blended(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.25);
}

QColor legibleOn(const QColor& background, const QColor& wanted, const QColor& text) {
    return standingOut(background, wanted, text, legibleContrast);
}

QColor focusColor(const QPalette& palette) {
    constexpr double visibleContrast = 3;
    const QColor text = palette.color(QPalette::WindowText);
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    return standingOut(sidebarBackground(palette),
                       standingOut(palette.color(QPalette::Window), highlight, text, visibleContrast), text,
                       visibleContrast);
}

QColor selectionColor(const QPalette& palette) {
    const QColor text = palette.color(QPalette::Active, QPalette::HighlightedText);
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    const bool isTextLight = relativeLuminance(text) > relativeLuminance(highlight);
    return legibleOn(text, highlight, isTextLight ? QColor(Qt::black) : QColor(Qt::white));
}

QColor disabledTextColor(const QPalette& palette) {
    return blended(palette.color(QPalette::Window), palette.color(QPalette::Active, QPalette::WindowText), 0.45);
}

QColor textColor(TextColor color, const QPalette& palette) {
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    switch (color) {
        case TextColor::primary:
            return text;
        case TextColor::secondary:
            return legible(blended(window, text, 0.6), palette);
        case TextColor::blue:
            return legible(isDark(palette) ? QColor(0x6c, 0xb2, 0xff) : QColor(0x0b, 0x5b, 0xd3), palette);
        case TextColor::destructive:
            // It stands on buttons, which on a dark window are lighter than that, under the pointer most of all.
            return legibleOn(isDark(palette) ? blended(palette.color(QPalette::Button), text, 0.16) : window,
                             legible(isDark(palette) ? QColor(0xff, 0x8a, 0x80) : QColor(0xc3, 0x1f, 0x1f), palette),
                             text);
    }
    return text;
}

QFont textFont(TextStyle style, const QFont& body) {
    const FontChange change = fontChange(style);
    QFont font = body;
    if (body.pointSizeF() > 0) {
        font.setPointSizeF(body.pointSizeF() * change.factor);
    } else {
        font.setPixelSize(std::max(1, static_cast<int>(std::lround(body.pixelSize() * change.factor))));
    }
    if (change.weight != QFont::Normal) {
        font.setWeight(change.weight);
    }
    return font;
}

QString plainToolTip(const QString& text) {
    return QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped());
}

int symbolSide(const QFontMetrics& metrics) {
    constexpr int usual = 16;
    return std::max(usual, metrics.height());
}

}  // namespace pallwick
