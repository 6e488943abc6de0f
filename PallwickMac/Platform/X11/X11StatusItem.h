#pragma once

#include <PallwickMac/Platform/Freedesktop/StatusNotifierItem.h>
#include <PallwickMac/Platform/StatusItem.h>
#include <PallwickMac/Platform/X11/SystemTrayIcon.h>

namespace pallwick::x11 {

/// A status item of an X11 desktop: on the session bus where a panel shows what is there, which looks better and is
/// easier to reach by keyboard, else in the panel's notification area. Never in both.
class X11StatusItem final : public StatusItem {
    Q_OBJECT

public:
    /// `tray` is not owned and must outlive the object.
    X11StatusItem(SystemTray& tray, const StatusItemDescription& description);

    void setIcon(const QIcon& icon) override;
    void setMenu(const std::vector<StatusItemEntry>& entries) override;
    [[nodiscard]] bool isShown() const override { return notifierItem_.isShown() || trayIcon_.isShown(); }

private:
    freedesktop::StatusNotifierItem notifierItem_;
    SystemTrayIcon trayIcon_;
    bool wasShown_ = false;
};

}  // namespace pallwick::x11
