#pragma once

#include <PallwickMac/Platform/X11/PixelMapping.h>

#include <QImage>

#include <cstdint>
#include <optional>
#include <vector>

namespace pallwick::x11 {

/// A picture looked at in square cells, those at the right and at the bottom maybe narrower.
struct CellSummary {
    struct Cell {
        /// That of every pixel in it; none where they differ.
        std::optional<std::uint32_t> value;
        /// Every pixel is opaque.
        bool opaque = false;
    };

    int columns = 0;
    /// Row by row.
    std::vector<Cell> cells;
};

/// `image` in Format_ARGB32_Premultiplied, or in Format_Alpha8, whose values are its bytes.
[[nodiscard]] CellSummary summarised(const QImage& image);

/// A panel's window, cut up by what it takes to show a piece of it: most of a panel is one colour over glass of one
/// strength, or hides what lies beneath altogether. The pieces are pixels of the window, whole cells, and cover it
/// without overlap.
struct PanelTiles {
    /// The panel's own drawing hides what lies beneath.
    std::vector<PixelRect> opaque;
    /// Neither drawn on nor frosted.
    std::vector<PixelRect> clear;
    /// Frosted with the same coverage, and drawn on with the same colour, all over.
    std::vector<PixelRect> plain;
    /// Of the plain pieces, 0 to 255.
    std::uint8_t coverage = 0;
    /// Of the plain pieces, premultiplied.
    std::uint32_t tint = 0;
    /// Edges and controls.
    std::vector<PixelRect> mixed;
};

/// Of a window of that size in pixels: `drawing` is the panel's own, `mask` how much of it is frosted, and none stands
/// for nothing at all.
[[nodiscard]] PanelTiles tilesOf(int width, int height, const CellSummary& drawing,
                                 const std::optional<CellSummary>& mask);

}  // namespace pallwick::x11
