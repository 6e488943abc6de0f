#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace pallwick::freedesktop {

/// What the desktop files on this machine say about applications: freedesktop.org's Desktop Entry and Desktop Menu
/// standards. Read once at first use, and again only after one of the folders, or a folder in it, has
/// changed.
class DesktopEntryIndex {
public:
    /// `folders` hold desktop files, the most important folder first; folders that do not exist are fine.
    explicit DesktopEntryIndex(std::vector<std::filesystem::path> folders);

    /// The `applications` folders of XDG_DATA_HOME and XDG_DATA_DIRS, with the defaults of the base directory rules.
    [[nodiscard]] static std::vector<std::filesystem::path> standardFolders();

    /// The id, without ".desktop", of the desktop file that fits a window's class: by its StartupWMClass, its own id,
    /// the last part of its id, or the file name of its executable, in this order, letter case ignored.
    [[nodiscard]] std::optional<std::string> idForWindowClass(std::string_view windowClass);

    /// The `Name` that the desktop file of exactly this id gives, untranslated, as the file has it: any bytes. None
    /// where there is no such file or it has no name.
    [[nodiscard]] std::optional<std::string> nameOf(const std::string& id);

private:
    /// Folders and when they last changed.
    using Modified = std::vector<std::pair<std::filesystem::path, std::filesystem::file_time_type>>;

    void refresh();
    [[nodiscard]] bool isUpToDate() const;

    std::vector<std::filesystem::path> folders_;
    std::optional<Modified> readAt_;
    std::unordered_map<std::string, std::string> idsByWindowClass_;
    std::unordered_map<std::string, std::string> idsByID_;
    std::unordered_map<std::string, std::string> idsByLastPart_;
    std::unordered_map<std::string, std::string> idsByExecutable_;
    std::unordered_map<std::string, std::string> names_;
};

}  // namespace pallwick::freedesktop
