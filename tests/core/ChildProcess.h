#pragma once

#include <PallwickMacCore/Models/CoreError.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <exception>
#include <string>
#include <system_error>

namespace pallwick::test {

/// Runs `action`, which returns a string, in a copy of this process and gives what it returned, or the message of
/// what it threw. For what a process can do to itself only once: give up rights, or see other file systems.
template <typename Action>
std::string outcomeInChild(Action action) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (child == 0) {
        ::close(ends[0]);
        std::string outcome;
        try {
            outcome = action();
        } catch (const std::exception& error) {
            outcome = error.what();
        }
        const bool told = ::write(ends[1], outcome.data(), outcome.size()) == static_cast<ssize_t>(outcome.size());
        ::_exit(told ? 0 : 1);
    }
    ::close(ends[1]);
    std::string outcome;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = ::read(ends[0], buffer.data(), buffer.size())) > 0;) {
        outcome.append(buffer.data(), static_cast<std::size_t>(count));
    }
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    return status == 0 ? outcome : "the child ended with status " + std::to_string(status);
}

}  // namespace pallwick::test
