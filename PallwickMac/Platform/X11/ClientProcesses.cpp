#include <PallwickMac/Platform/X11/ClientProcesses.h>
#include <PallwickMac/Platform/X11/XcbReply.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace pallwick::x11 {

std::optional<std::int32_t> processIDFrom(std::uint32_t value) {
    if (value == 0 || value > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max())) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(value);
}

std::optional<std::int32_t> processIDFrom(const std::vector<std::uint32_t>& values) {
    return values.empty() ? std::nullopt : processIDFrom(values.front());
}

ClientProcessesRequest::ClientProcessesRequest(const Connection& connection, std::span<const xcb_window_t> windows)
    : connection_(connection) {
    if (!connection.hasClientIDs() || windows.empty()) {
        return;
    }
    // A client of many windows is asked about once.
    std::vector<std::uint32_t> clients;
    clients.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        clients.push_back(connection.clientOf(window));
    }
    std::ranges::sort(clients);
    clients.erase(std::unique(clients.begin(), clients.end()), clients.end());

    std::vector<xcb_res_client_id_spec_t> specs;
    specs.reserve(clients.size());
    for (const std::uint32_t client : clients) {
        specs.push_back({.client = client, .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID});
    }
    cookie_ = xcb_res_query_client_ids(connection.xcb(), static_cast<std::uint32_t>(specs.size()), specs.data());
}

ClientProcessesRequest::~ClientProcessesRequest() {
    if (cookie_) {
        xcb_discard_reply(connection_.xcb(), cookie_->sequence);
    }
}

void ClientProcessesRequest::get() {
    const std::optional<xcb_res_query_client_ids_cookie_t> cookie = std::exchange(cookie_, std::nullopt);
    if (!cookie) {
        return;
    }
    const auto reply = own(xcb_res_query_client_ids_reply(connection_.xcb(), *cookie, nullptr));
    if (!reply) {
        return;
    }
    for (auto it = xcb_res_query_client_ids_ids_iterator(reply.get()); it.rem != 0; xcb_res_client_id_value_next(&it)) {
        if (it.data->spec.mask != XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID || it.data->length < 4) {
            continue;
        }
        if (const auto processID = processIDFrom(xcb_res_client_id_value_value(it.data)[0])) {
            processes_.emplace(connection_.clientOf(it.data->spec.client), *processID);
        }
    }
}

std::optional<std::int32_t> ClientProcessesRequest::processOf(xcb_window_t window) const {
    const auto process = processes_.find(connection_.clientOf(window));
    return process == processes_.end() ? std::nullopt : std::optional(process->second);
}

}  // namespace pallwick::x11
