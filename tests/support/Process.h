#pragma once

#include <sys/types.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Deadline.h"
#include "FileDescriptor.h"

namespace pallwick::support {

/// Names to values; a child sees these and nothing else.
using Environment = std::map<std::string, std::string>;

/// How a process ended: by returning `code`, or by `signal` when that is not 0.
struct ExitStatus {
    int code = 0;
    int signal = 0;

    friend bool operator==(const ExitStatus&, const ExitStatus&) = default;
};

[[nodiscard]] std::string describe(ExitStatus status);
void PrintTo(ExitStatus status, std::ostream* stream);

/// A child process in a process group of its own, which ends with this object, or with the test should that die.
///
/// Standard input and output are pipes, standard error is kept whole and can be read at any time.
class Process {
public:
    struct Options {
        Environment environment;
        /// Pairs of a descriptor of ours and the number the child shall see it under, from 3 up.
        std::vector<std::pair<int, int>> descriptors;
    };

    /// `command` is a program, by path or to be found on PATH, and its arguments.
    /// Throws `std::runtime_error` where there is no such program.
    Process(std::vector<std::string> command, const Options& options);
    /// Asks the process group to end, then makes it.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    [[nodiscard]] pid_t pid() const { return pid_; }
    /// Becomes readable, for `poll`, when the process ends.
    [[nodiscard]] int exitDescriptor() const { return pidDescriptor_.get(); }
    /// The command in one line, for messages.
    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] bool isRunning();

    /// The next line of its standard output, without the line's end. Throws `Timeout` when none comes, or
    /// when the output ends before.
    std::string readLine(const Deadline& deadline = Deadline());
    /// Readable when `readLine` may have something to read.
    [[nodiscard]] int outputDescriptor() const { return output_.readEnd.get(); }
    void writeLine(const std::string& line);
    /// All it has written to standard error up to now.
    [[nodiscard]] std::string standardError() const;

    /// Throws `Timeout`.
    ExitStatus awaitExit(const Deadline& deadline = Deadline());
    /// To the whole process group; harmless once it has ended.
    void signal(int number) const;
    /// Ends it with SIGKILL and waits for that.
    void kill();

private:
    void finish();

    std::string name_;
    Pipe input_;
    Pipe output_;
    FileDescriptor error_;
    FileDescriptor pidDescriptor_;
    pid_t pid_ = -1;
    bool reaped_ = false;
    ExitStatus status_;
    std::string unread_;
};

/// The program's full path, empty where it is not on PATH.
[[nodiscard]] std::string findProgram(const std::string& name);

/// Runs a command to its end. Throws `std::runtime_error` with its standard error when it fails.
void run(const std::vector<std::string>& command, const Environment& environment);

}  // namespace pallwick::support
