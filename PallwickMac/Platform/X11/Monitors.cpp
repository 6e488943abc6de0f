#include <PallwickMac/Platform/X11/DisplayNumber.h>
#include <PallwickMac/Platform/X11/Monitors.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <xcb/randr.h>

#include <algorithm>
#include <array>
#include <span>

namespace pallwick::x11 {

namespace {

constexpr std::uint32_t edidWords = 32;
constexpr std::uint32_t maxClients = 4096;

std::string atomName(xcb_connection_t* connection, xcb_atom_t atom) {
    const auto reply = own(xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), nullptr));
    if (!reply) {
        return {};
    }
    return cleanUtf8(
        {xcb_get_atom_name_name(reply.get()), static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))});
}

std::uint32_t numberOf(const Connection& connection, xcb_randr_output_t output, const std::string& connector) {
    const auto cookie = xcb_randr_get_output_property(connection.xcb(), output, connection.atom(Atom::edid),
                                                      XCB_GET_PROPERTY_TYPE_ANY, 0, edidWords, 0, 0);
    const auto reply = own(xcb_randr_get_output_property_reply(connection.xcb(), cookie, nullptr));
    std::span<const std::uint8_t> edid;
    if (reply && reply->format == 8) {
        edid = {xcb_randr_get_output_property_data(reply.get()), reply->num_items};
    }
    return displayNumber(edid, connector);
}

std::string outputName(const Connection& connection, xcb_randr_output_t output) {
    const auto reply = own(xcb_randr_get_output_info_reply(
        connection.xcb(), xcb_randr_get_output_info(connection.xcb(), output, XCB_CURRENT_TIME), nullptr));
    if (!reply) {
        return {};
    }
    return cleanUtf8({reinterpret_cast<const char*>(xcb_randr_get_output_info_name(reply.get())),
                      static_cast<std::size_t>(xcb_randr_get_output_info_name_length(reply.get()))});
}

Strut strutOf(Strut::Edge edge, std::uint32_t thickness, std::uint32_t first, std::uint32_t last) {
    // X coordinates have 16 bits; anything larger is nonsense that must not overflow.
    const auto coordinate = [](std::uint32_t value) { return static_cast<int>(std::min(value, 0xFFFFU)); };
    return {.edge = edge, .thickness = coordinate(thickness), .begin = coordinate(first), .end = coordinate(last) + 1};
}

void appendStruts(const std::vector<std::uint32_t>& values, bool partial, const PixelRect& root,
                  std::vector<Strut>& struts) {
    constexpr std::array edges{Strut::Edge::left, Strut::Edge::right, Strut::Edge::top, Strut::Edge::bottom};
    for (std::size_t i = 0; i < edges.size(); ++i) {
        if (values[i] == 0) {
            continue;
        }
        const bool vertical = i < 2;
        const auto length = static_cast<std::uint32_t>(vertical ? root.height : root.width);
        const std::uint32_t first = partial ? values[4 + 2 * i] : 0;
        const std::uint32_t last = partial ? values[5 + 2 * i] : length - 1;
        struts.push_back(strutOf(edges[i], values[i], first, last));
    }
}

}  // namespace

std::vector<Monitor> queryMonitors(const Connection& connection) {
    const auto reply = own(xcb_randr_get_monitors_reply(
        connection.xcb(), xcb_randr_get_monitors(connection.xcb(), connection.root(), 1), nullptr));
    if (!reply) {
        return {};
    }
    std::vector<Monitor> monitors;
    bool primarySeen = false;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem != 0;
         xcb_randr_monitor_info_next(&it)) {
        Monitor monitor{.frame = {.x = it.data->x, .y = it.data->y, .width = it.data->width, .height = it.data->height},
                        .name = atomName(connection.xcb(), it.data->name)};
        const int outputs = xcb_randr_monitor_info_outputs_length(it.data);
        if (outputs > 0) {
            const xcb_randr_output_t output = xcb_randr_monitor_info_outputs(it.data)[0];
            // The number hangs on the connector, whatever a person calls the monitor.
            monitor.displayNumber = numberOf(connection, output, outputName(connection, output));
        } else {
            monitor.displayNumber = displayNumber({}, monitor.name);
        }
        const bool primary = it.data->primary != 0 && !primarySeen;
        primarySeen = primarySeen || primary;
        monitors.insert(primary ? monitors.begin() : monitors.end(), std::move(monitor));
    }
    return monitors;
}

PixelRect queryRootArea(const Connection& connection) {
    const auto reply =
        own(xcb_get_geometry_reply(connection.xcb(), xcb_get_geometry(connection.xcb(), connection.root()), nullptr));
    if (!reply) {
        return {.x = 0,
                .y = 0,
                .width = connection.screen().width_in_pixels,
                .height = connection.screen().height_in_pixels};
    }
    return {.x = 0, .y = 0, .width = reply->width, .height = reply->height};
}

std::vector<Strut> queryStruts(const Connection& connection, const PixelRect& root) {
    CardinalsRequest clientList(connection, connection.root(), connection.atom(Atom::clientList), XCB_ATOM_WINDOW,
                                maxClients);
    struct Requests {
        CardinalsRequest partial;
        CardinalsRequest whole;
    };
    std::vector<Requests> requests;
    for (const xcb_window_t client : clientList.get()) {
        requests.push_back(
            {.partial = CardinalsRequest(connection, client, connection.atom(Atom::strutPartial), XCB_NONE, 12),
             .whole = CardinalsRequest(connection, client, connection.atom(Atom::strut), XCB_NONE, 4)});
    }
    std::vector<Strut> struts;
    for (Requests& request : requests) {
        const std::vector<std::uint32_t> partial = request.partial.get();
        const std::vector<std::uint32_t> whole = request.whole.get();
        if (partial.size() == 12) {
            appendStruts(partial, true, root, struts);
        } else if (whole.size() == 4) {
            appendStruts(whole, false, root, struts);
        }
    }
    return struts;
}

}  // namespace pallwick::x11
