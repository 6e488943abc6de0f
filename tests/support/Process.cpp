#include "Process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <sstream>
#include <system_error>

namespace pallwick::support {
namespace {

constexpr int failedToStart = 127;

[[noreturn]] void throwSystemError(const std::string& operation) {
    throw std::system_error(errno, std::generic_category(), operation);
}

std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> result;
    result.reserve(strings.size() + 1);
    for (std::string& string : strings) {
        result.push_back(string.data());
    }
    result.push_back(nullptr);
    return result;
}

bool isReadable(int descriptor, int milliseconds) {
    pollfd waiting{.fd = descriptor, .events = POLLIN, .revents = 0};
    int count = 0;
    do {
        count = ::poll(&waiting, 1, milliseconds);
    } while (count < 0 && errno == EINTR);
    return count > 0;
}

}  // namespace

std::string describe(ExitStatus status) {
    return status.signal != 0 ? "ended by signal " + std::to_string(status.signal)
                              : "exit code " + std::to_string(status.code);
}

void PrintTo(ExitStatus status, std::ostream* stream) {
    *stream << describe(status);
}

std::string findProgram(const std::string& name) {
    if (name.find('/') != std::string::npos) {
        return name;
    }
    const char* path = std::getenv("PATH");
    std::istringstream directories(path == nullptr ? "/usr/bin:/bin" : path);
    for (std::string directory; std::getline(directories, directory, ':');) {
        std::string candidate = std::filesystem::path(directory) / name;
        if (::access(candidate.c_str(), X_OK) == 0 && !std::filesystem::is_directory(candidate)) {
            return candidate;
        }
    }
    return {};
}

Process::Process(std::vector<std::string> command, const Options& options)
    : input_(Pipe::make()), output_(Pipe::make()), error_(::memfd_create("standard-error", MFD_CLOEXEC)) {
    const std::string program = findProgram(command.at(0));
    if (program.empty()) {
        throw std::runtime_error(command.at(0) + " is not installed");
    }
    for (const std::string& word : command) {
        name_.append(name_.empty() ? "" : " ").append(word);
    }
    // Everything that allocates comes before the fork: a thread of ours may hold the allocator's lock.
    std::vector<std::string> variables;
    for (const auto& [variable, value] : options.environment) {
        variables.push_back(variable + "=" + value);
    }
    const std::vector<char*> arguments = pointers(command);
    const std::vector<char*> environment = pointers(variables);
    const pid_t parent = ::getpid();

    pid_ = ::fork();
    if (pid_ < 0) {
        throwSystemError("fork");
    }
    if (pid_ == 0) {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent) {
            ::_exit(failedToStart);
        }
        ::dup2(input_.readEnd.get(), STDIN_FILENO);
        ::dup2(output_.writeEnd.get(), STDOUT_FILENO);
        ::dup2(error_.get(), STDERR_FILENO);
        for (const auto& [ours, theirs] : options.descriptors) {
            if (ours == theirs) {
                ::fcntl(ours, F_SETFD, 0);
            } else {
                ::dup2(ours, theirs);
            }
        }
        ::execve(program.c_str(), arguments.data(), environment.data());
        ::_exit(failedToStart);
    }
    // Also here, for a signal to the group may be sent before the child has come to its own call.
    ::setpgid(pid_, pid_);
    input_.readEnd.reset();
    output_.writeEnd.reset();
    pidDescriptor_ = FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, pid_, 0)));
    if (pidDescriptor_.get() < 0) {
        throwSystemError("pidfd_open");
    }
}

Process::~Process() {
    constexpr int graceMilliseconds = 3000;
    if (isRunning()) {
        signal(SIGTERM);
        signal(SIGCONT);
        isReadable(exitDescriptor(), graceMilliseconds);
    }
    kill();
}

bool Process::isRunning() {
    if (!reaped_ && isReadable(exitDescriptor(), 0)) {
        finish();
    }
    return !reaped_;
}

void Process::finish() {
    int status = 0;
    while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
    }
    reaped_ = true;
    status_ = WIFSIGNALED(status) ? ExitStatus{.code = 0, .signal = WTERMSIG(status)}
                                  : ExitStatus{.code = WEXITSTATUS(status), .signal = 0};
}

std::string Process::readLine(const Deadline& deadline) {
    std::size_t end = unread_.find('\n');
    while (end == std::string::npos) {
        if (!isReadable(outputDescriptor(), deadline.remainingMilliseconds())) {
            throw Timeout("no line came from " + name_ + "; standard error: " + standardError());
        }
        std::array<char, 4096> buffer{};
        const ssize_t count = ::read(outputDescriptor(), buffer.data(), buffer.size());
        if (count <= 0) {
            throw Timeout(name_ + " ended its output where a line was awaited; standard error: " + standardError());
        }
        unread_.append(buffer.data(), static_cast<std::size_t>(count));
        end = unread_.find('\n');
    }
    std::string line = unread_.substr(0, end);
    unread_.erase(0, end + 1);
    return line;
}

void Process::writeLine(const std::string& line) {
    const std::string bytes = line + "\n";
    if (::write(input_.writeEnd.get(), bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
        throwSystemError("write to " + name_);
    }
}

std::string Process::standardError() const {
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0;
         (count = ::pread(error_.get(), buffer.data(), buffer.size(), static_cast<off_t>(text.size()))) > 0;) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
}

ExitStatus Process::awaitExit(const Deadline& deadline) {
    if (!reaped_) {
        if (!isReadable(exitDescriptor(), deadline.remainingMilliseconds())) {
            throw Timeout(name_ + " did not end; standard error: " + standardError());
        }
        finish();
    }
    return status_;
}

void Process::signal(int number) const {
    if (!reaped_) {
        ::kill(-pid_, number);
    }
}

void Process::kill() {
    if (reaped_) {
        return;
    }
    signal(SIGKILL);
    finish();
}

void run(const std::vector<std::string>& command, const Environment& environment) {
    Process process(command, {.environment = environment, .descriptors = {}});
    const ExitStatus status = process.awaitExit();
    if (status != ExitStatus{}) {
        throw std::runtime_error(process.name() + ": " + describe(status) + ": " + process.standardError());
    }
}

}  // namespace pallwick::support
