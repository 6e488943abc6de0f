#pragma once

#include <PallwickMac/Platform/X11/Connection.h>

#include <xcb/res.h>

#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

namespace pallwick::x11 {

/// A process identifier as a 32-bit value of the protocol; none for a number that no process has.
[[nodiscard]] std::optional<std::int32_t> processIDFrom(std::uint32_t value);

/// The first of a property's values as a process identifier.
[[nodiscard]] std::optional<std::int32_t> processIDFrom(const std::vector<std::uint32_t>& values);

/// Asks the X server which processes made some windows (X-Resource 1.2): one request for all of them, sent when the
/// object is made. It is the truth for local clients, where `_NET_WM_PID` is whatever a client likes to say.
class ClientProcessesRequest {
public:
    ClientProcessesRequest(const Connection& connection, std::span<const xcb_window_t> windows);

    ClientProcessesRequest(const ClientProcessesRequest&) = delete;
    ClientProcessesRequest& operator=(const ClientProcessesRequest&) = delete;
    /// An answer that nobody has asked for is thrown away.
    ~ClientProcessesRequest();

    /// Waits for the answer. To be called once, before `processOf`.
    void get();

    /// None for a remote client, and where the server cannot tell.
    [[nodiscard]] std::optional<std::int32_t> processOf(xcb_window_t window) const;

private:
    const Connection& connection_;
    std::optional<xcb_res_query_client_ids_cookie_t> cookie_;
    /// By the part of a window's number that stands for its client.
    std::unordered_map<std::uint32_t, std::int32_t> processes_;
};

}  // namespace pallwick::x11
