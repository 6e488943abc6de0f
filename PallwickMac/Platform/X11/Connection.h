#pragma once

#include <PallwickMac/Platform/X11/Atoms.h>

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <string>

namespace pallwick::x11 {

/// A connection of our own to the X server, beside the toolkit's: requests about panels keep their order, and event
/// masks on other programs' windows do not mix with the toolkit's.
///
/// Requests are sent unchecked unless a caller checks them: a window that vanishes between two requests costs an
/// answer, not the program.
class Connection {
public:
    /// Connects to the server that DISPLAY names and makes sure of what the program needs: RandR 1.5, Shape, XFixes,
    /// Render, Composite, Damage and a visual with an alpha channel. Throws `PlatformUnavailable`.
    Connection();
    ~Connection();

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    [[nodiscard]] xcb_connection_t* xcb() const { return connection_.get(); }
    [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }
    [[nodiscard]] int screenNumber() const { return screenNumber_; }
    [[nodiscard]] xcb_window_t root() const { return screen_->root; }
    [[nodiscard]] xcb_atom_t atom(Atom name) const { return (*atoms_)[name]; }

    /// A true-colour visual of depth 32 whose fourth channel is alpha, and a colormap for it.
    [[nodiscard]] xcb_visualid_t argbVisual() const { return argbVisual_; }
    [[nodiscard]] xcb_colormap_t argbColormap() const { return argbColormap_; }

    /// The event numbers at which an extension's own events begin.
    [[nodiscard]] std::uint8_t randrFirstEvent() const { return randrFirstEvent_; }
    [[nodiscard]] std::uint8_t xfixesFirstEvent() const { return xfixesFirstEvent_; }
    [[nodiscard]] std::uint8_t shapeFirstEvent() const { return shapeFirstEvent_; }
    [[nodiscard]] std::uint8_t damageFirstEvent() const { return damageFirstEvent_; }

    /// Whether the server can tell which process a client is (X-Resource 1.2).
    [[nodiscard]] bool hasClientIDs() const { return hasClientIDs_; }

    /// The part of a resource's id that all resources of one client share, and no others: the server gives each client
    /// a range of its own for the ids that it makes (X protocol, section 8).
    [[nodiscard]] std::uint32_t clientOf(std::uint32_t resource) const {
        return resource & ~xcb_get_setup(xcb())->resource_id_mask;
    }

    /// This connection made the resource.
    [[nodiscard]] bool isOwn(std::uint32_t resource) const {
        return clientOf(resource) == xcb_get_setup(xcb())->resource_id_base;
    }

    void flush() const { xcb_flush(xcb()); }

    /// Returns once the server has done what was asked of it through this connection.
    void sync() const;

    /// The server is gone; nothing more will come.
    [[nodiscard]] bool isBroken() const { return xcb_connection_has_error(xcb()) != 0; }

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const noexcept { xcb_disconnect(connection); }
    };

    void requireExtensions();
    void requireArgbVisual();

    int screenNumber_ = 0;
    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    xcb_screen_t* screen_ = nullptr;
    std::unique_ptr<Atoms> atoms_;
    xcb_visualid_t argbVisual_ = XCB_NONE;
    xcb_colormap_t argbColormap_ = XCB_NONE;
    std::uint8_t randrFirstEvent_ = 0;
    std::uint8_t xfixesFirstEvent_ = 0;
    std::uint8_t shapeFirstEvent_ = 0;
    std::uint8_t damageFirstEvent_ = 0;
    bool hasClientIDs_ = false;
};

}  // namespace pallwick::x11
