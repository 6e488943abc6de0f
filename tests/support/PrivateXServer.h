#pragma once

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

#include "Process.h"

namespace pallwick::support {

/// An X server without a screen (Xvfb), on a display number that is its own.
class PrivateXServer {
public:
    struct Options {
        /// Size of the root window in pixels.
        int width = 1280;
        int height = 800;
        /// Further arguments, `{"-extension", "RANDR"}` for one.
        std::vector<std::string> arguments;
    };

    /// Returns when the server accepts clients. Throws `Timeout` or `std::runtime_error`.
    explicit PrivateXServer(const Options& options);
    ~PrivateXServer();
    PrivateXServer(const PrivateXServer&) = delete;
    PrivateXServer& operator=(const PrivateXServer&) = delete;

    /// ":7", the value for DISPLAY.
    [[nodiscard]] const std::string& display() const { return display_; }
    [[nodiscard]] pid_t pid() const { return process_->pid(); }
    /// Ends it as a crash would: its clients find their connection broken.
    void kill();

private:
    std::unique_ptr<Process> process_;
    std::string display_;
};

}  // namespace pallwick::support
