#include <PallwickMac/Views/OverlayListView.h>

#include <PallwickMac/App/AppModel.h>
#include <PallwickMac/Views/Divider.h>
#include <PallwickMac/Views/MenuAccessibility.h>
#include <PallwickMac/Views/OverlayListModel.h>
#include <PallwickMac/Views/OverlayRowDelegate.h>
#include <PallwickMac/Views/OverlayRowList.h>
#include <PallwickMac/Views/SymbolButton.h>
#include <PallwickMac/Views/TextLabel.h>

#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QMenu>
#include <QPainter>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <algorithm>

namespace pallwick {

OverlayListView::OverlayListView(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      rows_(new OverlayListModel(this)),
      list_(new OverlayRowList(this)),
      removeButton_(nullptr) {
    auto* header = new TextLabel(TextStyle::caption, TextColor::secondary, QStringLiteral("Manual Overlays"), this);
    header->setContentsMargins(16, 12, 16, 6);

    list_->setAccessibleName(header->text());
    list_->setModel(rows_);
    list_->setItemDelegate(new OverlayRowDelegate(list_));

    auto* addButton = new SymbolOnlyButton(QStringLiteral("Add"), Symbol::plus, QStringLiteral("Add overlay"), this);
    removeButton_ =
        new SymbolOnlyButton(QStringLiteral("Remove"), Symbol::minus, QStringLiteral("Remove selected overlay"), this);

    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(8, 8, 8, 8);
    bar->setSpacing(4);
    bar->addWidget(addButton);
    bar->addWidget(removeButton_);
    bar->addStretch();

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(header);
    column->addWidget(list_, 1);
    column->addWidget(new Divider(this));
    column->addLayout(bar);

    connect(addButton, &QAbstractButton::clicked, &model_, &AppModel::addOverlay);
    connect(removeButton_, &QAbstractButton::clicked, &model_, &AppModel::removeSelectedOverlay);
    connect(list_, &OverlayRowList::menuRequested, this, &OverlayListView::showMenu);
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &OverlayListView::publishSelection);
    connect(&model_, &AppModel::overlaysChanged, this, &OverlayListView::showOverlays);
    connect(&model_, &AppModel::selectedOverlayIDChanged, this, &OverlayListView::showSelection);
    showOverlays();
}

void OverlayListView::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), sidebarBackground(palette()));
}

void OverlayListView::showOverlays() {
    {
        const QScopedValueRollback refreshing(isRefreshing_, true);
        rows_->setOverlays(model_.overlays());
    }
    removeButton_->setEnabled(model_.selectedOverlay() != nullptr);
    showSelection();
}

void OverlayListView::showSelection() {
    const std::optional<UUID>& id = model_.selectedOverlayID();
    const QModelIndex selected = id ? rows_->indexOf(*id) : QModelIndex();
    const QModelIndexList shown = list_->selectionModel()->selectedIndexes();
    if (selected.isValid() ? shown == QModelIndexList{selected} : shown.isEmpty()) {
        return;
    }
    const QScopedValueRollback refreshing(isRefreshing_, true);
    if (selected.isValid()) {
        list_->selectionModel()->setCurrentIndex(selected, QItemSelectionModel::ClearAndSelect);
    } else {
        list_->selectionModel()->clear();
    }
}

void OverlayListView::publishSelection() {
    if (isRefreshing_) {
        return;
    }
    const QModelIndexList selected = list_->selectionModel()->selectedIndexes();
    if (selected.isEmpty()) {
        model_.setSelectedOverlayID(std::nullopt);
    } else {
        model_.setSelectedOverlayID(rows_->overlays()[static_cast<std::size_t>(selected.front().row())].id());
    }
    // The row chosen may be the second of one identity; what is shown is what is published.
    showSelection();
}

void OverlayListView::showMenu(const QModelIndex& index, const QPoint& globalPosition) {
    const UUID id = rows_->overlays()[static_cast<std::size_t>(index.row())].id();
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("Remove"), this, [this, id] { removeRow(id); });
    MenuAccessibility::follow(*menu);
    menu->popup(globalPosition);
}

void OverlayListView::removeRow(const UUID& id) {
    // The overlay may have gone while its menu was open; its panel has a delete control too. Going through the
    // selection would then take another overlay away and uncover what that one hides.
    const bool exists =
        std::ranges::any_of(model_.overlays(), [&id](const BlurOverlay& overlay) { return overlay.id() == id; });
    if (!exists) {
        return;
    }
    model_.setSelectedOverlayID(id);
    model_.removeSelectedOverlay();
}

}  // namespace pallwick
