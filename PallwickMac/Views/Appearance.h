#pragma once

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QPalette>
#include <QString>

namespace pallwick {

// Colours and fonts of the views, each derived from the desktop's palette and font, so that the views follow both.

/// Opaque mixture of two colours; `share` is that of `over`, 0 to 1.
[[nodiscard]] QColor blended(const QColor& under, const QColor& over, double share);

/// Contrast ratio of two opaque colours, 1 to 21, as WCAG 2.1 defines it.
[[nodiscard]] double contrastRatio(const QColor& first, const QColor& second);

/// Light text on a dark window.
[[nodiscard]] bool isDark(const QPalette& palette);

[[nodiscard]] QColor sidebarBackground(const QPalette& palette);
[[nodiscard]] QColor separatorColor(const QPalette& palette);

/// `wanted`, moved towards `text` just far enough for a contrast of 4.5 on `background`; `text` itself where even that
/// is not enough.
[[nodiscard]] QColor legibleOn(const QColor& background, const QColor& wanted, const QColor& text);

/// What the chosen one of several entries is filled with: the palette's highlight, moved away from the text upon it as
/// far as that text needs to be read.
[[nodiscard]] QColor selectionColor(const QPalette& palette);

/// The mark of the control that the keyboard acts on: the palette's highlight, with a contrast of at least 3 on the
/// window and on the sidebar.
[[nodiscard]] QColor focusColor(const QPalette& palette);

/// The text of a control that cannot be used just now, still to be made out.
[[nodiscard]] QColor disabledTextColor(const QPalette& palette);

/// Outline of a control that can be pressed.
[[nodiscard]] QColor controlOutline(const QPalette& palette);

enum class TextColor {
    primary,
    /// Dimmed, yet with a contrast of at least 4.5 on the window and on the sidebar where the palette's own text has
    /// it.
    secondary,
    blue,
    /// For what destroys something.
    destructive,
};

[[nodiscard]] QColor textColor(TextColor color, const QPalette& palette);

enum class TextStyle { body, caption, callout, headline, title3 };

[[nodiscard]] QFont textFont(TextStyle style, const QFont& body);

/// `text` as it stands, for a tooltip, which would guess whether it is markup: a title or a status may quote anything.
[[nodiscard]] QString plainToolTip(const QString& text);

/// The side of a symbol beside a text of that font, in points: 16 at the usual sizes, more beside larger text.
[[nodiscard]] int symbolSide(const QFontMetrics& metrics);

}  // namespace pallwick
