#pragma once

#include <QColor>
#include <QString>

namespace pallwick {

/// The text a style keeps for `color`: "#RRGGBB", each component rounded to the nearest of 256 steps with halves away
/// from zero. Nothing is clamped; alpha is ignored.
[[nodiscard]] QString overlayHexString(const QColor& color);

}  // namespace pallwick
