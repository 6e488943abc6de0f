#pragma once

#include <xcb/damage.h>
#include <xcb/render.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <cstdint>
#include <utility>

namespace pallwick::x11 {

/// Owns something on the X server that has an id, and frees it there with `Free`. May be empty.
template <typename Free>
class ServerResource {
public:
    ServerResource() = default;
    ServerResource(xcb_connection_t* connection, std::uint32_t id) : connection_(connection), id_(id) {}
    ServerResource(ServerResource&& other) noexcept
        : connection_(std::exchange(other.connection_, nullptr)), id_(std::exchange(other.id_, XCB_NONE)) {}
    ServerResource& operator=(ServerResource&& other) noexcept {
        std::swap(connection_, other.connection_);
        std::swap(id_, other.id_);
        return *this;
    }
    ServerResource(const ServerResource&) = delete;
    ServerResource& operator=(const ServerResource&) = delete;
    ~ServerResource() {
        if (id_ != XCB_NONE) {
            Free{}(connection_, id_);
        }
    }

    [[nodiscard]] std::uint32_t id() const { return id_; }
    [[nodiscard]] explicit operator bool() const { return id_ != XCB_NONE; }

private:
    xcb_connection_t* connection_ = nullptr;
    std::uint32_t id_ = XCB_NONE;
};

struct FreePixmap {
    void operator()(xcb_connection_t* connection, xcb_pixmap_t id) const { xcb_free_pixmap(connection, id); }
};
struct FreeColormap {
    void operator()(xcb_connection_t* connection, xcb_colormap_t id) const { xcb_free_colormap(connection, id); }
};
struct DestroyWindow {
    void operator()(xcb_connection_t* connection, xcb_window_t id) const { xcb_destroy_window(connection, id); }
};
struct FreePicture {
    void operator()(xcb_connection_t* connection, xcb_render_picture_t id) const {
        xcb_render_free_picture(connection, id);
    }
};
struct DestroyDamage {
    void operator()(xcb_connection_t* connection, xcb_damage_damage_t id) const { xcb_damage_destroy(connection, id); }
};
struct DestroyRegion {
    void operator()(xcb_connection_t* connection, xcb_xfixes_region_t id) const {
        xcb_xfixes_destroy_region(connection, id);
    }
};

using ColormapHandle = ServerResource<FreeColormap>;
using WindowHandle = ServerResource<DestroyWindow>;
using PixmapHandle = ServerResource<FreePixmap>;
using PictureHandle = ServerResource<FreePicture>;
using DamageHandle = ServerResource<DestroyDamage>;
using RegionHandle = ServerResource<DestroyRegion>;

}  // namespace pallwick::x11
