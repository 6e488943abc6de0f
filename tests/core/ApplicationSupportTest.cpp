#include <PallwickMacCore/Stores/ApplicationSupport.h>
#include <PallwickMacCore/Stores/FileError.h>
#include <gtest/gtest.h>

namespace pallwick {
namespace {

TEST(ApplicationSupport, IsWhereTheEnvironmentSays) {
    EXPECT_EQ(applicationSupportDirectory({.dataHome = "/data", .home = "/home/a", .homeOfUser = "/home/b"}), "/data");
}

TEST(ApplicationSupport, IsInTheHomeDirectoryWhereTheEnvironmentSaysNothing) {
    EXPECT_EQ(applicationSupportDirectory({.dataHome = {}, .home = "/home/a", .homeOfUser = "/home/b"}),
              "/home/a/.local/share");
}

TEST(ApplicationSupport, TakesAnEmptyOrRelativePathForNone) {
    EXPECT_EQ(applicationSupportDirectory({.dataHome = "", .home = "/home/a", .homeOfUser = {}}),
              "/home/a/.local/share");
    EXPECT_EQ(applicationSupportDirectory({.dataHome = "data", .home = "/home/a", .homeOfUser = {}}),
              "/home/a/.local/share");
    EXPECT_EQ(applicationSupportDirectory({.dataHome = {}, .home = "", .homeOfUser = "/home/b"}),
              "/home/b/.local/share");
    EXPECT_EQ(applicationSupportDirectory({.dataHome = {}, .home = "~", .homeOfUser = "/home/b"}),
              "/home/b/.local/share");
}

TEST(ApplicationSupport, IsInTheHomeOfTheUserListWithoutAnEnvironment) {
    EXPECT_EQ(applicationSupportDirectory({.dataHome = {}, .home = {}, .homeOfUser = "/home/b"}),
              "/home/b/.local/share");
}

TEST(ApplicationSupport, FailsWhereNoHomeIsKnown) {
    try {
        static_cast<void>(applicationSupportDirectory({}));
        ADD_FAILURE() << "found a directory";
    } catch (const FileError& error) {
        EXPECT_EQ(error.operation(), FileError::Operation::find);
        EXPECT_STREQ(error.what(), "home directory could not be found: No such file or directory");
    }
}

}  // namespace
}  // namespace pallwick
