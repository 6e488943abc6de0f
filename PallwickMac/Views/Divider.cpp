#include <PallwickMac/Views/Divider.h>

#include <PallwickMac/Views/Appearance.h>

#include <QPainter>

namespace pallwick {

Divider::Divider(QWidget* parent) : QWidget(parent) {
    setFixedHeight(1);
}

void Divider::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), separatorColor(palette()));
}

}  // namespace pallwick
