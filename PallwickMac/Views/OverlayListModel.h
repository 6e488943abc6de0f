#pragma once

#include <PallwickMacCore/Models/BlurOverlay.h>

#include <QAbstractListModel>

#include <vector>

namespace pallwick {

/// The rows of the overlay list: one per overlay, in list order.
///
/// A new list is taken in as the smallest change of rows, so that a view keeps its selection, its focus and its scroll
/// position over a refresh.
class OverlayListModel final : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        /// "Overlay 1": the row's position, not a stored name.
        TitleRole = Qt::DisplayRole,
        /// "Rectangle - 320 x 180 at -12, 40", in whole points.
        DetailRole = Qt::UserRole,
    };

    using QAbstractListModel::QAbstractListModel;

    void setOverlays(const std::vector<BlurOverlay>& overlays);
    [[nodiscard]] const std::vector<BlurOverlay>& overlays() const { return overlays_; }

    /// The first row of that overlay; invalid where there is none.
    [[nodiscard]] QModelIndex indexOf(const UUID& id) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    void removeRowsNotIn(const std::vector<BlurOverlay>& overlays);
    void placeRow(int row, const BlurOverlay& overlay);

    std::vector<BlurOverlay> overlays_;
};

}  // namespace pallwick
