#pragma once

#include <QColor>

#include <string_view>

namespace pallwick {

/// The colour that a style's hexadecimal text stands for, with `alpha` held to 0...1.
///
/// "#" is dropped from both ends however often it stands there; what remains is one hexadecimal number, RRGGBB, that
/// may begin with a plus sign. Bits above the lowest 24 are ignored, so AARRGGBB loses its first byte. A text that is
/// no number, or one beyond 32 bits, is black: a cover must never fail to appear over a misspelt colour.
[[nodiscard]] QColor overlayColor(std::string_view hex, double alpha);

}  // namespace pallwick
