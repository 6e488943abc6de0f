#include <PallwickMac/Views/OverlayRowList.h>

#include <PallwickMac/Views/ControlPainting.h>

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>

namespace pallwick {

OverlayRowList::OverlayRowList(QWidget* parent) : QListView(parent) {
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setUniformItemSizes(true);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setAutoFillBackground(false);
}

void OverlayRowList::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->accept();
        return;
    }
    QListView::mousePressEvent(event);
}

void OverlayRowList::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        requestMenuFromKeyboard();
        return;
    }
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid()) {
        Q_EMIT menuRequested(index, event->globalPos());
    }
}

void OverlayRowList::keyPressEvent(QKeyEvent* event) {
    // The menu key comes as a context menu event; its usual second name does not on X11.
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        requestMenuFromKeyboard();
        return;
    }
    QListView::keyPressEvent(event);
}

void OverlayRowList::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    QStyleOption option;
    option.initFrom(this);
    if (model() && model()->rowCount() == 0 && showsFocus(option)) {
        QPainter painter(viewport());
        drawFocusRing(painter, QRectF(viewport()->rect()).adjusted(8, 1, -8, -8), 6, palette());
    }
}

void OverlayRowList::requestMenuFromKeyboard() {
    const QModelIndex index = currentIndex();
    if (index.isValid()) {
        Q_EMIT menuRequested(index, viewport()->mapToGlobal(visualRect(index).center()));
    }
}

}  // namespace pallwick
