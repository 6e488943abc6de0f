#include "XProxy.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <system_error>
#include <utility>

namespace pallwick::support {
namespace {

// Larger than anything that is sent at once, so that no sending is counted twice.
constexpr std::size_t bufferSize = 1U << 20U;

[[noreturn]] void throwSystemError(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

constexpr const char* socketsOfServers = "/tmp/.X11-unix/X";

/// Where a server listens, as a file.
sockaddr_un addressOf(const std::string& display) {
    sockaddr_un result{};
    result.sun_family = AF_UNIX;
    const std::string path = socketsOfServers + display.substr(display.find(':') + 1);
    path.copy(result.sun_path, sizeof result.sun_path - 1);
    return result;
}

/// Listens where programs look for the server of a display first: at a name that is no file, of which nothing remains.
/// False where somebody else does.
bool listenAt(const FileDescriptor& listener, int display) {
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    const std::string name = socketsOfServers + std::to_string(display);
    name.copy(place.sun_path + 1, sizeof place.sun_path - 1);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    constexpr int waitingClients = 8;
    return ::bind(listener.get(), reinterpret_cast<const sockaddr*>(&place), length) == 0 &&
           ::listen(listener.get(), waitingClients) == 0;
}

FileDescriptor makeSocket() {
    FileDescriptor result(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (result.get() < 0) {
        throwSystemError("socket");
    }
    return result;
}

std::optional<std::string> read(const FileDescriptor& source) {
    std::string bytes(bufferSize, '\0');
    const ssize_t count = ::read(source.get(), bytes.data(), bytes.size());
    if (count <= 0) {
        return std::nullopt;
    }
    bytes.resize(static_cast<std::size_t>(count));
    return bytes;
}

bool writeAll(const FileDescriptor& target, const std::string& bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = ::send(target.get(), bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

template <typename Number>
std::size_t numberAt(const std::string& bytes, std::size_t offset) {
    Number number = 0;
    std::memcpy(&number, bytes.data() + offset, sizeof number);
    return number;
}

std::size_t padded(std::size_t length) {
    return (length + 3) / 4 * 4;
}

/// Of the first thing that a client says (X protocol, section 8); none while too little of it is there.
std::optional<std::size_t> setupLength(const std::string& bytes) {
    constexpr std::size_t head = 12;
    if (bytes.size() < head) {
        return std::nullopt;
    }
    return head + padded(numberAt<std::uint16_t>(bytes, 6)) + padded(numberAt<std::uint16_t>(bytes, 8));
}

/// The same for a request; one whose short length is 0 is a large one (Big Requests extension).
std::optional<std::size_t> requestLength(const std::string& bytes) {
    constexpr std::size_t head = 8;
    if (bytes.size() < head / 2) {
        return std::nullopt;
    }
    const std::size_t units = numberAt<std::uint16_t>(bytes, 2);
    if (units != 0) {
        return units * 4;
    }
    return bytes.size() < head ? std::nullopt : std::optional(numberAt<std::uint32_t>(bytes, 4) * 4);
}

}  // namespace

XProxy::XProxy(const std::string& display) : server_(display), listener_(makeSocket()), end_(Pipe::make()) {
    // Far from the numbers that servers take.
    constexpr int first = 20000;
    constexpr int last = 30000;
    int number = first;
    while (!listenAt(listener_, number)) {
        if (errno != EADDRINUSE || ++number == last) {
            throwSystemError("bind");
        }
    }
    display_ = ":" + std::to_string(number);
    thread_ = std::thread([this] { run(); });
}

XProxy::~XProxy() {
    end_.writeEnd.reset();
    thread_.join();
}

XProxy::Traffic XProxy::takeTraffic() {
    const std::lock_guard lock(mutex_);
    return std::exchange(traffic_, {});
}

void XProxy::run() {
    for (;;) {
        std::vector<pollfd> waiting{{.fd = end_.readEnd.get(), .events = POLLIN, .revents = 0},
                                    {.fd = listener_.get(), .events = POLLIN, .revents = 0}};
        const std::size_t firstLine = waiting.size();
        for (const Line& line : lines_) {
            waiting.push_back({.fd = line.program.get(), .events = POLLIN, .revents = 0});
            waiting.push_back({.fd = line.server.get(), .events = POLLIN, .revents = 0});
        }
        if (::poll(waiting.data(), waiting.size(), -1) < 0) {
            continue;
        }
        if (waiting[0].revents != 0) {
            return;
        }
        std::vector<Line> open;
        for (std::size_t i = 0; i < lines_.size(); ++i) {
            const bool asked = waiting[firstLine + 2 * i].revents != 0;
            const bool answered = waiting[firstLine + 2 * i + 1].revents != 0;
            if ((!asked || forwardToServer(lines_[i])) && (!answered || forwardToProgram(lines_[i]))) {
                open.push_back(std::move(lines_[i]));
            }
        }
        lines_ = std::move(open);
        if (waiting[1].revents != 0) {
            accept();
        }
    }
}

void XProxy::accept() {
    FileDescriptor program(::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
    FileDescriptor server(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_un place = addressOf(server_);
    // The program notices by itself when nobody answers.
    if (::connect(server.get(), reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0) {
        lines_.push_back({.program = std::move(program), .server = std::move(server), .unread = {}});
    }
}

bool XProxy::forwardToServer(Line& line) {
    const std::optional<std::string> bytes = read(line.program);
    if (!bytes) {
        return false;
    }
    count(line, *bytes);
    return writeAll(line.server, *bytes);
}

bool XProxy::forwardToProgram(Line& line) {
    const std::optional<std::string> bytes = read(line.server);
    return bytes && writeAll(line.program, *bytes);
}

void XProxy::count(Line& line, const std::string& bytes) {
    line.unread += bytes;
    const std::lock_guard lock(mutex_);
    ++traffic_.sendings;
    traffic_.bytes += bytes.size();
    for (;;) {
        const std::optional<std::size_t> length = line.isSetUp ? requestLength(line.unread) : setupLength(line.unread);
        if (!length || line.unread.size() < *length) {
            return;
        }
        if (line.isSetUp) {
            ++traffic_.requests[static_cast<std::uint8_t>(line.unread.front())];
        }
        line.isSetUp = true;
        line.unread.erase(0, *length);
    }
}

}  // namespace pallwick::support
