#pragma once

#include <support/PrivateDesktop.h>

#include <string>
#include <vector>

namespace pallwick::desktop {

/// A panel's notification area (System Tray Protocol, XEmbed) in the top-left corner of the screen, without any window
/// of a toolkit. It acts only while something is awaited through it.
class NotificationArea {
public:
    struct Options {
        /// Pixels.
        int iconSide = 24;
        support::Colour ground{.red = 0, .green = 0, .blue = 255};
        /// Icons shall have an alpha channel.
        bool wantsAlpha = false;
    };

    /// Returns once it has announced itself.
    NotificationArea(support::PrivateDesktop& desktop, Options options);
    explicit NotificationArea(support::PrivateDesktop& desktop) : NotificationArea(desktop, Options{}) {}
    /// As a crash would: icons are left to the server.
    ~NotificationArea();
    NotificationArea(const NotificationArea&) = delete;
    NotificationArea& operator=(const NotificationArea&) = delete;

    /// The icons in it now.
    [[nodiscard]] const std::vector<xcb_window_t>& icons();
    /// Returns the only icon once there is one, and it is shown.
    xcb_window_t awaitIcon();
    void awaitNoIcon();

    [[nodiscard]] support::PixelRect iconRect() const;
    void setIconSide(int side);

    /// Ends in good order: it gives its icons back, then goes.
    void close();

private:
    xcb_atom_t atom(const std::string& name);
    void makeWindow();
    void announce();
    void process();
    void handle(const xcb_generic_event_t& event);
    void embed(xcb_window_t icon);
    [[nodiscard]] bool wantsToBeMapped(xcb_window_t icon);

    support::PrivateDesktop& desktop_;
    Options options_;
    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    xcb_window_t window_ = support::noWindow;
    std::vector<xcb_window_t> icons_;
};

}  // namespace pallwick::desktop
