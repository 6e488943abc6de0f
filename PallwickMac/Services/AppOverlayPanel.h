#pragma once

#include <PallwickMacCore/Services/OverlayPanelControlling.h>

#include <memory>

namespace pallwick {

class DesktopPlatform;
class OverlayContentView;
class OverlaySurface;

/// The on-screen panel of one overlay: a platform surface whose whole content is an `OverlayContentView`.
///
/// It keeps neither the overlay nor the edit mode; the view holds both. Born in edit mode: the controller sends the
/// real mode right after making it. A closed panel does nothing more; it and its surface stay alive until the event
/// loop runs again, because a click on its own delete control closes it from inside its handler.
class AppOverlayPanel final : public OverlayPanelControlling, public std::enable_shared_from_this<AppOverlayPanel> {
public:
    /// `platform` is not owned and must outlive the panel.
    [[nodiscard]] static std::shared_ptr<AppOverlayPanel> make(DesktopPlatform& platform, const BlurOverlay& overlay,
                                                               FrameChangedCallback onFrameChanged,
                                                               DeleteRequestedCallback onDeleteRequested);
    ~AppOverlayPanel() override;

    void update(const BlurOverlay& overlay, bool editMode) override;
    void show() override;
    void hide() override;
    void close() override;

private:
    AppOverlayPanel(DesktopPlatform& platform, const BlurOverlay& overlay, FrameChangedCallback onFrameChanged,
                    DeleteRequestedCallback onDeleteRequested);

    std::unique_ptr<OverlayContentView> overlayView_;
    /// Null once a closed panel's surface has gone.
    std::unique_ptr<OverlaySurface> surface_;
    bool closed_ = false;
};

}  // namespace pallwick
