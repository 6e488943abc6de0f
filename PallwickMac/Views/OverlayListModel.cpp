#include <PallwickMac/Views/OverlayListModel.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

namespace pallwick {

namespace {

QString title(int row) {
    return QStringLiteral("Overlay %1").arg(row + 1);
}

/// The whole part. Numbers that no 64-bit integer holds come out as the nearest one that it does, and what is not a
/// number as 0: a list of odd frames must still be shown.
std::int64_t wholeNumber(double value) {
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= limit) {
        return std::numeric_limits<std::int64_t>::max();
    }
    if (value < -limit) {
        return std::numeric_limits<std::int64_t>::min();
    }
    return static_cast<std::int64_t>(value);
}

QString number(double value) {
    return QString::number(wholeNumber(value));
}

QString detail(const BlurOverlay& overlay) {
    const std::string_view shape = title(overlay.shape);
    const Rect& frame = overlay.frame;
    const Size extent = frame.extent();
    return QStringLiteral("%1 - %2 x %3 at %4, %5")
        .arg(QString::fromUtf8(shape.data(), static_cast<qsizetype>(shape.size())), number(extent.width),
             number(extent.height), number(frame.minX()), number(frame.minY()));
}

bool readsTheSame(const BlurOverlay& one, const BlurOverlay& other) {
    return one.id() == other.id() && one.shape == other.shape && one.frame == other.frame;
}

auto withID(const UUID& id) {
    return [id](const BlurOverlay& overlay) { return overlay.id() == id; };
}

}  // namespace

void OverlayListModel::setOverlays(const std::vector<BlurOverlay>& overlays) {
    const std::vector<BlurOverlay> before = overlays_;
    removeRowsNotIn(overlays);
    for (std::size_t row = 0; row < overlays.size(); ++row) {
        placeRow(static_cast<int>(row), overlays[row]);
    }
    if (overlays_.size() > overlays.size()) {
        // Only rows of an identity that the list held several times are left over.
        beginRemoveRows({}, static_cast<int>(overlays.size()), static_cast<int>(overlays_.size()) - 1);
        overlays_.erase(overlays_.begin() + static_cast<std::ptrdiff_t>(overlays.size()), overlays_.end());
        endRemoveRows();
    }
    for (std::size_t row = 0; row < overlays.size(); ++row) {
        if (row >= before.size() || !readsTheSame(before[row], overlays[row])) {
            const QModelIndex changed = index(static_cast<int>(row));
            Q_EMIT dataChanged(changed, changed);
        }
    }
}

QModelIndex OverlayListModel::indexOf(const UUID& id) const {
    const auto found = std::ranges::find_if(overlays_, withID(id));
    return found == overlays_.end() ? QModelIndex() : index(static_cast<int>(found - overlays_.begin()));
}

int OverlayListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(overlays_.size());
}

QVariant OverlayListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const BlurOverlay& overlay = overlays_[static_cast<std::size_t>(index.row())];
    switch (role) {
        case TitleRole:
            return title(index.row());
        case DetailRole:
            return detail(overlay);
        case Qt::AccessibleTextRole:
            return QStringLiteral("%1, %2").arg(title(index.row()), detail(overlay));
        default:
            return {};
    }
}

void OverlayListModel::removeRowsNotIn(const std::vector<BlurOverlay>& overlays) {
    for (int row = rowCount() - 1; row >= 0; --row) {
        const auto position = overlays_.begin() + row;
        if (std::ranges::none_of(overlays, withID(position->id()))) {
            beginRemoveRows({}, row, row);
            overlays_.erase(position);
            endRemoveRows();
        }
    }
}

void OverlayListModel::placeRow(int row, const BlurOverlay& overlay) {
    const auto position = overlays_.begin() + row;
    const auto found = std::find_if(position, overlays_.end(), withID(overlay.id()));
    if (found == overlays_.end()) {
        beginInsertRows({}, row, row);
        overlays_.insert(position, overlay);
        endInsertRows();
        return;
    }
    if (found != position) {
        beginMoveRows({}, static_cast<int>(found - overlays_.begin()), static_cast<int>(found - overlays_.begin()), {},
                      row);
        std::rotate(position, found, found + 1);
        endMoveRows();
    }
    overlays_[static_cast<std::size_t>(row)] = overlay;
}

}  // namespace pallwick
