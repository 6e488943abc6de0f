#pragma once

#include <QAccessible>
#include <QString>
#include <QWindow>

namespace pallwick {
class OverlaySurface;
}

namespace pallwick::x11 {

/// Makes a surface known to screen readers. The toolkit only lists what hangs on a window of its own, so this is one,
/// never created on the server, whose accessible root stands for the surface.
class SurfaceAccessibility final : public QWindow {
    Q_OBJECT

public:
    /// `surface` is not owned and must outlive the object.
    explicit SurfaceAccessibility(const OverlaySurface& surface);
    ~SurfaceAccessibility() override;

    void setName(const QString& name);

    [[nodiscard]] const QString& name() const { return name_; }
    [[nodiscard]] const OverlaySurface& surface() const { return surface_; }

    [[nodiscard]] QAccessibleInterface* accessibleRoot() const override;

private:
    const OverlaySurface& surface_;
    QString name_;
    /// Owned by the toolkit's register of accessible objects under this id, until we delete it there.
    QAccessible::Id root_;
};

}  // namespace pallwick::x11
