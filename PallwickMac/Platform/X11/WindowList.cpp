#include <PallwickMac/Platform/X11/ClientProcesses.h>
#include <PallwickMac/Platform/X11/WindowList.h>
#include <PallwickMac/Platform/X11/WindowProperties.h>
#include <PallwickMac/Platform/X11/WindowRules.h>
#include <PallwickMac/Platform/X11/XcbReply.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <string>
#include <utility>

namespace pallwick::x11 {

namespace {

constexpr std::uint32_t maxClients = 4096;

// A window manager puts one or two windows of its own around a client.
constexpr int maxAncestors = 4;

std::vector<xcb_window_t> narrowed(std::vector<xcb_window_t> windows, std::optional<xcb_window_t> only) {
    if (only) {
        std::erase_if(windows, [&](xcb_window_t window) { return window != *only; });
    }
    return windows;
}

std::vector<xcb_window_t> reversed(std::vector<xcb_window_t> windows) {
    std::ranges::reverse(windows);
    return windows;
}

// A window manager may put off saying where a new window stands. It is in the list by age already, and in front of the
// others most likely.
std::vector<xcb_window_t> frontToBack(std::vector<xcb_window_t> byStacking, const std::vector<xcb_window_t>& byAge) {
    for (const xcb_window_t window : byAge) {
        if (std::ranges::find(byStacking, window) == byStacking.end()) {
            byStacking.push_back(window);
        }
    }
    return reversed(std::move(byStacking));
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

WindowList::WindowList(const Connection& connection, const ApplicationIndex& applications)
    : connection_(connection), applications_(applications) {}

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
    CardinalsRequest checkWindow(connection_, root, connection_.atom(Atom::supportingCheck), XCB_ATOM_WINDOW, 1);
    CardinalsRequest desktop(connection_, root, connection_.atom(Atom::currentDesktop), XCB_ATOM_CARDINAL, 1);
    const xcb_query_tree_cookie_t treeCookie = xcb_query_tree(connection_.xcb(), root);
    const std::vector<xcb_window_t> stacked = stacking.get();
    const std::vector<xcb_window_t> clients = frontToBack(stacked, byAge.get());
    const std::vector<xcb_window_t> check = checkWindow.get();
    const std::vector<std::uint32_t> desktops = desktop.get();
    const auto tree = own(xcb_query_tree_reply(connection_.xcb(), treeCookie, nullptr));
    if (!tree) {
        return std::nullopt;
    }

    // The root's properties outlive a window manager that was killed; the window that it put up does not.
    CardinalsRequest checkItself(connection_, check.empty() ? root : check.front(),
                                 connection_.atom(Atom::supportingCheck), XCB_ATOM_WINDOW, 1);
    std::vector<OwnedWindow> windows = ask(narrowed(clients, only));
    const bool managed = checkItself.get() == check && !check.empty();
    if (!managed) {
        const xcb_window_t* children = xcb_query_tree_children(tree.get());
        windows = ask(narrowed(reversed({children, children + xcb_query_tree_children_length(tree.get())}), only));
        std::erase_if(windows, [](const OwnedWindow& entry) { return entry.window.overrideRedirect; });
    }
    const std::optional<std::uint32_t> currentDesktop =
        managed && !desktops.empty() ? std::optional(desktops.front()) : std::nullopt;
    std::erase_if(windows,
                  [&](const OwnedWindow& entry) { return !isOnScreen(connection_, entry.window, currentDesktop); });
    askForWhatIsMissing(windows);
    measureRootChildren(windows);
    return records(windows, placement);
}

std::vector<WindowList::OwnedWindow> WindowList::ask(const std::vector<xcb_window_t>& windows) const {
    ClientProcessesRequest processes(connection_, windows);
    std::vector<ClientWindowRequest> requests;
    requests.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        requests.emplace_back(connection_, window);
    }
    processes.get();
    std::vector<OwnedWindow> answers;
    answers.reserve(windows.size());
    for (ClientWindowRequest& request : requests) {
        if (std::optional<ClientWindow> window = request.get()) {
            const std::optional<std::int32_t> owner = processes.processOf(window->window);
            answers.push_back({.window = std::move(*window), .ownerProcessID = owner});
        }
    }
    return answers;
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
    // Many windows of one application are looked up once.
    std::map<ApplicationNames, std::optional<std::string>> displayNames;
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
            ownerName = processName(*entry.ownerProcessID);
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
