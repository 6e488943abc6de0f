#include "ChildProcess.h"
#include "PresetDirectory.h"

#include <PallwickMacCore/Stores/PresetStore.h>
#include <gmock/gmock.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

namespace pallwick {
namespace {

using testing::ElementsAre;

constexpr const char* noRightToMount = "no right to mount";

const PresetScope scope = PresetScope::screen(1);
const std::vector<BlurOverlay> oldOverlays = test::overlays(2);

void mountSmallDisk(const std::filesystem::path& directory) {
    // As an ordinary user, file systems can be mounted only in a user namespace of one's own.
    const int namespaces = ::geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER;
    if (::unshare(namespaces) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", directory.c_str(), "tmpfs", 0, "size=256k") != 0) {
        throw std::runtime_error(noRightToMount);
    }
}

/// Takes all space that is left, to the last byte.
void fill(const std::filesystem::path& file) {
    std::ofstream stream(file, std::ios::binary);
    stream << std::string(std::size_t{1} << 20, 'x') << std::flush;
}

std::string savingOutcome(PresetStore& store, const std::vector<BlurOverlay>& overlays) {
    try {
        store.save(overlays, scope);
        return "saved";
    } catch (const std::exception& error) {
        return error.what();
    }
}

/// On both sides of 16 KiB, up to which size files are often held back in memory and fail only when closed.
class FullDisk : public testing::TestWithParam<int> {};

TEST_P(FullDisk, FailsTheSaveAndKeepsTheOldFileUntilThereIsSpace) {
    const test::PresetDirectory directory;

    const std::string outcome = test::outcomeInChild([&] {
        mountSmallDisk(directory.path());
        PresetStore store(directory.path());
        store.save(oldOverlays, scope);
        const std::string before = directory.text();
        fill(directory.path() / "filler");

        std::string report = savingOutcome(store, test::overlays(GetParam())) + "; ";
        report += directory.text() == before && directory.names().size() == 2 ? "old file whole; " : "damaged; ";
        std::filesystem::remove(directory.path() / "filler");
        report += savingOutcome(store, test::overlays(GetParam()));
        return report + (store.load(scope) == test::overlays(GetParam()) ? "; whole" : "; damaged");
    });

    if (outcome == noRightToMount) {
        GTEST_SKIP() << "this user may not mount a small disk";
    }
    EXPECT_EQ(outcome, "presets.json could not be written: No space left on device; old file whole; saved; whole");
}

TEST_P(FullDisk, FailsTheFirstSaveAndLeavesNoFile) {
    const test::PresetDirectory directory;

    const std::string outcome = test::outcomeInChild([&] {
        mountSmallDisk(directory.path());
        PresetStore store(directory.path());
        fill(directory.path() / "filler");
        const std::string report = savingOutcome(store, test::overlays(GetParam()));
        return report + (directory.names() == std::vector<std::string>{"filler"} ? "; no file" : "; litter");
    });

    if (outcome == noRightToMount) {
        GTEST_SKIP() << "this user may not mount a small disk";
    }
    EXPECT_EQ(outcome, "presets.json could not be written: No space left on device; no file");
}

TEST_P(FullDisk, IsWhatALimitOnTheSizeOfFilesLooksLike) {
    const test::PresetDirectory directory;
    PresetStore(directory.path()).save(oldOverlays, scope);

    const std::string outcome = test::outcomeInChild([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{.rlim_cur = 1000, .rlim_max = 1000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        PresetStore store(directory.path());
        return savingOutcome(store, test::overlays(GetParam()));
    });

    EXPECT_EQ(outcome, "presets.json could not be written: File too large");
    EXPECT_EQ(PresetStore(directory.path()).load(scope), oldOverlays);
    EXPECT_THAT(directory.names(), ElementsAre("presets.json"));
}

INSTANTIATE_TEST_SUITE_P(Overlays, FullDisk, testing::Values(4, 100));

TEST(ReadOnlyDisk, FailsTheSaveAndStillLoads) {
    const test::PresetDirectory directory;

    const std::string outcome = test::outcomeInChild([&] {
        mountSmallDisk(directory.path());
        PresetStore store(directory.path());
        store.save(oldOverlays, scope);
        if (::mount(nullptr, directory.path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0) {
            return std::string(noRightToMount);
        }
        return savingOutcome(store, {}) + (store.load(scope) == oldOverlays ? "; old file whole" : "; damaged");
    });

    if (outcome == noRightToMount) {
        GTEST_SKIP() << "this user may not mount a small disk";
    }
    EXPECT_EQ(outcome, "presets.json could not be written: Read-only file system; old file whole");
}

}  // namespace
}  // namespace pallwick
