#include <PallwickMac/Platform/X11/ApplicationIndex.h>

#include <string_view>

namespace pallwick::x11 {

namespace {

// As much as is read of a window's own texts.
constexpr std::size_t maxNameLength = 4096;

}  // namespace

ApplicationIndex::ApplicationIndex() : desktopEntries_(freedesktop::DesktopEntryIndex::standardFolders()) {}

std::optional<std::string> ApplicationIndex::bundleID(const ApplicationNames& names) const {
    if (!names.gtkID.empty()) {
        return names.gtkID;
    }
    if (!names.kdeID.empty()) {
        return names.kdeID;
    }
    if (names.windowClass.empty()) {
        return std::nullopt;
    }
    const std::optional<std::string> id = desktopEntries_.idForWindowClass(names.windowClass);
    return id ? id : names.windowClass;
}

std::optional<std::string> ApplicationIndex::displayName(const ApplicationNames& names) const {
    std::optional<std::string> name = desktopEntries_.nameOf(names.gtkID);
    if (!name) {
        name = desktopEntries_.nameOf(names.kdeID);
    }
    if (!name) {
        name = desktopEntries_.nameOf(desktopEntries_.idForWindowClass(names.windowClass).value_or(""));
    }
    if (name) {
        return cleanUtf8(std::string_view(*name).substr(0, maxNameLength));
    }
    return names.windowClass.empty() ? std::nullopt : std::optional(names.windowClass);
}

}  // namespace pallwick::x11
