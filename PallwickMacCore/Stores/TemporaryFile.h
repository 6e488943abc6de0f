#pragma once

#include <PallwickMacCore/Stores/OpenFile.h>

#include <string>

namespace pallwick {

/// A new, empty file beside the one that it is to replace, for its owner alone, removed with this object unless it has
/// taken the other's place.
///
/// It has a name of its own, so that two processes that save at once never write into the same file, and is locked
/// while it lives: a temporary file that nobody holds is what a process left behind when it was killed, and the next
/// one that is made for the same file removes it. Where files cannot be locked, nothing is removed.
class TemporaryFile {
public:
    /// For `target`, a name in the open `directory`; both must outlive this. Throws `std::system_error`.
    TemporaryFile(FileSystem& fileSystem, const OpenFile& directory, const std::string& target);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] int descriptor() const { return file_.get(); }

    /// Takes the target's place, in one step for everyone who looks. Throws `std::system_error`.
    void replaceTarget();

private:
    struct Created {
        std::string name;
        OpenFile file;
    };

    TemporaryFile(FileSystem& fileSystem, const OpenFile& directory, std::string target, Created created);

    [[nodiscard]] static Created create(FileSystem& fileSystem, const OpenFile& directory, const std::string& target);

    FileSystem& fileSystem_;
    const OpenFile& directory_;
    std::string target_;
    /// Empty once there is no file of that name any more.
    std::string name_;
    OpenFile file_;
};

}  // namespace pallwick
