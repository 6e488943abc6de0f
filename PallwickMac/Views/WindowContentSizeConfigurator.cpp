#include <PallwickMac/Views/WindowContentSizeConfigurator.h>

#include <QLayout>
#include <QMainWindow>
#include <QScreen>
#include <QWindow>

namespace pallwick {

WindowContentSizeConfigurator::WindowContentSizeConfigurator(const QSize& minimumSize, QWidget* parent)
    : QWidget(parent), minimumSize_(minimumSize) {
    setFixedSize(0, 0);
    configure();
}

void WindowContentSizeConfigurator::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    configure();
    followScale();
}

void WindowContentSizeConfigurator::followScale() {
    disconnect(scaleChanges_);
    if (const QScreen* screen = window()->screen()) {
        // Queued: the toolkit has yet to work the new scale out for its windows.
        scaleChanges_ = connect(screen, &QScreen::logicalDotsPerInchChanged, this,
                                &WindowContentSizeConfigurator::keepSizeInPoints, Qt::QueuedConnection);
    }
}

void WindowContentSizeConfigurator::keepSizeInPoints() {
    // The toolkit leaves the window as many pixels as it had, which are fewer points at a larger scale.
    if (QWindow* handle = window()->windowHandle()) {
        handle->resize(handle->size().expandedTo(window()->size()));
    }
    configure();
}

void WindowContentSizeConfigurator::configure() {
    auto* window = qobject_cast<QMainWindow*>(this->window());
    QWidget* content = window ? window->centralWidget() : nullptr;
    if (!content) {
        return;
    }
    content->setMinimumSize(minimumSize_);
    // What is around the content takes its room only once it has been laid out.
    window->layout()->activate();
    const QSize missing = (minimumSize_ - content->size()).expandedTo({0, 0});
    if (missing != QSize(0, 0)) {
        window->resize(window->size() + missing);
    }
}

}  // namespace pallwick
