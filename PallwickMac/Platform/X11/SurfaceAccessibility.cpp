#include <PallwickMac/Platform/OverlaySurface.h>
#include <PallwickMac/Platform/X11/SurfaceAccessibility.h>

#include <QAccessibleObject>
#include <QGuiApplication>
#include <QScreen>

namespace pallwick::x11 {

namespace {

class Root final : public QAccessibleObject {
public:
    explicit Root(SurfaceAccessibility& owner) : QAccessibleObject(&owner), owner_(owner) {}

    [[nodiscard]] QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(qApp); }
    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Pane; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? owner_.name() : QString();
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.invisible = owner_.surface().isVisible() ? 0 : 1;
        return state;
    }

    // The toolkit's own coordinates: points, y down from the primary screen's top-left corner.
    [[nodiscard]] QRect rect() const override {
        const QScreen* screen = QGuiApplication::primaryScreen();
        if (screen == nullptr) {
            return {};
        }
        const Rect frame = owner_.surface().frame();
        const QRect primary = screen->geometry();
        return QRectF(primary.x() + frame.minX(), primary.y() + primary.height() - frame.maxY(), frame.extent().width,
                      frame.extent().height)
            .toAlignedRect();
    }

private:
    SurfaceAccessibility& owner_;
};

}  // namespace

SurfaceAccessibility::SurfaceAccessibility(const OverlaySurface& surface)
    : surface_(surface), root_(QAccessible::registerAccessibleInterface(new Root(*this))) {}

SurfaceAccessibility::~SurfaceAccessibility() {
    QAccessible::deleteAccessibleInterface(root_);
}

void SurfaceAccessibility::setName(const QString& name) {
    if (name == name_) {
        return;
    }
    name_ = name;
    QAccessibleEvent event(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

QAccessibleInterface* SurfaceAccessibility::accessibleRoot() const {
    return QAccessible::accessibleInterface(root_);
}

}  // namespace pallwick::x11
