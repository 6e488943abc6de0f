#pragma once

#include <PallwickMac/Platform/Freedesktop/DesktopEntryIndex.h>
#include <PallwickMac/Platform/X11/ApplicationNames.h>

#include <optional>
#include <string>

namespace pallwick::x11 {

/// Finds the application that a client window's names mean among the desktop files of this machine.
class ApplicationIndex {
public:
    ApplicationIndex();

    /// The desktop-file id, without its suffix: the one that a toolkit gave, or of the desktop file that fits the
    /// class; else the class itself. None where there is no name at all.
    [[nodiscard]] std::optional<std::string> bundleID(const ApplicationNames& names) const;

    /// What a person calls the application: the `Name` of that desktop file, else the class. One line of clean UTF-8,
    /// 4 KiB at the most.
    [[nodiscard]] std::optional<std::string> displayName(const ApplicationNames& names) const;

private:
    mutable freedesktop::DesktopEntryIndex desktopEntries_;
};

}  // namespace pallwick::x11
