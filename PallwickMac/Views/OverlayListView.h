#pragma once

#include <QWidget>

class QModelIndex;
class QPoint;

namespace pallwick {

class AppModel;
class OverlayListModel;
class OverlayRowList;
class SymbolOnlyButton;
class UUID;

/// The main window's sidebar: the list of overlays over its buttons. The list shows the model's selection and keeps
/// none of its own.
class OverlayListView final : public QWidget {
    Q_OBJECT

public:
    /// `model` is not owned and must outlive the view.
    explicit OverlayListView(AppModel& model, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showOverlays();
    void showSelection();
    void publishSelection();
    void showMenu(const QModelIndex& index, const QPoint& globalPosition);
    void removeRow(const UUID& id);

    AppModel& model_;
    OverlayListModel* rows_;
    OverlayRowList* list_;
    SymbolOnlyButton* removeButton_;
    /// The list is being brought in step: what its selection does now is not a person's doing.
    bool isRefreshing_ = false;
};

}  // namespace pallwick
