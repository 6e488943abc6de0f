#include "Crowd.h"

#include <algorithm>
#include <string>

namespace pallwick::bench {

Crowd::Crowd(support::PrivateDesktop& desktop, int count)
    : process_(desktop.start({PALLWICK_CROWD, std::to_string(count)})) {
    for (int i = 0; i < count; ++i) {
        windows_.push_back(static_cast<xcb_window_t>(std::stoul(process_->readLine())));
    }
    desktop.x().await("all windows of the crowd", [&] {
        return desktop.windows().clients().size() >= windows_.size() &&
               std::ranges::all_of(windows_, [&](xcb_window_t window) { return desktop.windows().isViewable(window); });
    });
}

}  // namespace pallwick::bench
