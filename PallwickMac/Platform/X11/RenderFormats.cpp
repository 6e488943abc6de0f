#include <PallwickMac/Platform/X11/RenderFormats.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <xcb/xcb_renderutil.h>

namespace pallwick::x11 {

RenderFormats::RenderFormats(xcb_connection_t* connection) {
    const auto reply =
        own(xcb_render_query_pict_formats_reply(connection, xcb_render_query_pict_formats(connection), nullptr));
    if (!reply) {
        return;
    }
    const auto standard = [&reply](xcb_pict_standard_t format) {
        const xcb_render_pictforminfo_t* info = xcb_render_util_find_standard_format(reply.get(), format);
        return info == nullptr ? xcb_render_pictformat_t{XCB_NONE} : info->id;
    };
    argb32_ = standard(XCB_PICT_STANDARD_ARGB_32);
    rgb24_ = standard(XCB_PICT_STANDARD_RGB_24);
    alpha8_ = standard(XCB_PICT_STANDARD_A_8);
    for (auto screen = xcb_render_query_pict_formats_screens_iterator(reply.get()); screen.rem != 0;
         xcb_render_pictscreen_next(&screen)) {
        for (auto depth = xcb_render_pictscreen_depths_iterator(screen.data); depth.rem != 0;
             xcb_render_pictdepth_next(&depth)) {
            for (auto visual = xcb_render_pictdepth_visuals_iterator(depth.data); visual.rem != 0;
                 xcb_render_pictvisual_next(&visual)) {
                byVisual_.emplace(visual.data->visual, visual.data->format);
            }
        }
    }
}

xcb_render_pictformat_t RenderFormats::ofVisual(xcb_visualid_t visual) const {
    const auto entry = byVisual_.find(visual);
    return entry == byVisual_.end() ? xcb_render_pictformat_t{XCB_NONE} : entry->second;
}

}  // namespace pallwick::x11
