#include "FaultyFileSystem.h"
#include "PresetDirectory.h"

#include <PallwickMacCore/Stores/FileError.h>
#include <PallwickMacCore/Stores/PresetStore.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

namespace pallwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const PresetScope scope = PresetScope::screen(1);
const std::vector<BlurOverlay> oldOverlays = test::overlays(2);
const std::vector<BlurOverlay> newOverlays = test::overlays(40);

/// A save that goes wrong at one operation after another until none is left to go wrong at.
class PresetStoreFault : public testing::TestWithParam<int> {
protected:
    /// Saves with `faults`. True where it was reported to have succeeded.
    [[nodiscard]] bool save(const test::PresetDirectory& directory, test::Faults faults) {
        test::Faults none;
        auto fileSystem = std::make_unique<test::FaultyFileSystem>(faults_);
        faults_ = none;
        PresetStore store(directory.path(), std::move(fileSystem));
        faults_ = faults;
        try {
            store.save(newOverlays, scope);
            return true;
        } catch (const FileError& error) {
            EXPECT_EQ(error.systemError().value(), faults.error);
            return false;
        }
    }

    /// Whether the last save came as far as the operation that was to fail.
    [[nodiscard]] bool hasFailed() const { return faults_.operations > faults_.failing; }

    test::Faults faults_;
};

std::vector<BlurOverlay> stored(const test::PresetDirectory& directory) {
    return PresetStore(directory.path()).load(scope);
}

TEST_P(PresetStoreFault, LeavesTheFirstFileMissingOrWhole) {
    bool failed = true;
    for (int n = 0; failed; ++n) {
        const test::PresetDirectory directory;

        const bool saved = save(directory, {.failing = n, .error = GetParam()});

        failed = hasFailed();
        ASSERT_EQ(stored(directory), saved ? newOverlays : std::vector<BlurOverlay>()) << "operation " << n;
        ASSERT_EQ(directory.names(), saved ? std::vector<std::string>{"presets.json"} : std::vector<std::string>())
            << "operation " << n;
        ASSERT_TRUE(saved || failed) << "operation " << n;
    }
}

TEST_P(PresetStoreFault, LeavesTheOldFileOrTheNewOneWhole) {
    bool failed = true;
    for (int n = 0; failed; ++n) {
        const test::PresetDirectory directory;
        PresetStore(directory.path()).save(oldOverlays, scope);
        const std::string before = directory.text();

        const bool saved = save(directory, {.failing = n, .error = GetParam()});

        failed = hasFailed();
        ASSERT_EQ(stored(directory), saved ? newOverlays : oldOverlays) << "operation " << n;
        ASSERT_TRUE(saved || directory.text() == before) << "operation " << n;
        ASSERT_THAT(directory.names(), ElementsAre("presets.json")) << "operation " << n;
        ASSERT_TRUE(saved || failed) << "operation " << n;
    }
}

/// Without interruptions: what is interrupted for ever is tried for ever.
class PresetStoreBreakdown : public PresetStoreFault {};

TEST_P(PresetStoreBreakdown, LeavesOneOfTheTwoWholeAndIsMendedByTheNextSave) {
    bool failed = true;
    for (int n = 0; failed; ++n) {
        const test::PresetDirectory directory;
        PresetStore(directory.path()).save(oldOverlays, scope);

        const bool saved = save(directory, {.failing = n, .error = GetParam(), .fromThereOn = true});

        failed = hasFailed();
        ASSERT_EQ(stored(directory), saved ? newOverlays : oldOverlays) << "operation " << n;
        PresetStore(directory.path()).save({}, scope);
        ASSERT_THAT(stored(directory), IsEmpty()) << "operation " << n;
        ASSERT_THAT(directory.names(), ElementsAre("presets.json")) << "operation " << n;
    }
}

TEST_P(PresetStoreFault, KeepsALinkAndWhatItLeadsTo) {
    bool failed = true;
    for (int n = 0; failed; ++n) {
        const test::PresetDirectory elsewhere;
        PresetStore(elsewhere.path()).save(oldOverlays, scope);
        const test::PresetDirectory directory;
        std::filesystem::create_symlink(elsewhere.file(), directory.file());

        const bool saved = save(directory, {.failing = n, .error = GetParam()});

        failed = hasFailed();
        ASSERT_EQ(stored(elsewhere), saved ? newOverlays : oldOverlays) << "operation " << n;
        ASSERT_TRUE(std::filesystem::is_symlink(directory.file())) << "operation " << n;
        ASSERT_THAT(elsewhere.names(), ElementsAre("presets.json")) << "operation " << n;
        ASSERT_THAT(directory.names(), ElementsAre("presets.json")) << "operation " << n;
    }
}

TEST_P(PresetStoreFault, NeverOpensTheFileToAnyoneElse) {
    bool failed = true;
    for (int n = 0; failed; ++n) {
        const test::PresetDirectory directory;
        PresetStore(directory.path()).save(oldOverlays, scope);

        static_cast<void>(save(directory, {.failing = n, .error = GetParam()}));

        failed = hasFailed();
        ASSERT_EQ(std::filesystem::status(directory.file()).permissions(),
                  std::filesystem::perms::owner_read | std::filesystem::perms::owner_write)
            << "operation " << n;
    }
}

INSTANTIATE_TEST_SUITE_P(Errors, PresetStoreFault, testing::Values(ENOSPC, EIO, EACCES, EINTR, EDQUOT, EROFS),
                         [](const auto& instance) { return std::string(::strerrorname_np(instance.param)); });

INSTANTIATE_TEST_SUITE_P(Errors, PresetStoreBreakdown, testing::Values(ENOSPC, EIO, EACCES, EDQUOT, EROFS),
                         [](const auto& instance) { return std::string(::strerrorname_np(instance.param)); });

class PresetStoreInterruption : public PresetStoreFault {};

TEST_F(PresetStoreInterruption, IsNoFailureAnywhere) {
    bool interrupted = true;
    for (int n = 0; interrupted; ++n) {
        const test::PresetDirectory directory;
        PresetStore(directory.path()).save(oldOverlays, scope);

        const bool saved = save(directory, {.failing = n, .error = EINTR});

        interrupted = hasFailed();
        ASSERT_TRUE(saved) << "operation " << n;
        ASSERT_EQ(stored(directory), newOverlays) << "operation " << n;
    }
}

class PresetStoreTransfer : public testing::TestWithParam<std::size_t> {};

TEST_P(PresetStoreTransfer, OfFewBytesAtOnceBringsTheWholeFile) {
    const test::PresetDirectory directory;
    test::Faults faults{.largestTransfer = GetParam()};
    PresetStore store(directory.path(), std::make_unique<test::FaultyFileSystem>(faults));

    store.save(newOverlays, scope);

    EXPECT_EQ(store.load(scope), newOverlays);
    EXPECT_EQ(stored(directory), newOverlays);
}

TEST_P(PresetStoreTransfer, ThatFailsHalfwayLeavesTheOldFile) {
    const test::PresetDirectory directory;
    PresetStore(directory.path()).save(oldOverlays, scope);
    test::Faults counting{.largestTransfer = GetParam()};
    PresetStore(directory.path(), std::make_unique<test::FaultyFileSystem>(counting)).save(oldOverlays, scope);
    test::Faults faults{.largestTransfer = GetParam()};
    PresetStore store(directory.path(), std::make_unique<test::FaultyFileSystem>(faults));
    // The old list takes half of all operations to read and half to write; the new one is longer.
    faults.failing = faults.operations + counting.operations;
    faults.error = ENOSPC;

    EXPECT_THROW(store.save(newOverlays, scope), FileError);

    EXPECT_EQ(stored(directory), oldOverlays);
    EXPECT_THAT(directory.names(), ElementsAre("presets.json"));
}

INSTANTIATE_TEST_SUITE_P(Bytes, PresetStoreTransfer, testing::Values(1, 7, 100));

TEST(PresetStoreTransferOfNothing, IsAFailure) {
    const test::PresetDirectory directory;
    test::Faults faults{.largestTransfer = 0};
    PresetStore store(directory.path(), std::make_unique<test::FaultyFileSystem>(faults));

    EXPECT_THROW(store.save(newOverlays, scope), FileError);

    EXPECT_THAT(directory.names(), IsEmpty());
}

}  // namespace
}  // namespace pallwick
