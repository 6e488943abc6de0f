#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <support/Program.h>
#include <support/TestClient.h>

namespace pallwick::support {
namespace {

struct Scale {
    std::string name;
    double value = 1;
    Program::ScaleSource source = Program::ScaleSource::qtScaleFactor;
};

class ProgramAtScale : public testing::TestWithParam<Scale> {};

INSTANTIATE_TEST_SUITE_P(Scales, ProgramAtScale,
                         testing::Values(Scale{"one", 1, Program::ScaleSource::qtScaleFactor},
                                         Scale{"oneAndAHalf", 1.5, Program::ScaleSource::qtScaleFactor},
                                         Scale{"two", 2, Program::ScaleSource::qtScaleFactor},
                                         Scale{"twoByXftDpi", 2, Program::ScaleSource::xftDpi}),
                         [](const auto& instance) { return instance.param.name; });

TEST_P(ProgramAtScale, IsClickedWhereItsControlsAre) {
    PrivateDesktop desktop({.server = {.width = 2560, .height = 1600}});
    Program program(desktop, {.scale = GetParam().value, .scaleSource = GetParam().source});
    program.awaitMainWindow();

    program.click("Add");

    EXPECT_EQ(program.awaitOverlayCount(1).size(), 1U);
}

TEST(Program, IsToldAsideFromOtherWindowsOverlays) {
    PrivateDesktop desktop({});
    TestClient other(desktop, {.windowClass = "other", .overrideRedirect = true});
    Program program(desktop);
    program.awaitMainWindow();

    EXPECT_TRUE(program.overlays().empty());
}

TEST(Program, EndsWellWhenItsMainWindowIsClosed) {
    PrivateDesktop desktop({});
    Program program(desktop);
    program.awaitMainWindow();

    EXPECT_EQ(program.quit(), ExitStatus{});
}

TEST(Program, FailsTheTestWhenItWritesUnasked) {
    PrivateDesktop desktop({});
    auto program = std::make_unique<Program>(desktop, Program::Options{.environment = {{"QT_DEBUG_PLUGINS", "1"}}});
    program->awaitMainWindow();

    testing::TestPartResultArray failures;
    {
        const testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
        program.reset();
    }

    EXPECT_GT(failures.size(), 0);
}

TEST(Program, MayWriteWhatIsAllowed) {
    PrivateDesktop desktop({});
    Program program(desktop, {.environment = {{"QT_DEBUG_PLUGINS", "1"}}, .allowedOutput = {".*"}});
    program.awaitMainWindow();

    EXPECT_TRUE(program.unexpectedOutput().empty());
}

TEST(Program, StopsAWaitWhenItDies) {
    PrivateDesktop desktop({});
    Program program(desktop);
    program.awaitMainWindow();
    program.process().kill();

    EXPECT_THROW(program.awaitOverlayCount(5), Timeout);
}

}  // namespace
}  // namespace pallwick::support
