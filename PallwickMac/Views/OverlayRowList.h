#pragma once

#include <QListView>

namespace pallwick {

/// The list widget of the sidebar. The secondary button asks for a row's menu without selecting the row.
class OverlayRowList final : public QListView {
    Q_OBJECT

public:
    explicit OverlayRowList(QWidget* parent = nullptr);

Q_SIGNALS:
    void menuRequested(const QModelIndex& index, const QPoint& globalPosition);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void requestMenuFromKeyboard();
};

}  // namespace pallwick
