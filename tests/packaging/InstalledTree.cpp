#include "InstalledTree.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace pallwick::packaging {

using support::Environment;

namespace {

/// No home and no display: nothing that one user has, and another has not, may matter.
Environment bareEnvironment() {
    return {{"PATH", "/usr/bin:/bin"}, {"LANG", "C.UTF-8"}, {"HOME", "/nonexistent"}};
}

}  // namespace

InstalledTree::InstalledTree() {
    Environment environment = bareEnvironment();
    environment["DESTDIR"] = directory_.path().string();
    support::run({PALLWICK_CMAKE, "--install", PALLWICK_BUILD_DIR, "--prefix", "/usr"}, environment);
}

std::filesystem::path InstalledTree::path(const std::filesystem::path& inPrefix) const {
    return directory_.path() / "usr" / inPrefix;
}

std::set<std::string> InstalledTree::files() const {
    std::set<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory_.path())) {
        if (!entry.is_directory()) {
            paths.insert(entry.path().lexically_relative(directory_.path()).string());
        }
    }
    return paths;
}

std::string text(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error(path.string() + " cannot be read");
    }
    std::ostringstream whole;
    whole << file.rdbuf();
    return whole.str();
}

Verdict verdict(const std::vector<std::string>& command) {
    // What it writes to standard output is wanted where it can be read at the end.
    std::vector<std::string> redirected = {"/bin/sh", "-c", "exec \"$@\" >&2", "sh"};
    redirected.insert(redirected.end(), command.begin(), command.end());
    support::Process process(redirected, {.environment = bareEnvironment(), .descriptors = {}});
    const support::ExitStatus status = process.awaitExit();
    return {.status = status, .output = process.standardError()};
}

}  // namespace pallwick::packaging
