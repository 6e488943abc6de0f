#pragma once

#include <PallwickMac/Views/Appearance.h>

#include <QIcon>

#include <optional>

class QWidget;

namespace pallwick {

/// The program's own line icons, named by what they show.
enum class Symbol {
    arrowClockwise,
    eyeSlash,
    link,
    linkSlash,
    lock,
    minus,
    plus,
    plusRectangleOnRectangle,
    rectangleDashed,
    sliderHorizontal3,
    trash,
    trayFull,
};

/// A symbol drawn anew wherever it is painted: sharp at every size and device pixel ratio, in the palette's colour of
/// that moment and of the mode asked for.
class SymbolIcon final : public QIcon {
public:
    /// The text colour of `host`; of the application's windows without one. `host` is not owned and may go first.
    explicit SymbolIcon(Symbol symbol, const QWidget* host = nullptr);

    /// The same in one of the views' own text colours where it is enabled and not selected.
    SymbolIcon(Symbol symbol, const QWidget* host, TextColor color);
};

/// The symbol that stands for the program in a panel whose colour nobody knows: in the windows' text colour, with an
/// outline in the windows' own colour, so that one of the two shows on any ground.
[[nodiscard]] QIcon statusIcon();

/// The program's icon, in colours of its own.
[[nodiscard]] QIcon programIcon();

}  // namespace pallwick
