#include <PallwickMac/Platform/PlatformFactory.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <gmock/gmock.h>
#include <support/PrivateXServer.h>

#include <cstdlib>
#include <string>

namespace pallwick::x11 {
namespace {

using support::PrivateXServer;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

/// What a person is told; empty where the connection is made.
std::string complaint(const std::string& display) {
    ::setenv("DISPLAY", display.c_str(), 1);
    try {
        const Connection connection;
        return {};
    } catch (const PlatformUnavailable& error) {
        return error.what();
    }
}

std::string complaintWithout(const std::string& extension) {
    const PrivateXServer server({.arguments = {"-extension", extension}});
    return complaint(server.display());
}

TEST(Connection, IsMadeToAPlainServer) {
    const PrivateXServer server({});

    EXPECT_EQ(complaint(server.display()), "");
}

TEST(Connection, SaysThatThereIsNoDisplay) {
    ::unsetenv("DISPLAY");

    EXPECT_THROW(
        {
            try {
                const Connection connection;
            } catch (const PlatformUnavailable& error) {
                EXPECT_STREQ(error.what(), "no X display: the environment variable DISPLAY is not set");
                throw;
            }
        },
        PlatformUnavailable);
}

TEST(Connection, TakesAnEmptyDisplayForNone) {
    EXPECT_EQ(complaint(""), "no X display: the environment variable DISPLAY is not set");
}

TEST(Connection, SaysThatNoServerAnswers) {
    EXPECT_EQ(complaint(":4711"), "no X server answers at DISPLAY=:4711");
}

TEST(Connection, SaysThatNoServerAnswersAtWhatIsNoDisplay) {
    EXPECT_EQ(complaint("nonsense"), "no X server answers at DISPLAY=nonsense");
}

TEST(Connection, IsNotMadeToAScreenThatTheServerLacks) {
    const PrivateXServer server({});

    EXPECT_THAT(complaint(server.display() + ".7"), HasSubstr("DISPLAY=" + server.display() + ".7"));
}

struct Extension {
    std::string name;
    std::string complaint;
};

class EveryNeededExtension : public ::testing::TestWithParam<Extension> {};

// Xvfb cannot do without Shape; what depends on it is checked in the same way.
INSTANTIATE_TEST_SUITE_P(Extensions, EveryNeededExtension,
                         ::testing::Values(Extension{"RANDR", "the RandR extension"},
                                           Extension{"XFIXES", "the XFixes extension"},
                                           Extension{"RENDER", "the Render extension"},
                                           Extension{"Composite", "the Composite extension"},
                                           Extension{"DAMAGE", "the Damage extension"}),
                         [](const auto& instance) { return instance.param.name; });

TEST_P(EveryNeededExtension, IsNamedInOneLineWhereItIsMissing) {
    EXPECT_THAT(complaintWithout(GetParam().name),
                AllOf(HasSubstr("the X server at DISPLAY=:"),
                      HasSubstr(" lacks " + GetParam().complaint + ", which is needed to cover windows"),
                      Not(HasSubstr("\n"))));
}

TEST(Connection, DoesWithoutTheExtensionThatNamesProcesses) {
    const PrivateXServer server({.arguments = {"-extension", "X-Resource"}});
    ::setenv("DISPLAY", server.display().c_str(), 1);

    const Connection connection;

    EXPECT_FALSE(connection.hasClientIDs());
}

TEST(Connection, KnowsWhetherTheServerNamesProcesses) {
    const PrivateXServer server({});
    ::setenv("DISPLAY", server.display().c_str(), 1);

    const Connection connection;

    EXPECT_TRUE(connection.hasClientIDs());
}

TEST(Connection, NoticesThatTheServerIsGone) {
    PrivateXServer server({});
    ::setenv("DISPLAY", server.display().c_str(), 1);
    const Connection connection;
    ASSERT_FALSE(connection.isBroken());

    server.kill();
    static_cast<void>(internAtom(connection.xcb(), "_PALLWICK_TEST"));

    EXPECT_TRUE(connection.isBroken());
}

TEST(PreparePlatform, RefusesADesktopThatIsNotThere) {
    ::setenv("DISPLAY", ":4711", 1);

    EXPECT_THROW(preparePlatform(), PlatformUnavailable);
}

TEST(PreparePlatform, MakesTheToolkitUseTheServerInAWaylandSessionToo) {
    const PrivateXServer server({});
    ::setenv("DISPLAY", server.display().c_str(), 1);
    ::setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    ::setenv("QT_QPA_PLATFORM", "wayland", 1);

    preparePlatform();

    EXPECT_STREQ(std::getenv("QT_QPA_PLATFORM"), "xcb");
}

}  // namespace
}  // namespace pallwick::x11
