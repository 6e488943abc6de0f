#include <PallwickMac/Views/HairlineSplitter.h>

#include <PallwickMac/Views/Appearance.h>

#include <QPainter>
#include <QSplitterHandle>

namespace pallwick {

namespace {

class HairlineHandle final : public QSplitterHandle {
public:
    using QSplitterHandle::QSplitterHandle;

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(contentsRect(), separatorColor(palette())); }
};

}  // namespace

HairlineSplitter::HairlineSplitter(QWidget* parent) : QSplitter(Qt::Horizontal, parent) {
    // At one pixel the toolkit widens the handle beyond what it shows.
    setHandleWidth(1);
}

QSplitterHandle* HairlineSplitter::createHandle() {
    return new HairlineHandle(orientation(), this);
}

}  // namespace pallwick
