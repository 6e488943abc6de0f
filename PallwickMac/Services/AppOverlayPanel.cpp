#include <PallwickMac/Platform/DesktopPlatform.h>
#include <PallwickMac/Services/AppOverlayPanel.h>
#include <PallwickMac/Services/OverlayContentView.h>

#include <QCoreApplication>
#include <QMetaObject>

#include <utility>

namespace pallwick {

std::shared_ptr<AppOverlayPanel> AppOverlayPanel::make(DesktopPlatform& platform, const BlurOverlay& overlay,
                                                       FrameChangedCallback onFrameChanged,
                                                       DeleteRequestedCallback onDeleteRequested) {
    return std::shared_ptr<AppOverlayPanel>(
        new AppOverlayPanel(platform, overlay, std::move(onFrameChanged), std::move(onDeleteRequested)));
}

AppOverlayPanel::AppOverlayPanel(DesktopPlatform& platform, const BlurOverlay& overlay,
                                 FrameChangedCallback onFrameChanged, DeleteRequestedCallback onDeleteRequested)
    : overlayView_(
          std::make_unique<OverlayContentView>(overlay, std::move(onFrameChanged), std::move(onDeleteRequested))),
      surface_(platform.makeOverlaySurface(*overlayView_)) {
    overlayView_->setSurface(surface_.get());
    update(overlay, true);
}

AppOverlayPanel::~AppOverlayPanel() = default;

void AppOverlayPanel::update(const BlurOverlay& overlay, bool editMode) {
    if (closed_) {
        return;
    }
    surface_->setFrame(overlay.frame);
    surface_->setIgnoresMouseEvents(!editMode);
    overlayView_->update(overlay, editMode);
}

void AppOverlayPanel::show() {
    if (!closed_) {
        surface_->show();
    }
}

void AppOverlayPanel::hide() {
    if (!closed_) {
        surface_->hide();
    }
}

void AppOverlayPanel::close() {
    if (closed_) {
        return;
    }
    closed_ = true;
    surface_->hide();
    overlayView_->setSurface(nullptr);
    // The surface may be delivering the very click that closes it. It goes when that has returned, whoever still holds
    // the panel then.
    QMetaObject::invokeMethod(
        qApp, [self = shared_from_this()] { self->surface_.reset(); }, Qt::QueuedConnection);
}

}  // namespace pallwick
