#include "PresetDirectory.h"

#include <PallwickMacCore/Stores/PresetStore.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pallwick {
namespace {

TEST(PresetStoreRace, OfSeveralProcessesNeverMixesTheirBytes) {
    constexpr std::uint32_t processes = 4;
    constexpr int saves = 25;
    const test::PresetDirectory directory;
    std::vector<pid_t> children;
    for (std::uint32_t i = 0; i < processes; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            try {
                PresetStore store(directory.path());
                for (int n = 0; n < saves; ++n) {
                    store.save(test::overlays(static_cast<int>(10 + 10 * i)), PresetScope::screen(i));
                }
            } catch (const std::exception&) {
                ::_exit(1);
            }
            ::_exit(0);
        }
        children.push_back(child);
    }

    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }

    const PresetStore store(directory.path());
    for (std::uint32_t i = 0; i < processes; ++i) {
        EXPECT_THAT(store.load(PresetScope::screen(i)),
                    testing::AnyOf(testing::IsEmpty(), testing::Eq(test::overlays(static_cast<int>(10 + 10 * i)))));
    }
    EXPECT_THAT(directory.names(), testing::ElementsAre("presets.json"));
}

}  // namespace
}  // namespace pallwick
