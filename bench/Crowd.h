#pragma once

#include <sys/types.h>

#include <memory>
#include <vector>

#include "support/PrivateDesktop.h"

namespace pallwick::bench {

/// Many windows of one other program, which stay as they are.
class Crowd {
public:
    /// Returns when the window manager of `desktop` lists them all. `desktop` must outlive the object.
    Crowd(support::PrivateDesktop& desktop, int count);

    [[nodiscard]] const std::vector<xcb_window_t>& windows() const { return windows_; }
    [[nodiscard]] pid_t process() const { return process_->pid(); }

private:
    std::unique_ptr<support::Process> process_;
    std::vector<xcb_window_t> windows_;
};

}  // namespace pallwick::bench
