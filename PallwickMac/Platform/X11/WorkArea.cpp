#include <PallwickMac/Platform/X11/WorkArea.h>

#include <algorithm>

namespace pallwick::x11 {

namespace {

struct Range {
    int begin;
    int end;
};

bool overlap(const Range& a, const Range& b) {
    return std::max(a.begin, b.begin) < std::min(a.end, b.end);
}

bool endsWithin(int edge, const Range& range) {
    return edge > range.begin && edge < range.end;
}

}  // namespace

PixelRect workArea(const PixelRect& monitor, const PixelRect& root, const std::vector<Strut>& struts) {
    const Range columns{monitor.x, monitor.maxX()};
    const Range rows{monitor.y, monitor.maxY()};
    Range freeColumns = columns;
    Range freeRows = rows;
    for (const Strut& strut : struts) {
        const Range along{strut.begin, strut.end};
        switch (strut.edge) {
            case Strut::Edge::left:
                if (overlap(along, rows) && endsWithin(root.x + strut.thickness, columns)) {
                    freeColumns.begin = std::max(freeColumns.begin, root.x + strut.thickness);
                }
                break;
            case Strut::Edge::right:
                if (overlap(along, rows) && endsWithin(root.maxX() - strut.thickness, columns)) {
                    freeColumns.end = std::min(freeColumns.end, root.maxX() - strut.thickness);
                }
                break;
            case Strut::Edge::top:
                if (overlap(along, columns) && endsWithin(root.y + strut.thickness, rows)) {
                    freeRows.begin = std::max(freeRows.begin, root.y + strut.thickness);
                }
                break;
            case Strut::Edge::bottom:
                if (overlap(along, columns) && endsWithin(root.maxY() - strut.thickness, rows)) {
                    freeRows.end = std::min(freeRows.end, root.maxY() - strut.thickness);
                }
                break;
        }
    }
    // Struts that leave nothing are nonsense; an overlay must still find a place.
    if (freeColumns.begin >= freeColumns.end || freeRows.begin >= freeRows.end) {
        return monitor;
    }
    return {.x = freeColumns.begin,
            .y = freeRows.begin,
            .width = freeColumns.end - freeColumns.begin,
            .height = freeRows.end - freeRows.begin};
}

}  // namespace pallwick::x11
