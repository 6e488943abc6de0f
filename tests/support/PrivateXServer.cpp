#include "PrivateXServer.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace pallwick::support {
namespace {

std::string readNumber(const FileDescriptor& source, Process& server) {
    const Deadline deadline;
    std::string number;
    for (;;) {
        pollfd waiting{.fd = source.get(), .events = POLLIN, .revents = 0};
        const int count = ::poll(&waiting, 1, deadline.remainingMilliseconds());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        char byte = 0;
        if (count <= 0 || ::read(source.get(), &byte, 1) != 1) {
            throw Timeout("the X server did not start: " + server.standardError());
        }
        if (byte == '\n') {
            return number;
        }
        number += byte;
    }
}

/// A killed server leaves its lock and its socket behind. The lock holds the owner's process identifier, so that
/// those of a successor on the same number are left alone.
void removeRemains(const std::string& number, pid_t server) {
    const std::filesystem::path lock = "/tmp/.X" + number + "-lock";
    pid_t owner = 0;
    std::ifstream(lock) >> owner;
    if (owner == server) {
        std::error_code ignored;
        std::filesystem::remove("/tmp/.X11-unix/X" + number, ignored);
        std::filesystem::remove(lock, ignored);
    }
}

}  // namespace

PrivateXServer::PrivateXServer(const Options& options) {
    Pipe numbers = Pipe::make();
    constexpr int displayDescriptor = 3;
    // Without -noreset, monitors that were added vanish when the last client leaves.
    std::vector<std::string> command{
        "Xvfb",     "-displayfd", std::to_string(displayDescriptor),
        "-noreset", "-nolisten",  "tcp",
        "-screen",  "0",          std::to_string(options.width) + "x" + std::to_string(options.height) + "x24"};
    command.insert(command.end(), options.arguments.begin(), options.arguments.end());
    const char* path = std::getenv("PATH");
    process_ = std::make_unique<Process>(
        command, Process::Options{.environment = {{"PATH", path == nullptr ? "/usr/bin:/bin" : path}},
                                  .descriptors = {{numbers.writeEnd.get(), displayDescriptor}}});
    numbers.writeEnd.reset();
    display_ = ":" + readNumber(numbers.readEnd, *process_);
}

PrivateXServer::~PrivateXServer() {
    const pid_t server = process_->pid();
    process_.reset();
    removeRemains(display_.substr(1), server);
}

void PrivateXServer::kill() {
    process_->kill();
}

}  // namespace pallwick::support
