#include <PallwickMac/Platform/Freedesktop/DesktopEntryIndex.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <system_error>

namespace pallwick::freedesktop {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view suffix = ".desktop";

// A desktop file is a few kilobytes; what is larger than this is something else.
constexpr std::uintmax_t maxFileSize = 1U << 20U;

struct Entry {
    std::string name;
    std::string startupWindowClass;
    std::string executable;
};

std::string lowerCased(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// The program of an Exec line: its first word, quoted or not, without its folder.
std::string executableName(std::string_view command) {
    const bool quoted = command.starts_with('"');
    const std::string_view word =
        quoted ? command.substr(1, command.find('"', 1) - 1) : command.substr(0, command.find(' '));
    return std::string(word.substr(word.rfind('/') + 1));
}

// The escapes of the standard's string values; a line break in a name is a blank like any other.
std::string unescaped(std::string_view value) {
    std::string text;
    text.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text.push_back(value[i]);
            continue;
        }
        ++i;
        const bool isBlank = std::string_view("sntr").find(value[i]) != std::string_view::npos;
        text.push_back(isBlank ? ' ' : value[i]);
    }
    return text;
}

Entry readEntry(const fs::path& file) {
    Entry entry;
    std::ifstream input(file);
    bool inMainGroup = false;
    for (std::string line; std::getline(input, line);) {
        const std::string_view text = trimmed(line);
        if (text.starts_with('[')) {
            inMainGroup = text == "[Desktop Entry]";
            continue;
        }
        const std::size_t equals = text.find('=');
        if (!inMainGroup || equals == std::string_view::npos) {
            continue;
        }
        const std::string_view key = trimmed(text.substr(0, equals));
        const std::string_view value = trimmed(text.substr(equals + 1));
        if (key == "StartupWMClass") {
            entry.startupWindowClass = value;
        } else if (key == "Exec") {
            entry.executable = executableName(value);
        } else if (key == "Name") {
            entry.name = unescaped(value);
        }
    }
    return entry;
}

// The desktop file id: the path below the folder, with dashes for slashes.
std::string desktopFileID(const fs::path& file, const fs::path& folder) {
    std::string id = file.lexically_relative(folder).generic_string();
    std::ranges::replace(id, '/', '-');
    id.resize(id.size() - suffix.size());
    return id;
}

fs::file_time_type modificationTime(const fs::path& folder) {
    std::error_code error;
    const fs::file_time_type time = fs::last_write_time(folder, error);
    return error ? fs::file_time_type::min() : time;
}

// The desktop files in `folder` at any depth; `visit` is told of every folder within, before that is read.
template <typename Visit>
std::vector<fs::path> desktopFiles(const fs::path& folder, const Visit& visit) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::recursive_directory_iterator it(folder, fs::directory_options::skip_permission_denied, error), end;
         !error && it != end; it.increment(error)) {
        std::error_code fileError;
        if (it->is_directory(fileError)) {
            visit(it->path());
        } else if (it->path().native().ends_with(suffix) && it->is_regular_file(fileError) &&
                   it->file_size(fileError) <= maxFileSize) {
            files.push_back(it->path());
        }
    }
    std::ranges::sort(files);
    return files;
}

const std::string* find(const std::unordered_map<std::string, std::string>& ids, const std::string& name) {
    const auto entry = ids.find(name);
    return entry == ids.end() ? nullptr : &entry->second;
}

}  // namespace

DesktopEntryIndex::DesktopEntryIndex(std::vector<fs::path> folders) : folders_(std::move(folders)) {}

std::vector<fs::path> DesktopEntryIndex::standardFolders() {
    std::vector<fs::path> folders;
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value == nullptr ? "" : value);
    };
    // Relative paths are to be ignored, and empty counts as unset.
    const auto add = [&folders](const fs::path& data) {
        if (data.is_absolute()) {
            folders.push_back(data / "applications");
        }
    };
    const fs::path home = variable("HOME");
    const fs::path dataHome = variable("XDG_DATA_HOME");
    add(dataHome.is_absolute() ? dataHome : home / ".local/share");
    std::string dataFolders = variable("XDG_DATA_DIRS");
    if (dataFolders.empty()) {
        dataFolders = "/usr/local/share:/usr/share";
    }
    for (std::size_t begin = 0; begin <= dataFolders.size();) {
        const std::size_t end = std::min(dataFolders.find(':', begin), dataFolders.size());
        add(dataFolders.substr(begin, end - begin));
        begin = end + 1;
    }
    return folders;
}

std::optional<std::string> DesktopEntryIndex::idForWindowClass(std::string_view windowClass) {
    if (windowClass.empty()) {
        return std::nullopt;
    }
    refresh();
    const std::string name = lowerCased(windowClass);
    for (const auto* ids : {&idsByWindowClass_, &idsByID_, &idsByLastPart_, &idsByExecutable_}) {
        if (const std::string* id = find(*ids, name)) {
            return *id;
        }
    }
    return std::nullopt;
}

std::optional<std::string> DesktopEntryIndex::nameOf(const std::string& id) {
    if (id.empty()) {
        return std::nullopt;
    }
    refresh();
    const std::string* name = find(names_, id);
    return name == nullptr || name->empty() ? std::nullopt : std::optional(*name);
}

bool DesktopEntryIndex::isUpToDate() const {
    return readAt_ && std::ranges::all_of(
                          *readAt_, [](const auto& entry) { return modificationTime(entry.first) == entry.second; });
}

void DesktopEntryIndex::refresh() {
    if (isUpToDate()) {
        return;
    }
    Modified& readAt = readAt_.emplace();
    const auto remember = [&readAt](const fs::path& folder) { readAt.emplace_back(folder, modificationTime(folder)); };
    idsByWindowClass_.clear();
    idsByID_.clear();
    idsByLastPart_.clear();
    idsByExecutable_.clear();
    names_.clear();
    for (const fs::path& folder : folders_) {
        remember(folder);
        for (const fs::path& file : desktopFiles(folder, remember)) {
            const std::string id = desktopFileID(file, folder);
            const Entry entry = readEntry(file);
            // The first entry wins: folders come in order of importance.
            if (!entry.startupWindowClass.empty()) {
                idsByWindowClass_.try_emplace(lowerCased(entry.startupWindowClass), id);
            }
            if (!entry.executable.empty()) {
                idsByExecutable_.try_emplace(lowerCased(entry.executable), id);
            }
            idsByID_.try_emplace(lowerCased(id), id);
            idsByLastPart_.try_emplace(lowerCased(id.substr(id.rfind('.') + 1)), id);
            names_.try_emplace(id, entry.name);
        }
    }
}

}  // namespace pallwick::freedesktop
