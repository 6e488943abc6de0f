#pragma once

#include <PallwickMacCore/Models/BlurOverlay.h>

#include <functional>
#include <memory>

namespace pallwick {

/// A panel's new frame after a step of a drag or a resize, in screen coordinates.
using FrameChangedCallback = std::function<void(const UUID& overlayID, const Rect& frame)>;

/// A click on a panel's delete control.
using DeleteRequestedCallback = std::function<void(const UUID& overlayID)>;

/// The on-screen panel of one overlay. Main thread only; the callbacks it was made with are invoked there too.
class OverlayPanelControlling {
public:
    virtual ~OverlayPanelControlling() = default;

    OverlayPanelControlling(const OverlayPanelControlling&) = delete;
    OverlayPanelControlling& operator=(const OverlayPanelControlling&) = delete;

    /// Shows `overlay` from now on. In edit mode the panel takes the mouse, otherwise clicks pass through it.
    virtual void update(const BlurOverlay& overlay, bool editMode) = 0;

    /// Brings the panel to the front without activating the program.
    virtual void show() = 0;

    /// Takes the panel off the screen; its state survives.
    virtual void hide() = 0;

    /// Takes the panel off the screen for good.
    virtual void close() = 0;

protected:
    OverlayPanelControlling() = default;
};

/// Makes the panel for an overlay. The panel keeps both callbacks.
using PanelFactory = std::function<std::shared_ptr<OverlayPanelControlling>(
    const BlurOverlay& overlay, FrameChangedCallback onFrameChanged, DeleteRequestedCallback onDeleteRequested)>;

}  // namespace pallwick
