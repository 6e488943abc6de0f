#pragma once

#include <PallwickMac/Platform/StatusItem.h>
#include <PallwickMac/Platform/X11/PixelMapping.h>
#include <PallwickMac/Platform/X11/RenderFormats.h>
#include <PallwickMac/Platform/X11/Resources.h>
#include <PallwickMac/Platform/X11/SystemTray.h>

namespace pallwick::x11 {

/// A status item in the notification area of a panel: a window of ours that the panel takes into its own (System Tray
/// Protocol, XEmbed). The panel decides on its size and place; what shows around the icon is the panel's.
class SystemTrayIcon final : public StatusItem {
    Q_OBJECT

public:
    /// Made without being wanted. `tray` is not owned and must outlive the object.
    SystemTrayIcon(SystemTray& tray, const StatusItemDescription& description);
    ~SystemTrayIcon() override;

    /// While it is wanted, it is in the notification area whenever there is one.
    void setWanted(bool wanted);

    void setIcon(const QIcon& icon) override;
    /// It has no place for a menu of its own: it asks for one instead.
    void setMenu(const std::vector<StatusItemEntry>& /*entries*/) override {}
    [[nodiscard]] bool isShown() const override { return shown_; }

    /// The manager is another one now, maybe none.
    void dockAnew();

    /// Takes any event.
    void handle(const xcb_generic_event_t& event);

private:
    void dock();
    void makeWindow(xcb_visualid_t visual);
    void describe();
    void undock();
    void draw();
    void handlePress(const xcb_button_press_event_t& press);
    void handleRelease(const xcb_button_release_event_t& release);
    void setShown(bool shown);

    SystemTray& tray_;
    const Connection& connection_;
    RenderFormats formats_;
    QIcon icon_;
    QString title_;
    bool wanted_ = false;
    bool shown_ = false;
    ColormapHandle colormap_;
    WindowHandle window_;
    xcb_render_pictformat_t format_ = XCB_NONE;
    /// Pixels.
    int width_ = 0;
    int height_ = 0;
};

}  // namespace pallwick::x11
