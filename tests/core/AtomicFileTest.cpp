#include "ChildProcess.h"
#include "PresetDirectory.h"

#include <PallwickMacCore/Models/UUID.h>
#include <PallwickMacCore/Stores/AtomicFile.h>
#include <PallwickMacCore/Stores/FileError.h>
#include <PallwickMacCore/Stores/PosixFileSystem.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/FileDescriptor.h"

namespace pallwick {
namespace {

using testing::ElementsAre;

class AtomicFile : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path path(const std::string& name) const { return directory_.path() / name; }

    void write(const std::filesystem::path& file, std::string_view content) { replaceFile(files_, file, content); }
    std::optional<std::string> read(const std::filesystem::path& file) { return readFile(files_, file); }

    /// What writing `file` fails with.
    std::errc writingError(const std::filesystem::path& file) {
        try {
            write(file, "new");
        } catch (const FileError& error) {
            EXPECT_EQ(error.operation(), FileError::Operation::write);
            EXPECT_EQ(error.path(), file);
            return static_cast<std::errc>(error.systemError().value());
        }
        ADD_FAILURE() << "written";
        return {};
    }

    std::errc readingError(const std::filesystem::path& file) {
        try {
            static_cast<void>(read(file));
        } catch (const FileError& error) {
            EXPECT_EQ(error.operation(), FileError::Operation::read);
            EXPECT_EQ(error.path(), file);
            return static_cast<std::errc>(error.systemError().value());
        }
        ADD_FAILURE() << "read";
        return {};
    }

    static mode_t mode(const std::filesystem::path& file) {
        struct stat status {};
        EXPECT_EQ(::stat(file.c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    test::PresetDirectory directory_;
    PosixFileSystem files_;
};

TEST_F(AtomicFile, HoldsWhatWasWritten) {
    const std::string content = std::string("a\0\n", 3) + std::string(300'000, 'x');

    write(path("file"), content);

    EXPECT_EQ(read(path("file")), content);
    EXPECT_THAT(directory_.names(), ElementsAre("file"));
}

TEST_F(AtomicFile, MayBeEmpty) {
    write(path("file"), "old");
    write(path("file"), "");

    EXPECT_EQ(read(path("file")), "");
}

TEST_F(AtomicFile, IsReplacedAndNotWrittenInto) {
    write(path("file"), "old");
    const support::FileDescriptor reader(::open(path("file").c_str(), O_RDONLY));

    write(path("file"), "new");

    std::array<char, 16> bytes{};
    EXPECT_EQ(::read(reader.get(), bytes.data(), bytes.size()), 3);
    EXPECT_STREQ(bytes.data(), "old");
}

TEST_F(AtomicFile, IsNothingWhereThereIsNone) {
    EXPECT_EQ(read(path("file")), std::nullopt);
    EXPECT_EQ(read(path("missing") / "file"), std::nullopt);
}

TEST_F(AtomicFile, IsNothingBeneathAFile) {
    write(path("file"), "old");

    EXPECT_EQ(read(path("file") / "presets.json"), std::nullopt);
}

TEST_F(AtomicFile, IsForItsOwnerAloneWhenNew) {
    write(path("file"), "new");

    EXPECT_EQ(mode(path("file")), 0600U);
}

TEST_F(AtomicFile, CanBeReadByItsOwnerWhateverTheProcessMasks) {
    const mode_t previous = ::umask(0777);
    write(path("file"), "new");
    ::umask(previous);

    EXPECT_EQ(mode(path("file")), 0600U);
}

TEST_F(AtomicFile, KeepsItsMode) {
    write(path("file"), "old");
    ::chmod(path("file").c_str(), 0644);

    write(path("file"), "new");

    EXPECT_EQ(mode(path("file")), 0644U);
}

TEST_F(AtomicFile, KeepsItsOwnerAndGroupWhereWeMaySetThem) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root may give a file away";
    }
    write(path("file"), "old");
    ASSERT_EQ(::chown(path("file").c_str(), 65534, 65533), 0);
    ::chmod(path("file").c_str(), 0640);

    write(path("file"), "new");

    struct stat status {};
    ASSERT_EQ(::stat(path("file").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 65534U);
    EXPECT_EQ(status.st_gid, 65533U);
    EXPECT_EQ(mode(path("file")), 0640U);
}

TEST_F(AtomicFile, IsNotOpenedToAnotherGroupWhereItsOwnCannotBeKept) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root may give a file to a group that is not its own";
    }
    write(path("file"), "old");
    ASSERT_EQ(::chown(path("file").c_str(), 65534, 65533), 0);
    ::chmod(path("file").c_str(), 0664);
    ASSERT_EQ(::chown(directory_.path().c_str(), 65534, 65534), 0);

    const std::string outcome = test::outcomeInChild([this] {
        if (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0) {
            return std::string("could not become another user");
        }
        write(path("file"), "new");
        return std::string("written");
    });

    EXPECT_EQ(outcome, "written");
    EXPECT_EQ(mode(path("file")), 0604U);
}

TEST_F(AtomicFile, StaysALinkToAFileElsewhere) {
    std::filesystem::create_directory(path("elsewhere"));
    write(path("elsewhere/real"), "old");
    std::filesystem::create_symlink("elsewhere/real", path("second"));
    std::filesystem::create_symlink(path("second"), path("file"));

    write(path("file"), "new");

    EXPECT_EQ(std::filesystem::read_symlink(path("file")), path("second"));
    EXPECT_EQ(std::filesystem::read_symlink(path("second")), "elsewhere/real");
    EXPECT_EQ(read(path("elsewhere/real")), "new");
    EXPECT_EQ(read(path("file")), "new");
    EXPECT_THAT(directory_.names(), ElementsAre("elsewhere", "file", "second"));
}

TEST_F(AtomicFile, FollowsALinkThatLeadsUpFromALinkedDirectory) {
    std::filesystem::create_directories(path("a/b"));
    std::filesystem::create_directory_symlink("a/b", path("linked"));
    std::filesystem::create_symlink("../real", path("a/b/file"));

    write(path("linked/file"), "new");

    EXPECT_EQ(read(path("a/real")), "new");
}

TEST_F(AtomicFile, IsMadeWhereALinkLeads) {
    std::filesystem::create_symlink("real", path("file"));
    EXPECT_EQ(read(path("file")), std::nullopt);

    write(path("file"), "new");

    EXPECT_TRUE(std::filesystem::is_symlink(path("file")));
    EXPECT_EQ(read(path("real")), "new");
}

TEST_F(AtomicFile, IsRefusedWhereALinkLeadsIntoNoDirectory) {
    std::filesystem::create_symlink("missing/real", path("file"));

    EXPECT_EQ(writingError(path("file")), std::errc::no_such_file_or_directory);

    EXPECT_THAT(directory_.names(), ElementsAre("file"));
}

TEST_F(AtomicFile, IsRefusedWhereLinksGoInACircle) {
    std::filesystem::create_symlink("second", path("file"));
    std::filesystem::create_symlink("file", path("second"));

    EXPECT_EQ(writingError(path("file")), std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(readingError(path("file")), std::errc::too_many_symbolic_link_levels);
}

TEST_F(AtomicFile, IsNoDirectory) {
    std::filesystem::create_directory(path("file"));
    std::filesystem::create_symlink("file/", path("link"));

    EXPECT_EQ(writingError(path("file")), std::errc::is_a_directory);
    EXPECT_EQ(readingError(path("file")), std::errc::is_a_directory);
    EXPECT_EQ(writingError(path("link")), std::errc::is_a_directory);
    EXPECT_EQ(readingError(path("link")), std::errc::is_a_directory);
}

TEST_F(AtomicFile, IsNoPipeThatNobodyWritesInto) {
    ASSERT_EQ(::mkfifo(path("file").c_str(), 0600), 0);

    EXPECT_EQ(readingError(path("file")), std::errc::operation_not_supported);
    EXPECT_EQ(writingError(path("file")), std::errc::operation_not_supported);
    EXPECT_TRUE(std::filesystem::is_fifo(path("file")));
}

// Only read: a writer at fault, run by root, would put a file in the place of the machine's own device.
TEST_F(AtomicFile, IsNoDeviceThatNeverEnds) {
    std::filesystem::create_symlink("/dev/zero", path("file"));

    EXPECT_EQ(readingError(path("file")), std::errc::operation_not_supported);
}

TEST_F(AtomicFile, IsNotReadWithoutEnd) {
    write(path("file"), "");
    ASSERT_EQ(::truncate(path("file").c_str(), off_t{1} << 40), 0);

    EXPECT_EQ(readingError(path("file")), std::errc::file_too_large);
}

TEST_F(AtomicFile, IsRefusedInADirectoryThatCannotBeWritten) {
    write(path("file"), "old");
    // Root may write anywhere, so the one who tries is someone else, and the directory is theirs.
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(directory_.path().c_str(), 65534, 65534), 0);
        ASSERT_EQ(::chown(path("file").c_str(), 65534, 65534), 0);
    }
    ::chmod(directory_.path().c_str(), 0500);

    const std::string outcome = test::outcomeInChild([this] {
        if (::geteuid() == 0 && ::setuid(65534) != 0) {
            return std::string("could not become another user");
        }
        write(path("file"), "new");
        return std::string("written");
    });

    ::chmod(directory_.path().c_str(), 0700);
    EXPECT_EQ(outcome, "file could not be written: Permission denied");
    EXPECT_EQ(read(path("file")), "old");
    EXPECT_THAT(directory_.names(), ElementsAre("file"));
}

TEST_F(AtomicFile, IsAnErrorWhereItIsThereButCannotBeRead) {
    write(path("file"), "old");
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(directory_.path().c_str(), 65534, 65534), 0);
    } else {
        ::chmod(path("file").c_str(), 0);
    }

    const std::string outcome = test::outcomeInChild([this] {
        if (::geteuid() == 0 && ::setuid(65534) != 0) {
            return std::string("could not become another user");
        }
        return read(path("file")).value_or("nothing");
    });

    EXPECT_EQ(outcome, "file could not be read: Permission denied");
}

TEST_F(AtomicFile, RemovesWhatAKilledProcessHasLeft) {
    const std::string left = ".file." + UUID::random().uuidString() + ".tmp";
    std::filesystem::copy_file("/proc/self/cmdline", path(left));

    write(path("file"), "new");

    EXPECT_THAT(directory_.names(), ElementsAre("file"));
}

TEST_F(AtomicFile, LeavesATemporaryFileAloneThatAnotherProcessWrites) {
    const std::string name = ".file." + UUID::random().uuidString() + ".tmp";
    const support::FileDescriptor held(::open(path(name).c_str(), O_WRONLY | O_CREAT | O_EXCL, 0600));
    ASSERT_EQ(::flock(held.get(), LOCK_EX), 0);

    write(path("file"), "new");

    EXPECT_THAT(directory_.names(), ElementsAre(name, "file"));
}

/// Notes the steps that must be in the right order for a machine that may stop at any moment.
class NotingFileSystem final : public PosixFileSystem {
public:
    ssize_t write(int file, const void* bytes, std::size_t count) override {
        steps.push_back("write");
        return PosixFileSystem::write(file, bytes, count);
    }
    int fsync(int file) override {
        struct stat status {};
        EXPECT_EQ(fstat(file, status), 0);
        steps.push_back(S_ISDIR(status.st_mode) ? "flush directory" : "flush file");
        return PosixFileSystem::fsync(file);
    }
    int renameAt(int directory, const std::string& from, const std::string& to) override {
        steps.push_back("rename");
        return PosixFileSystem::renameAt(directory, from, to);
    }

    std::vector<std::string> steps;
};

TEST_F(AtomicFile, IsOnTheDiskBeforeItTakesTheOldOnesPlace) {
    NotingFileSystem noting;

    replaceFile(noting, path("file"), "new");

    EXPECT_THAT(noting.steps, ElementsAre("write", "flush file", "rename", "flush directory"));
}

/// On which another process removes the first new file in the moment after it was made.
class RemovingFileSystem final : public PosixFileSystem {
public:
    int openAt(int directory, const std::string& name, int flags, mode_t mode) override {
        const int file = PosixFileSystem::openAt(directory, name, flags, mode);
        if ((flags & O_EXCL) != 0 && removed++ == 0) {
            EXPECT_EQ(unlinkAt(directory, name), 0);
        }
        return file;
    }

    int removed = 0;
};

TEST_F(AtomicFile, IsWrittenThoughAnotherProcessTookTheNewOneForAbandoned) {
    RemovingFileSystem removing;

    replaceFile(removing, path("file"), "new");

    EXPECT_EQ(read(path("file")), "new");
    EXPECT_THAT(directory_.names(), ElementsAre("file"));
}

/// On which another process has locked the first new file and removes it before anything is written.
class LockingFileSystem final : public PosixFileSystem {
public:
    int openAt(int parent, const std::string& name, int flags, mode_t mode) override {
        const int file = PosixFileSystem::openAt(parent, name, flags, mode);
        if ((flags & O_EXCL) != 0 && other.get() < 0) {
            other = support::FileDescriptor(PosixFileSystem::openAt(parent, name, O_RDONLY | O_CLOEXEC, 0));
            EXPECT_EQ(PosixFileSystem::flock(other.get(), LOCK_EX), 0);
            locked = name;
        }
        return file;
    }
    int fchmod(int file, mode_t mode) override {
        ::unlink((directory / locked).c_str());
        return PosixFileSystem::fchmod(file, mode);
    }

    std::filesystem::path directory;
    std::string locked;
    support::FileDescriptor other;
};

TEST_F(AtomicFile, IsWrittenUnderAnotherNameWhereTheFirstIsTaken) {
    LockingFileSystem locking;
    locking.directory = directory_.path();

    replaceFile(locking, path("file"), "new");

    EXPECT_GE(locking.other.get(), 0);
    EXPECT_EQ(read(path("file")), "new");
    EXPECT_THAT(directory_.names(), ElementsAre("file"));
}

/// Without locks, as some network disks are.
class LocklessFileSystem final : public PosixFileSystem {
public:
    int flock(int, int) override {
        errno = ENOLCK;
        return -1;
    }
};

TEST_F(AtomicFile, IsWrittenWhereFilesCannotBeLockedAndNothingIsRemovedThen) {
    const std::string left = ".file." + UUID::random().uuidString() + ".tmp";
    std::filesystem::copy_file("/proc/self/cmdline", path(left));
    LocklessFileSystem lockless;

    replaceFile(lockless, path("file"), "new");

    EXPECT_EQ(read(path("file")), "new");
    EXPECT_THAT(directory_.names(), ElementsAre(left, "file"));
}

TEST_F(AtomicFile, LeavesOtherProgramsFilesAlone) {
    const std::string uuid = UUID::random().uuidString();
    const std::vector<std::string> others{
        ".file..tmp", ".file.swp", ".file.swp.tmp", ".file.tmp", ".other." + uuid + ".tmp", "file." + uuid + ".tmp",
        "file~"};
    for (const std::string& other : others) {
        write(path(other), "theirs");
    }

    write(path("file"), "new");

    EXPECT_THAT(directory_.names(), testing::IsSupersetOf(others));
}

}  // namespace
}  // namespace pallwick
