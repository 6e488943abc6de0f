#pragma once

#include <optional>
#include <string>
#include <vector>

#include "XConnection.h"

namespace pallwick::support {

/// A desktop's windows as the X server and the window manager report them (ICCCM; Extended Window Manager Hints).
class Windows {
public:
    explicit Windows(XConnection& x) : x_(x) {}

    /// Children of the root, bottom to top.
    [[nodiscard]] std::vector<xcb_window_t> stacking();
    /// The window manager's clients in the order they came; without one, the mapped root children with a title.
    [[nodiscard]] std::vector<xcb_window_t> clients();
    /// The first client with that title, none where there is none.
    [[nodiscard]] std::optional<xcb_window_t> client(const std::string& wanted);
    /// Returns once a viewable client with that title exists.
    xcb_window_t awaitClient(const std::string& wanted);

    [[nodiscard]] std::string title(xcb_window_t window);
    /// Both parts of WM_CLASS: instance and class.
    [[nodiscard]] std::vector<std::string> windowClass(xcb_window_t window);
    /// Where the window itself is on the root, without any decoration. None once it is gone.
    [[nodiscard]] std::optional<PixelRect> rect(xcb_window_t window);
    /// With its decoration (_NET_FRAME_EXTENTS).
    [[nodiscard]] std::optional<PixelRect> frame(xcb_window_t window);
    /// The root's child that holds the window: the window itself or what it was reparented into.
    [[nodiscard]] xcb_window_t rootChild(xcb_window_t window);
    [[nodiscard]] bool isViewable(xcb_window_t window);
    [[nodiscard]] bool isOverrideRedirect(xcb_window_t window);
    [[nodiscard]] int depth(xcb_window_t window);
    /// Whether `upper` is stacked above `lower`, by their root children.
    [[nodiscard]] bool isAbove(xcb_window_t upper, xcb_window_t lower);

    /// _NET_ACTIVE_WINDOW, noWindow for none.
    [[nodiscard]] xcb_window_t active();
    /// The window with the keyboard focus as the X server knows it, which may be a child of a client.
    [[nodiscard]] xcb_window_t focus();
    /// Whether the keyboard focus is in the window or a child of it.
    [[nodiscard]] bool hasFocus(xcb_window_t window);
    /// The names of _NET_WM_STATE.
    [[nodiscard]] std::vector<std::string> state(xcb_window_t window);
    [[nodiscard]] bool hasState(xcb_window_t window, const std::string& name);
    /// ICCCM's WM_STATE: 1 normal, 3 iconic, 0 withdrawn or unset.
    [[nodiscard]] std::uint32_t wmState(xcb_window_t window);
    [[nodiscard]] std::uint32_t workspace();

    /// Requests to the window manager. Each returns once it was granted, or throws `Timeout`.
    void activate(xcb_window_t window);
    void setFullScreen(xcb_window_t window, bool on);
    void setKeptAbove(xcb_window_t window, bool on);
    void minimise(xcb_window_t window);
    void switchToWorkspace(std::uint32_t index);
    void setWorkspaceCount(std::uint32_t count);
    void sendToWorkspace(xcb_window_t window, std::uint32_t index);
    /// Puts the window's own top-left corner at `point`, as far as the window manager lets it; does not wait.
    void move(xcb_window_t window, PixelPoint point);
    /// What a click on the title bar's close button asks (WM_DELETE_WINDOW); does not wait.
    void close(xcb_window_t window);

    [[nodiscard]] bool hasSelectionOwner(const std::string& selection);
    /// The name of the window manager that is running now, none when there is none.
    [[nodiscard]] std::optional<std::string> windowManagerName();

    [[nodiscard]] std::vector<std::uint32_t> cardinals(xcb_window_t window, const std::string& name);
    [[nodiscard]] std::string text(xcb_window_t window, const std::string& name);
    void setText(xcb_window_t window, const std::string& name, const std::string& value);
    void setCardinal(xcb_window_t window, const std::string& name, std::uint32_t value);

private:
    void tellWindowManager(xcb_window_t window, const std::string& message, std::uint32_t first,
                           std::uint32_t second = 0, std::uint32_t third = 0);
    void changeState(xcb_window_t window, const std::string& name, bool on);

    XConnection& x_;
};

}  // namespace pallwick::support
