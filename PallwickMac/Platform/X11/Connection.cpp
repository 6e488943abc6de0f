#include <PallwickMac/Platform/PlatformFactory.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/randr.h>
#include <xcb/render.h>
#include <xcb/res.h>
#include <xcb/shape.h>
#include <xcb/xcb_aux.h>
#include <xcb/xfixes.h>

#include <cstdlib>

namespace pallwick::x11 {

namespace {

std::string displayName() {
    const char* name = std::getenv("DISPLAY");
    return name == nullptr ? std::string() : std::string(name);
}

void require(bool present, const std::string& what) {
    if (!present) {
        throw PlatformUnavailable("the X server at DISPLAY=" + displayName() + " lacks " + what +
                                  ", which is needed to cover windows");
    }
}

bool isAtLeast(std::uint32_t major, std::uint32_t minor, std::uint32_t wantedMajor, std::uint32_t wantedMinor) {
    return major != wantedMajor ? major > wantedMajor : minor >= wantedMinor;
}

const xcb_visualtype_t* findArgbVisual(const xcb_screen_t& screen) {
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem != 0; xcb_depth_next(&depth)) {
        if (depth.data->depth != 32) {
            continue;
        }
        for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem != 0; xcb_visualtype_next(&visual)) {
            // The drawing code writes pixels as 0xAARRGGBB.
            if (visual.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.data->red_mask == 0xFF0000 &&
                visual.data->green_mask == 0x00FF00 && visual.data->blue_mask == 0x0000FF) {
                return visual.data;
            }
        }
    }
    return nullptr;
}

}  // namespace

Connection::Connection() {
    if (displayName().empty()) {
        throw PlatformUnavailable("no X display: the environment variable DISPLAY is not set");
    }
    connection_.reset(xcb_connect(nullptr, &screenNumber_));
    if (isBroken()) {
        throw PlatformUnavailable("no X server answers at DISPLAY=" + displayName());
    }
    screen_ = xcb_aux_get_screen(xcb(), screenNumber_);
    require(screen_ != nullptr, "the screen that DISPLAY names");
    requireExtensions();
    requireArgbVisual();
    atoms_ = std::make_unique<Atoms>(xcb());
}

Connection::~Connection() = default;

void Connection::sync() const {
    xcb_aux_sync(xcb());
}

void Connection::requireExtensions() {
    for (xcb_extension_t* extension : {&xcb_randr_id, &xcb_shape_id, &xcb_xfixes_id, &xcb_render_id, &xcb_composite_id,
                                       &xcb_damage_id, &xcb_res_id}) {
        xcb_prefetch_extension_data(xcb(), extension);
    }
    const auto extensionData = [this](xcb_extension_t* extension) {
        const xcb_query_extension_reply_t* data = xcb_get_extension_data(xcb(), extension);
        return data != nullptr && data->present != 0 ? data : nullptr;
    };

    const auto* randr = extensionData(&xcb_randr_id);
    require(randr != nullptr, "the RandR extension");
    const auto randrVersion = own(xcb_randr_query_version_reply(xcb(), xcb_randr_query_version(xcb(), 1, 5), nullptr));
    require(randrVersion && isAtLeast(randrVersion->major_version, randrVersion->minor_version, 1, 5),
            "version 1.5 of the RandR extension");
    randrFirstEvent_ = randr->first_event;

    const auto* shape = extensionData(&xcb_shape_id);
    require(shape != nullptr, "the Shape extension");
    shapeFirstEvent_ = shape->first_event;
    const auto shapeVersion = own(xcb_shape_query_version_reply(xcb(), xcb_shape_query_version(xcb()), nullptr));
    require(shapeVersion && isAtLeast(shapeVersion->major_version, shapeVersion->minor_version, 1, 1),
            "version 1.1 of the Shape extension");

    const auto* xfixes = extensionData(&xcb_xfixes_id);
    require(xfixes != nullptr, "the XFixes extension");
    const auto xfixesVersion =
        own(xcb_xfixes_query_version_reply(xcb(), xcb_xfixes_query_version(xcb(), 5, 0), nullptr));
    require(xfixesVersion && isAtLeast(xfixesVersion->major_version, xfixesVersion->minor_version, 2, 0),
            "version 2.0 of the XFixes extension");
    xfixesFirstEvent_ = xfixes->first_event;

    require(extensionData(&xcb_render_id) != nullptr, "the Render extension");
    const auto renderVersion =
        own(xcb_render_query_version_reply(xcb(), xcb_render_query_version(xcb(), 0, 11), nullptr));
    require(renderVersion && isAtLeast(renderVersion->major_version, renderVersion->minor_version, 0, 10),
            "version 0.10 of the Render extension");

    require(extensionData(&xcb_composite_id) != nullptr, "the Composite extension");
    const auto compositeVersion =
        own(xcb_composite_query_version_reply(xcb(), xcb_composite_query_version(xcb(), 0, 4), nullptr));
    require(compositeVersion && isAtLeast(compositeVersion->major_version, compositeVersion->minor_version, 0, 2),
            "version 0.2 of the Composite extension");

    const auto* damage = extensionData(&xcb_damage_id);
    require(damage != nullptr, "the Damage extension");
    damageFirstEvent_ = damage->first_event;
    // A server answers no damage request before it was asked for its version.
    const auto damageVersion =
        own(xcb_damage_query_version_reply(xcb(), xcb_damage_query_version(xcb(), 1, 1), nullptr));
    require(damageVersion != nullptr, "an answering Damage extension");

    if (extensionData(&xcb_res_id) != nullptr) {
        const auto res = own(xcb_res_query_version_reply(xcb(), xcb_res_query_version(xcb(), 1, 2), nullptr));
        hasClientIDs_ = res && isAtLeast(res->server_major, res->server_minor, 1, 2);
    }
}

void Connection::requireArgbVisual() {
    const xcb_visualtype_t* visual = findArgbVisual(*screen_);
    require(visual != nullptr, "a visual with an alpha channel (the Composite extension)");
    argbVisual_ = visual->visual_id;
    argbColormap_ = xcb_generate_id(xcb());
    xcb_create_colormap(xcb(), XCB_COLORMAP_ALLOC_NONE, argbColormap_, root(), argbVisual_);
}

}  // namespace pallwick::x11
