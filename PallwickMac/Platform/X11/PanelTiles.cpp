#include <PallwickMac/Platform/X11/PanelTiles.h>

#include <algorithm>
#include <map>
#include <span>
#include <utility>

namespace pallwick::x11 {

namespace {

// Smaller cells follow an edge more closely; larger ones make fewer rectangles of a circle.
constexpr int cellSize = 8;

constexpr std::uint32_t alphaChannel = 0xFF000000;

template <typename Pixel>
CellSummary summarisedAs(const QImage& image) {
    CellSummary summary;
    summary.columns = (image.width() + cellSize - 1) / cellSize;
    for (int top = 0; top < image.height(); top += cellSize) {
        const int bottom = std::min(top + cellSize, image.height());
        for (int left = 0; left < image.width(); left += cellSize) {
            const auto width = static_cast<std::size_t>(std::min(cellSize, image.width() - left));
            const auto row = [&](int y) {
                return std::span(reinterpret_cast<const Pixel*>(image.constScanLine(y)) + left, width);
            };
            const Pixel first = row(top).front();
            bool uniform = true;
            bool opaque = true;
            for (int y = top; y < bottom && (uniform || opaque); ++y) {
                for (const Pixel pixel : row(y)) {
                    uniform = uniform && pixel == first;
                    opaque = opaque && (pixel & alphaChannel) == alphaChannel;
                }
            }
            summary.cells.push_back(
                {.value = uniform ? std::optional<std::uint32_t>(first) : std::nullopt, .opaque = opaque});
        }
    }
    return summary;
}

enum class Kind : std::uint8_t { opaque, clear, plain, mixed };

using Look = std::pair<std::uint32_t, std::uint32_t>;

/// The tint and the coverage that most cells show through; a coverage of 0 where there are none.
Look commonestLook(const CellSummary& drawing, const CellSummary& mask) {
    std::map<Look, int> counts;
    for (std::size_t i = 0; i < drawing.cells.size(); ++i) {
        const CellSummary::Cell& drawn = drawing.cells[i];
        if (drawn.value && !drawn.opaque && mask.cells[i].value.value_or(0) > 0) {
            ++counts[{*drawn.value, *mask.cells[i].value}];
        }
    }
    const auto commonest =
        std::ranges::max_element(counts, {}, [](const std::pair<const Look, int>& entry) { return entry.second; });
    return commonest == counts.end() ? Look() : commonest->first;
}

Kind kindOf(const CellSummary::Cell& drawn, std::optional<std::uint32_t> coverage, const Look& look) {
    if (drawn.opaque) {
        return Kind::opaque;
    }
    if (!drawn.value || !coverage) {
        return Kind::mixed;
    }
    if (*drawn.value == 0 && *coverage == 0) {
        return Kind::clear;
    }
    return *coverage > 0 && Look(*drawn.value, *coverage) == look ? Kind::plain : Kind::mixed;
}

/// The cells of one kind side by side in a row of them.
std::vector<PixelRect> runsOf(Kind wanted, std::span<const Kind> row, int top, int width, int height) {
    std::vector<PixelRect> runs;
    for (auto next = row.begin(); next != row.end();) {
        const auto first = std::find(next, row.end(), wanted);
        next = std::find_if(first, row.end(), [wanted](Kind kind) { return kind != wanted; });
        if (first != next) {
            const int left = static_cast<int>(first - row.begin()) * cellSize;
            const int end = static_cast<int>(next - row.begin()) * cellSize;
            runs.push_back({.x = left,
                            .y = top,
                            .width = std::min(end, width) - left,
                            .height = std::min(cellSize, height - top)});
        }
    }
    return runs;
}

/// All cells of one kind as few rectangles: where a run lies under one just like it, both are one rectangle.
std::vector<PixelRect> rectanglesOf(Kind wanted, const std::vector<Kind>& kinds, int columns, int width, int height) {
    std::vector<PixelRect> rectangles;
    std::vector<PixelRect> open;
    std::span<const Kind> rest(kinds);
    for (int top = 0; top < height; top += cellSize) {
        std::vector<PixelRect> runs = runsOf(wanted, rest.first(static_cast<std::size_t>(columns)), top, width, height);
        rest = rest.subspan(static_cast<std::size_t>(columns));
        for (PixelRect& run : runs) {
            const auto above = std::ranges::find_if(open, [&run](const PixelRect& rectangle) {
                return rectangle.x == run.x && rectangle.width == run.width;
            });
            if (above != open.end()) {
                run = {.x = run.x, .y = above->y, .width = run.width, .height = run.maxY() - above->y};
                open.erase(above);
            }
        }
        rectangles.insert(rectangles.end(), open.begin(), open.end());
        open = std::move(runs);
    }
    rectangles.insert(rectangles.end(), open.begin(), open.end());
    return rectangles;
}

}  // namespace

CellSummary summarised(const QImage& image) {
    return image.format() == QImage::Format_Alpha8 ? summarisedAs<std::uint8_t>(image)
                                                   : summarisedAs<std::uint32_t>(image);
}

PanelTiles tilesOf(int width, int height, const CellSummary& drawing, const std::optional<CellSummary>& mask) {
    const auto coverageOf = [&mask](std::size_t cell) { return mask ? mask->cells[cell].value : std::optional(0U); };
    const Look look = mask ? commonestLook(drawing, *mask) : Look();
    std::vector<Kind> kinds;
    kinds.reserve(drawing.cells.size());
    for (std::size_t i = 0; i < drawing.cells.size(); ++i) {
        kinds.push_back(kindOf(drawing.cells[i], coverageOf(i), look));
    }
    const auto all = [&](Kind kind) { return rectanglesOf(kind, kinds, drawing.columns, width, height); };
    return {.opaque = all(Kind::opaque),
            .clear = all(Kind::clear),
            .plain = all(Kind::plain),
            .coverage = static_cast<std::uint8_t>(look.second),
            .tint = look.first,
            .mixed = all(Kind::mixed)};
}

}  // namespace pallwick::x11
