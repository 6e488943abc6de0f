#include <PallwickMac/Platform/X11/ApplicationNames.h>

#include <string_view>

namespace pallwick::x11 {

namespace {

// WM_CLASS holds two texts, each ended by a NUL: the instance and the class (ICCCM, section 4.1.2.5).
std::string classOf(std::string_view property) {
    const std::size_t instanceEnd = property.find('\0');
    if (instanceEnd == std::string_view::npos) {
        return cleanLatin1(property);
    }
    const std::string_view rest = property.substr(instanceEnd + 1);
    const std::string_view windowClass = rest.substr(0, rest.find('\0'));
    return cleanLatin1(windowClass.empty() ? property.substr(0, instanceEnd) : windowClass);
}

std::string withoutSuffix(std::string text) {
    constexpr std::string_view suffix = ".desktop";
    if (text.ends_with(suffix)) {
        text.resize(text.size() - suffix.size());
    }
    return text.substr(text.rfind('/') + 1);
}

}  // namespace

ApplicationNamesRequest::ApplicationNamesRequest(const Connection& connection, xcb_window_t window)
    : gtkID_(connection, window, connection.atom(Atom::gtkApplicationID)),
      kdeID_(connection, window, connection.atom(Atom::kdeDesktopFile)),
      windowClass_(connection, window, XCB_ATOM_WM_CLASS) {}

ApplicationNames ApplicationNamesRequest::get() {
    return {.gtkID = cleanUtf8(gtkID_.get().value_or("")),
            .kdeID = withoutSuffix(cleanUtf8(kdeID_.get().value_or(""))),
            .windowClass = classOf(windowClass_.get().value_or(""))};
}

}  // namespace pallwick::x11
