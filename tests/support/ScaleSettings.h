#pragma once

#include "PrivateDesktop.h"

namespace pallwick::support {

/// A desktop's settings service (XSETTINGS) with one setting in it, the dots an inch of text (Xft/DPI), by which
/// desktops tell running programs of a new scale.
class ScaleSettings {
public:
    /// Scales are in pixels per point. Programs started later find the service.
    ScaleSettings(PrivateDesktop& desktop, double scale);
    ~ScaleSettings();
    ScaleSettings(const ScaleSettings&) = delete;
    ScaleSettings& operator=(const ScaleSettings&) = delete;

    void setScale(double scale);

private:
    PrivateDesktop& desktop_;
    xcb_window_t window_;
    std::uint32_t serial_ = 0;
};

}  // namespace pallwick::support
