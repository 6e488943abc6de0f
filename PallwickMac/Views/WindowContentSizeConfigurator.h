#pragma once

#include <QSize>
#include <QWidget>

namespace pallwick {

/// Nothing to see. Keeps the content area of the main window that it is in, menus and title bar not counted, from being
/// smaller than a minimum: the window grows to it, at a larger scale too, and cannot be made smaller. It never shrinks
/// a window.
class WindowContentSizeConfigurator final : public QWidget {
    Q_OBJECT

public:
    /// `minimumSize` in points. In no window yet, it waits until it is shown in one.
    WindowContentSizeConfigurator(const QSize& minimumSize, QWidget* parent);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void configure();
    void followScale();
    void keepSizeInPoints();

    QSize minimumSize_;
    QMetaObject::Connection scaleChanges_;
};

}  // namespace pallwick
