#include "PresetDirectory.h"

#include <PallwickMacCore/Stores/PresetStore.h>
#include <gmock/gmock.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace pallwick {
namespace {

using testing::ElementsAre;

const PresetScope scope = PresetScope::screen(1);
const std::vector<BlurOverlay> oldOverlays = test::overlays(2);
const std::vector<BlurOverlay> newOverlays = test::overlays(40);

pid_t startStoppedSave(const std::filesystem::path& directory) {
    const pid_t child = ::fork();
    if (child == 0) {
        PresetStore store(directory);
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        ::raise(SIGSTOP);
        try {
            store.save(newOverlays, scope);
        } catch (const std::exception&) {
            ::_exit(1);
        }
        ::_exit(0);
    }
    return child;
}

/// Saves in a process of its own and kills that at its `stop`th entry to or return from a system call, counted from 1.
/// True where it came so far; otherwise it has ended by itself, in success.
bool killSave(const std::filesystem::path& directory, int stop) {
    const pid_t child = startStoppedSave(directory);
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSTOPPED(status));
    for (int i = 0; i < stop; ++i) {
        EXPECT_EQ(::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr), 0);
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        if (!WIFSTOPPED(status)) {
            EXPECT_EQ(status, 0);
            return false;
        }
    }
    ::kill(child, SIGKILL);
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    return true;
}

TEST(PresetStoreKill, AtAnySystemCallLeavesOneOfTheTwoFilesWhole) {
    int killedBefore = 0;
    int killedAfter = 0;
    bool killed = true;
    for (int stop = 1; killed; ++stop) {
        const test::PresetDirectory directory;
        PresetStore store(directory.path());
        store.save(oldOverlays, scope);

        killed = killSave(directory.path(), stop);

        const std::vector<BlurOverlay> found = store.load(scope);
        ASSERT_TRUE(found == newOverlays || (killed && found == oldOverlays)) << "stop " << stop;
        (found == newOverlays ? killedAfter : killedBefore) += 1;
        store.save({}, scope);
        ASSERT_TRUE(store.load(scope).empty()) << "stop " << stop;
        ASSERT_THAT(directory.names(), ElementsAre("presets.json")) << "stop " << stop;
    }

    // Each of opening, writing, flushing and renaming is two stops at least.
    EXPECT_GE(killedBefore, 8);
    EXPECT_GE(killedAfter, 2);
}

TEST(PresetStoreKill, AtAnySystemCallLeavesTheFirstFileMissingOrWhole) {
    bool killed = true;
    for (int stop = 1; killed; ++stop) {
        const test::PresetDirectory directory;

        killed = killSave(directory.path(), stop);

        PresetStore store(directory.path());
        const std::vector<BlurOverlay> found = store.load(scope);
        ASSERT_TRUE(found == newOverlays || (killed && !std::filesystem::exists(directory.file()))) << "stop " << stop;
        store.save(oldOverlays, scope);
        ASSERT_THAT(directory.names(), ElementsAre("presets.json")) << "stop " << stop;
    }
}

}  // namespace
}  // namespace pallwick
