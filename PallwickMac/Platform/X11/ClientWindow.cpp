#include <PallwickMac/Platform/X11/ClientWindow.h>
#include <PallwickMac/Platform/X11/CompoundText.h>
#include <PallwickMac/Platform/X11/XcbReply.h>

#include <algorithm>

namespace pallwick::x11 {

namespace {

constexpr std::uint32_t maxAtoms = 32;

std::optional<std::uint32_t> first(const std::vector<std::uint32_t>& values) {
    return values.empty() ? std::nullopt : std::optional(values.front());
}

std::optional<Borders> bordersFrom(const std::vector<std::uint32_t>& values) {
    if (values.size() != 4) {
        return std::nullopt;
    }
    // Lengths have 16 bits in X; anything larger is nonsense that must not overflow.
    const auto width = [&](std::size_t side) { return static_cast<int>(std::min(values[side], 0xFFFFU)); };
    return Borders{.left = width(0), .right = width(1), .top = width(2), .bottom = width(3)};
}

}  // namespace

ClientWindowRequest::ClientWindowRequest(const Connection& connection, xcb_window_t window)
    : connection_(connection),
      window_(window),
      attributes_(xcb_get_window_attributes(connection.xcb(), window)),
      geometry_(xcb_get_geometry(connection.xcb(), window)),
      origin_(xcb_translate_coordinates(connection.xcb(), window, connection.root(), 0, 0)),
      state_(connection, window, connection.atom(Atom::windowState), XCB_NONE, 1),
      netStates_(connection, window, connection.atom(Atom::netWindowState), XCB_ATOM_ATOM, maxAtoms),
      types_(connection, window, connection.atom(Atom::windowType), XCB_ATOM_ATOM, maxAtoms),
      desktop_(connection, window, connection.atom(Atom::desktop), XCB_ATOM_CARDINAL, 1),
      decoration_(connection, window, connection.atom(Atom::frameExtents), XCB_ATOM_CARDINAL, 4),
      shadow_(connection, window, connection.atom(Atom::gtkFrameExtents), XCB_ATOM_CARDINAL, 4),
      names_(connection, window),
      title_(connection, window, connection.atom(Atom::windowName)) {}

std::optional<ClientWindow> ClientWindowRequest::get() {
    const auto attributes = own(xcb_get_window_attributes_reply(connection_.xcb(), attributes_, nullptr));
    const auto geometry = own(xcb_get_geometry_reply(connection_.xcb(), geometry_, nullptr));
    const auto origin = own(xcb_translate_coordinates_reply(connection_.xcb(), origin_, nullptr));
    ClientWindow window;
    window.window = window_;
    window.state = first(state_.get());
    window.netStates = netStates_.get();
    window.types = types_.get();
    window.desktop = first(desktop_.get());
    window.decoration = bordersFrom(decoration_.get());
    window.shadow = bordersFrom(shadow_.get());
    window.names = names_.get();
    const std::string title = title_.get().value_or("");
    window.title = cleanText(connection_, title, title_.type());
    if (!attributes || !geometry || !origin) {
        return std::nullopt;
    }
    const int border = geometry->border_width;
    window.area = {.x = origin->dst_x - border,
                   .y = origin->dst_y - border,
                   .width = geometry->width + 2 * border,
                   .height = geometry->height + 2 * border};
    window.viewable =
        attributes->map_state == XCB_MAP_STATE_VIEWABLE && attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
    window.overrideRedirect = attributes->override_redirect != 0;
    return window;
}

std::string cleanText(const Connection& connection, const std::string& text, xcb_atom_t type) {
    if (type == XCB_ATOM_STRING) {
        return cleanLatin1(text);
    }
    return type == connection.atom(Atom::compoundText) ? cleanCompoundText(text) : cleanUtf8(text);
}

}  // namespace pallwick::x11
