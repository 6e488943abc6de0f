#include <PallwickMacCore/Stores/FileError.h>
#include <gtest/gtest.h>

namespace pallwick {
namespace {

constexpr auto diskFull = std::errc::no_space_on_device;

TEST(FileError, IsACoreErrorThatKeepsItsParts) {
    const FileError error(FileError::Operation::write, "/data/Pallwick/presets.json", std::make_error_code(diskFull));

    const CoreError& base = error;

    EXPECT_STREQ(base.what(), "presets.json could not be written: No space left on device");
    EXPECT_EQ(error.operation(), FileError::Operation::write);
    EXPECT_EQ(error.path(), "/data/Pallwick/presets.json");
    EXPECT_EQ(error.systemError(), diskFull);
}

TEST(FileError, SaysWhatCouldNotBeDone) {
    const auto what = [](FileError::Operation operation) {
        return std::string(FileError(operation, "a", std::make_error_code(std::errc::permission_denied)).what());
    };

    EXPECT_EQ(what(FileError::Operation::find), "a could not be found: Permission denied");
    EXPECT_EQ(what(FileError::Operation::create), "a could not be created: Permission denied");
    EXPECT_EQ(what(FileError::Operation::read), "a could not be read: Permission denied");
    EXPECT_EQ(what(FileError::Operation::write), "a could not be written: Permission denied");
}

TEST(FileError, StaysOnOneLineWhateverTheName) {
    EXPECT_STREQ(FileError(FileError::Operation::read, "/data/a\n\x1B[2Jb", std::make_error_code(diskFull)).what(),
                 "a\xEF\xBF\xBD\xEF\xBF\xBD[2Jb could not be read: No space left on device");
}

TEST(FileError, NamesAPathWithoutALastComponentWhole) {
    EXPECT_STREQ(FileError(FileError::Operation::create, "/", std::make_error_code(diskFull)).what(),
                 "/ could not be created: No space left on device");
}

}  // namespace
}  // namespace pallwick
