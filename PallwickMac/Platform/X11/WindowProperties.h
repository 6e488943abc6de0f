#pragma once

#include <PallwickMac/Platform/X11/Connection.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pallwick::x11 {

// Properties of windows that may belong to anyone, say anything and be gone at any moment: a request that fails, or a
// value of another type or format, counts as no value. Requests are sent when the object is made and answered at the
// first `get`, so that many of them share one round trip.

/// A list of 32-bit values.
class CardinalsRequest {
public:
    /// `maxCount` values at the most are read. `type` None takes any type.
    CardinalsRequest(const Connection& connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                     std::uint32_t maxCount);

    /// To be called once. Empty where there is no such property.
    [[nodiscard]] std::vector<std::uint32_t> get();

private:
    const Connection& connection_;
    xcb_get_property_cookie_t cookie_;
};

/// A text, whatever its encoding, as bytes. The first 4 KiB are read: names longer than that serve nobody.
class TextRequest {
public:
    TextRequest(const Connection& connection, xcb_window_t window, xcb_atom_t property);

    /// To be called once.
    [[nodiscard]] std::optional<std::string> get();

    /// The property's type, which says how the text is written. Known after `get`.
    [[nodiscard]] xcb_atom_t type() const { return type_; }

private:
    const Connection& connection_;
    xcb_get_property_cookie_t cookie_;
    xcb_atom_t type_ = XCB_ATOM_NONE;
};

/// Turns what another program calls text into clean UTF-8 of one line: malformed sequences become U+FFFD and control
/// characters spaces; a last character cut in half is dropped.
[[nodiscard]] std::string cleanUtf8(std::string_view text);

/// The same for ISO 8859-1, in which ICCCM's STRING type is written.
[[nodiscard]] std::string cleanLatin1(std::string_view text);

}  // namespace pallwick::x11
