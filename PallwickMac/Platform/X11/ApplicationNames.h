#pragma once

#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>

#include <compare>
#include <string>

namespace pallwick::x11 {

/// What a client window says about the application it belongs to, clean UTF-8; each may be empty.
struct ApplicationNames {
    /// `_GTK_APPLICATION_ID`.
    std::string gtkID;
    /// `_KDE_NET_WM_DESKTOP_FILE`, without folder and suffix.
    std::string kdeID;
    /// The class of WM_CLASS, or its instance where that has none.
    std::string windowClass;

    [[nodiscard]] bool empty() const { return gtkID.empty() && kdeID.empty() && windowClass.empty(); }

    friend auto operator<=>(const ApplicationNames&, const ApplicationNames&) = default;
};

/// Sent when it is made and answered at `get`, as the requests for single properties are.
class ApplicationNamesRequest {
public:
    ApplicationNamesRequest(const Connection& connection, xcb_window_t window);

    /// To be called once.
    [[nodiscard]] ApplicationNames get();

private:
    TextRequest gtkID_;
    TextRequest kdeID_;
    TextRequest windowClass_;
};

}  // namespace pallwick::x11
