#pragma once

#include <PallwickMac/Platform/OverlaySurface.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <xcb/xcb_cursor.h>

#include <array>
#include <memory>

namespace pallwick::x11 {

/// The pointer shapes of the user's cursor theme, loaded at first use and freed with the object.
class CursorSet {
public:
    /// `connection` is not owned and must outlive the object.
    explicit CursorSet(const Connection& connection);
    ~CursorSet();

    CursorSet(const CursorSet&) = delete;
    CursorSet& operator=(const CursorSet&) = delete;

    /// XCB_CURSOR_NONE, which shows what lies beneath the window's, where the theme has no such cursor.
    [[nodiscard]] xcb_cursor_t cursor(CursorShape shape);

private:
    struct FreeContext {
        void operator()(xcb_cursor_context_t* context) const noexcept { xcb_cursor_context_free(context); }
    };

    const Connection& connection_;
    std::unique_ptr<xcb_cursor_context_t, FreeContext> context_;
    std::array<xcb_cursor_t, 3> cursors_{};
    std::array<bool, 3> loaded_{};
};

}  // namespace pallwick::x11
