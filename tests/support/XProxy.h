#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "FileDescriptor.h"

namespace pallwick::support {

/// Stands between programs and an X server, hands on what they say to each other, and counts what is asked.
///
/// What was asked is counted before it reaches the server, so whoever has an answer finds its question counted. File
/// descriptors are not handed on.
class XProxy {
public:
    /// Of all the programs that came this way.
    struct Traffic {
        /// By the protocol's number of the request; extensions have theirs from 128 up.
        std::map<std::uint8_t, int> requests;
        /// How often one of them sent something. Whoever waits for an answer has sent everything before, so there are
        /// at least as many as there were round trips.
        std::size_t sendings = 0;
        std::size_t bytes = 0;
    };

    /// `display` is the server's. Throws `std::system_error`.
    explicit XProxy(const std::string& display);
    ~XProxy();
    XProxy(const XProxy&) = delete;
    XProxy& operator=(const XProxy&) = delete;

    /// The value for DISPLAY.
    [[nodiscard]] const std::string& display() const { return display_; }
    /// Since the last call.
    Traffic takeTraffic();

private:
    struct Line {
        FileDescriptor program;
        FileDescriptor server;
        /// What the program has said of the request that is not whole yet.
        std::string unread;
        bool isSetUp = false;
    };

    void run();
    void accept();
    /// False once one of the two has gone.
    bool forwardToServer(Line& line);
    bool forwardToProgram(Line& line);
    void count(Line& line, const std::string& bytes);

    std::string server_;
    std::string display_;
    FileDescriptor listener_;
    Pipe end_;
    std::vector<Line> lines_;
    std::mutex mutex_;
    Traffic traffic_;
    std::thread thread_;
};

}  // namespace pallwick::support
