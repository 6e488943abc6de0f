// Where the program cannot run it says why, in one line, and ends in good order.

#include <gmock/gmock.h>
#include <support/Program.h>

#include <csignal>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Environment;
using support::ExitStatus;
using support::PrivateDesktop;
using support::PrivateXServer;
using support::Process;
using support::Program;
using testing::AllOf;
using testing::HasSubstr;
using testing::MatchesRegex;

constexpr ExitStatus failure{.code = 1, .signal = 0};

Environment bareEnvironment() {
    return {{"PATH", "/usr/bin:/bin"}, {"LANG", "C.UTF-8"}, {"HOME", "/nonexistent"}};
}

/// One line, ended, that names the program.
auto isOneLineThat(const testing::Matcher<const std::string&>& says) {
    return AllOf(MatchesRegex("pallwick: [^\n]+\n"), says);
}

class Startup : public testing::Test {
protected:
    static void expectFailure(const Environment& environment, const testing::Matcher<const std::string&>& says) {
        Process program({PALLWICK_PROGRAM}, {.environment = environment, .descriptors = {}});

        EXPECT_EQ(program.awaitExit(), failure);
        EXPECT_THAT(program.standardError(), isOneLineThat(says));
    }
};

TEST_F(Startup, FailsWhereNoDisplayIsNamed) {
    expectFailure(bareEnvironment(), HasSubstr("DISPLAY"));
}

TEST_F(Startup, FailsWhereTheDisplaysNameIsEmpty) {
    Environment environment = bareEnvironment();
    environment["DISPLAY"] = "";

    expectFailure(environment, HasSubstr("DISPLAY"));
}

TEST_F(Startup, FailsWhereNoServerIsBehindTheDisplay) {
    Environment environment = bareEnvironment();
    environment["DISPLAY"] = ":59999";

    expectFailure(environment, HasSubstr(":59999"));
}

TEST_F(Startup, FailsWhereTheDisplaysNameMakesNoSense) {
    Environment environment = bareEnvironment();
    environment["DISPLAY"] = "no such thing";

    expectFailure(environment, HasSubstr("no such thing"));
}

TEST_F(Startup, FailsWhereTheNamedScreenDoesNotExist) {
    const PrivateXServer server({});
    Environment environment = bareEnvironment();
    environment["DISPLAY"] = server.display() + ".7";

    expectFailure(environment, HasSubstr(server.display() + ".7"));
}

struct Extension {
    const char* name;
    /// As the message calls it.
    const char* called;
};

class MissingExtension : public Startup, public testing::WithParamInterface<Extension> {};

TEST_P(MissingExtension, IsNamed) {
    const PrivateXServer server({.arguments = {"-extension", GetParam().name}});
    Environment environment = bareEnvironment();
    environment["DISPLAY"] = server.display();

    expectFailure(environment, HasSubstr(GetParam().called));
}

// Shape, the fifth, is not to be switched off in this server.
INSTANTIATE_TEST_SUITE_P(Needed, MissingExtension,
                         testing::Values(Extension{"RANDR", "RandR"}, Extension{"Composite", "Composite"},
                                         Extension{"RENDER", "Render"}, Extension{"XFIXES", "XFixes"}),
                         [](const auto& instance) { return std::string(instance.param.name); });

class LostServer : public testing::TestWithParam<int> {};

TEST_P(LostServer, EndsTheProgramWithOneLine) {
    Stage stage(DesktopKind::openbox, {.allowedOutput = {"pallwick: .*"}});
    stage.add();
    stage.dragBy(stage.add(), {.x = 30, .y = 30});
    stage.desktop().x().release(stage.program().process());

    stage.desktop().server().kill();

    EXPECT_EQ(stage.program().process().awaitExit(), failure);
    EXPECT_THAT(stage.program().process().standardError(), isOneLineThat(HasSubstr("X server")));
}

// What ends first is a race between the program's two connections, so it is run several times.
INSTANTIATE_TEST_SUITE_P(Times, LostServer, testing::Range(1, 6));

TEST(SessionEnd, IsNotHeldUpByAProgramWithoutAWindow) {
    Stage stage(DesktopKind::openbox);
    stage.add();
    stage.program().closeMainWindow();
    stage.desktop().x().release(stage.program().process());

    stage.program().process().signal(SIGTERM);

    EXPECT_EQ(stage.program().process().awaitExit(), (ExitStatus{.code = 0, .signal = SIGTERM}));
}

TEST(WaylandSession, HasTheProgramOnItsXServer) {
    PrivateDesktop desktop(
        {.environment = {
             {"WAYLAND_DISPLAY", "wayland-0"}, {"QT_QPA_PLATFORM", "wayland"}, {"XDG_SESSION_TYPE", "wayland"}}});
    Program program(desktop);

    program.awaitMainWindow();
    program.controls().await("push button", "Add").doAction("Press");

    EXPECT_EQ(program.awaitOverlayCount(1).front().rect, (support::PixelRect{460, 320, 360, 160}));
    EXPECT_EQ(program.quit(), ExitStatus{});
}

}  // namespace
}  // namespace pallwick::desktop
