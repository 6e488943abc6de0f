#pragma once

#include <support/Process.h>
#include <support/TemporaryDirectory.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace pallwick::packaging {

/// What this build installs for the prefix /usr, in a directory of its own.
class InstalledTree {
public:
    InstalledTree();

    /// `inPrefix` is relative to the prefix.
    [[nodiscard]] std::filesystem::path path(const std::filesystem::path& inPrefix) const;
    /// Every file, relative to the root of the tree.
    [[nodiscard]] std::set<std::string> files() const;

private:
    support::TemporaryDirectory directory_;
};

/// The whole of a file; throws where it cannot be read.
[[nodiscard]] std::string text(const std::filesystem::path& path);

struct Verdict {
    support::ExitStatus status;
    /// What was written, to standard output and to standard error.
    std::string output;
};

/// What a command says. Where there is none of that name, the status is not that of a success.
[[nodiscard]] Verdict verdict(const std::vector<std::string>& command);

}  // namespace pallwick::packaging
