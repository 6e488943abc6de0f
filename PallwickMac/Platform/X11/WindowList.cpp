#include <PallwickMac/Platform/X11/ClientProcesses.h>
#include <PallwickMac/Platform/X11/WindowList.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>
#include <PallwickMac/Platform/X11/WindowRules.h>
#include <PallwickMac/Platform/X11/XcbReply.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <unordered_set>
#include <utility>

namespace pallwick::x11 {

namespace {

constexpr std::uint32_t maxClients = 4096;

// A window manager puts one or two windows of its own around a client.
constexpr int maxAncestors = 4;

std::vector<xcb_window_t> reversed(std::vector<xcb_window_t> windows) {
    std::ranges::reverse(windows);
    return windows;
}

// A window manager may put off saying where a new window stands. It is in the list by age already, and in front of the
// others most likely.
std::vector<xcb_window_t> frontToBack(std::vector<xcb_window_t> byStacking, const std::vector<xcb_window_t>& byAge) {
    const std::unordered_set<xcb_window_t> stacked(byStacking.begin(), byStacking.end());
    std::ranges::copy_if(byAge, std::back_inserter(byStacking),
                         [&](xcb_window_t window) { return !stacked.contains(window); });
    return reversed(std::move(byStacking));
}

bool contains(const std::vector<xcb_window_t>& windows, xcb_window_t window) {
    return std::ranges::find(windows, window) != windows.end();
}

std::optional<std::string> processName(std::int32_t processID) {
    std::ifstream file("/proc/" + std::to_string(processID) + "/comm");
    std::string name;
    if (!std::getline(file, name) || name.empty()) {
        return std::nullopt;
    }
    return cleanUtf8(name);
}

}  // namespace

/// What there is to ask about each of some windows. Sent when it is made and answered at `get`, to be called once.
class WindowList::Questions {
public:
    Questions(const Connection& connection, const std::vector<xcb_window_t>& windows)
        : processes_(connection, windows) {
        requests_.reserve(windows.size());
        for (const xcb_window_t window : windows) {
            requests_.emplace_back(connection, window);
        }
    }

    /// Without the windows that are gone by now.
    [[nodiscard]] std::vector<OwnedWindow> get() {
        processes_.get();
        std::vector<OwnedWindow> answers;
        answers.reserve(requests_.size());
        for (ClientWindowRequest& request : requests_) {
            if (std::optional<ClientWindow> window = request.get()) {
                const std::optional<std::int32_t> owner = processes_.processOf(window->window);
                answers.push_back({.window = std::move(*window), .ownerProcessID = owner});
            }
        }
        return answers;
    }

private:
    ClientProcessesRequest processes_;
    std::vector<ClientWindowRequest> requests_;
};

WindowList::WindowList(const Connection& connection, const ApplicationIndex& applications)
    : connection_(connection), applications_(applications), windowManager_(connection.root()) {}

std::optional<std::vector<WindowRecord>> WindowList::onScreen(const WindowPlacement& placement) const {
    return query(std::nullopt, placement);
}

std::optional<WindowRecord> WindowList::onScreen(xcb_window_t window, const WindowPlacement& placement) const {
    const std::optional<std::vector<WindowRecord>> found = query(window, placement);
    return found && !found->empty() ? std::optional(found->front()) : std::nullopt;
}

std::optional<std::vector<WindowRecord>> WindowList::query(std::optional<xcb_window_t> only,
                                                           const WindowPlacement& placement) const {
    const xcb_window_t root = connection_.root();
    CardinalsRequest stacking(connection_, root, connection_.atom(Atom::clientListStacking), XCB_ATOM_WINDOW,
                              maxClients);
    CardinalsRequest byAge(connection_, root, connection_.atom(Atom::clientList), XCB_ATOM_WINDOW, maxClients);
    CardinalsRequest check(connection_, root, connection_.atom(Atom::supportingCheck), XCB_ATOM_WINDOW, 1);
    CardinalsRequest desktop(connection_, root, connection_.atom(Atom::currentDesktop), XCB_ATOM_CARDINAL, 1);
    CardinalsRequest checkItself = checkOf(windowManager_);
    // One window is asked about before it is known to be a client, which saves waiting twice.
    std::optional<Questions> early;
    if (only) {
        early.emplace(connection_, std::vector{*only});
    }
    const std::vector<xcb_window_t> stacked = stacking.get();
    const std::vector<xcb_window_t> aged = byAge.get();
    const std::vector<std::uint32_t> desktops = desktop.get();
    const bool managed = isManaged(check.get(), checkItself.get());
    std::vector<OwnedWindow> windows = early ? early->get() : std::vector<OwnedWindow>();
    if (connection_.isBroken()) {
        return std::nullopt;
    }
    if (!managed) {
        windows = unmanagedWindows(only);
    } else if (!only) {
        windows = Questions(connection_, frontToBack(stacked, aged)).get();
    } else if (!contains(stacked, *only) && !contains(aged, *only)) {
        windows.clear();
    }
    const std::optional<std::uint32_t> currentDesktop =
        managed && !desktops.empty() ? std::optional(desktops.front()) : std::nullopt;
    std::erase_if(windows,
                  [&](const OwnedWindow& entry) { return !isOnScreen(connection_, entry.window, currentDesktop); });
    askForWhatIsMissing(windows);
    measureRootChildren(windows);
    return records(windows, placement);
}

CardinalsRequest WindowList::checkOf(xcb_window_t window) const {
    return {connection_, window, connection_.atom(Atom::supportingCheck), XCB_ATOM_WINDOW, 1};
}

// The root's properties outlive a window manager that was killed; the window that it put up, and which names itself,
// does not.
bool WindowList::isManaged(const std::vector<xcb_window_t>& check, std::vector<xcb_window_t> checkItself) const {
    if (check.empty()) {
        return false;
    }
    if (std::exchange(windowManager_, check.front()) != check.front()) {
        checkItself = checkOf(windowManager_).get();
    }
    return checkItself == check;
}

std::vector<WindowList::OwnedWindow> WindowList::unmanagedWindows(std::optional<xcb_window_t> only) const {
    const auto tree =
        own(xcb_query_tree_reply(connection_.xcb(), xcb_query_tree(connection_.xcb(), connection_.root()), nullptr));
    if (!tree) {
        return {};
    }
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    std::vector<xcb_window_t> candidates = reversed({children, children + xcb_query_tree_children_length(tree.get())});
    if (only) {
        std::erase_if(candidates, [&](xcb_window_t window) { return window != *only; });
    }
    std::vector<OwnedWindow> windows = Questions(connection_, candidates).get();
    std::erase_if(windows, [](const OwnedWindow& entry) { return entry.window.overrideRedirect; });
    return windows;
}

void WindowList::askForWhatIsMissing(std::vector<OwnedWindow>& windows) const {
    struct Request {
        OwnedWindow& entry;
        TextRequest oldTitle;
        CardinalsRequest claimedProcess;
    };
    std::vector<Request> requests;
    for (OwnedWindow& entry : windows) {
        if (entry.window.title.empty() || !entry.ownerProcessID) {
            requests.push_back(
                {.entry = entry,
                 .oldTitle = TextRequest(connection_, entry.window.window, XCB_ATOM_WM_NAME),
                 .claimedProcess = CardinalsRequest(connection_, entry.window.window, connection_.atom(Atom::windowPID),
                                                    XCB_ATOM_CARDINAL, 1)});
        }
    }
    for (Request& request : requests) {
        const std::string title = request.oldTitle.get().value_or("");
        const std::optional<std::int32_t> claimed = processIDFrom(request.claimedProcess.get());
        OwnedWindow& entry = request.entry;
        if (entry.window.title.empty()) {
            entry.window.title = cleanText(connection_, title, request.oldTitle.type());
        }
        if (!entry.ownerProcessID) {
            entry.ownerProcessID = claimed;
        }
    }
}

void WindowList::measureRootChildren(std::vector<OwnedWindow>& windows) const {
    // Some window managers decorate windows and do not say how much. Where they do say, the root's child tells less:
    // it may have an invisible border of its own.
    struct Ascent {
        ClientWindow& window;
        xcb_window_t ancestor;
        xcb_query_tree_cookie_t tree{};
        xcb_get_geometry_cookie_t geometry{};
    };
    std::vector<Ascent> level;
    for (OwnedWindow& entry : windows) {
        if (!entry.window.decoration && !entry.window.shadow) {
            level.push_back({.window = entry.window, .ancestor = entry.window.window});
        }
    }
    for (int depth = 0; depth < maxAncestors && !level.empty(); ++depth) {
        for (Ascent& ascent : level) {
            ascent.tree = xcb_query_tree(connection_.xcb(), ascent.ancestor);
            ascent.geometry = xcb_get_geometry(connection_.xcb(), ascent.ancestor);
        }
        std::vector<Ascent> next;
        for (const Ascent& ascent : level) {
            const auto tree = own(xcb_query_tree_reply(connection_.xcb(), ascent.tree, nullptr));
            const auto geometry = own(xcb_get_geometry_reply(connection_.xcb(), ascent.geometry, nullptr));
            if (!tree || !geometry) {
                continue;
            }
            if (tree->parent != connection_.root()) {
                next.push_back({.window = ascent.window, .ancestor = tree->parent});
            } else {
                ascent.window.area = {.x = geometry->x,
                                      .y = geometry->y,
                                      .width = geometry->width + 2 * geometry->border_width,
                                      .height = geometry->height + 2 * geometry->border_width};
            }
        }
        level = std::move(next);
    }
}

std::vector<WindowRecord> WindowList::records(const std::vector<OwnedWindow>& windows,
                                              const WindowPlacement& placement) const {
    // Many windows of one application, or of one process, are looked up once.
    std::map<ApplicationNames, std::optional<std::string>> displayNames;
    std::map<std::int32_t, std::optional<std::string>> processNames;
    std::vector<WindowRecord> records;
    records.reserve(windows.size());
    for (const OwnedWindow& entry : windows) {
        const ClientWindow& window = entry.window;
        const auto [known, isNew] = displayNames.try_emplace(window.names);
        if (isNew) {
            known->second = applications_.displayName(window.names);
        }
        std::optional<std::string> ownerName = known->second;
        if (!ownerName && entry.ownerProcessID) {
            const auto [process, isNewProcess] = processNames.try_emplace(*entry.ownerProcessID);
            if (isNewProcess) {
                process->second = processName(*entry.ownerProcessID);
            }
            ownerName = process->second;
        }
        records.push_back({.layer = layerOf(connection_, window),
                           .number = window.window,
                           .ownerProcessID = entry.ownerProcessID,
                           .ownerName = std::move(ownerName),
                           .title = window.title,
                           .bounds = placement.mapping.serverBounds(visibleArea(window), placement.top)});
    }
    return records;
}

}  // namespace pallwick::x11
