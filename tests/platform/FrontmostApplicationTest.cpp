#include <PallwickMac/Platform/ProgramIdentity.h>
#include <gmock/gmock.h>
#include <support/FileDescriptor.h>
#include <support/TestClient.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>

#include "PlatformTest.h"

namespace pallwick::x11 {
namespace {

/// Both answers about the application in front.
struct FrontmostApplication {
    std::int32_t processID = 0;
    std::optional<std::string> bundleID;

    friend bool operator==(const FrontmostApplication&, const FrontmostApplication&) = default;
};

void PrintTo(const FrontmostApplication& application, std::ostream* stream) {
    *stream << application.processID << " " << application.bundleID.value_or("(no identifier)").substr(0, 200);
}

using support::Process;
using support::TestClient;
using support::WindowManager;
using ::testing::AnyOf;
using ::testing::Eq;
using ::testing::SizeIs;

class FrontmostApplicationTest : public PlatformTest {
protected:
    void addDesktopFile(const std::string& id, const std::string& lines) {
        const std::filesystem::path folder = desktop().dataHome() / "applications";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / (id + ".desktop")) << "[Desktop Entry]\nType=Application\nName=Test\n" << lines;
    }

    [[nodiscard]] std::unique_ptr<TestClient> makeClient(const std::string& windowClass) {
        return std::make_unique<TestClient>(desktop(),
                                            TestClient::Options{.title = windowClass, .windowClass = windowClass});
    }

    [[nodiscard]] std::unique_ptr<Process> startRestlessClient() {
        auto process = desktop().start({PALLWICK_RESTLESS_CLIENT});
        process->readLine();
        return process;
    }

    /// None where the process is not known.
    [[nodiscard]] std::optional<FrontmostApplication> frontmostApplication() {
        const std::optional<std::int32_t> processID = platform().frontmostProcessID();
        return processID ? std::optional(FrontmostApplication{.processID = *processID,
                                                              .bundleID = platform().frontmostBundleID()})
                         : std::nullopt;
    }

    static FrontmostApplication application(TestClient& client, const std::string& bundleID) {
        return {.processID = client.process().pid(), .bundleID = bundleID};
    }
};

TEST_F(FrontmostApplicationTest, IsNoneBeforeAnyWas) {
    startDesktop();
    startPlatform();

    EXPECT_EQ(frontmostApplication(), std::nullopt);
}

TEST_F(FrontmostApplicationTest, IsTheOwnerOfTheWindowThatTheWindowManagerActivated) {
    startDesktop({.windowManager = WindowManager::openbox});
    const auto paint = makeClient("paint");
    const auto write = makeClient("write");
    startPlatform();

    desktop().windows().activate(paint->window());
    EXPECT_EQ(frontmostApplication(), application(*paint, "paint"));

    desktop().windows().activate(write->window());
    EXPECT_EQ(frontmostApplication(), application(*write, "write"));
}

TEST_F(FrontmostApplicationTest, IsNamedAfterTheDesktopFileThatKnowsItsClass) {
    startDesktop();
    addDesktopFile("org.example.Paint", "StartupWMClass=Paint-gtk3\n");
    const auto client = makeClient("paint-gtk3");
    startPlatform();

    setActiveWindow(client->window());

    EXPECT_EQ(frontmostApplication(), application(*client, "org.example.Paint"));
}

TEST_F(FrontmostApplicationTest, IsNamedAsItsToolkitSaysBeforeItsClass) {
    startDesktop();
    addDesktopFile("org.example.Paint", "StartupWMClass=paint\n");
    const auto client = makeClient("paint");
    startPlatform();

    setBytes(client->window(), "_GTK_APPLICATION_ID", "UTF8_STRING", "org.gtk.Paint");
    setActiveWindow(client->window());

    EXPECT_EQ(frontmostApplication(), application(*client, "org.gtk.Paint"));
}

struct DesktopFileName {
    std::string property;
    std::string id;
};

class EveryDesktopFileName : public FrontmostApplicationTest, public ::testing::WithParamInterface<DesktopFileName> {};

INSTANTIATE_TEST_SUITE_P(Names, EveryDesktopFileName,
                         ::testing::Values(DesktopFileName{"org.kde.paint", "org.kde.paint"},
                                           DesktopFileName{"org.kde.paint.desktop", "org.kde.paint"},
                                           DesktopFileName{"/usr/share/applications/org.kde.paint.desktop",
                                                           "org.kde.paint"}));

TEST_P(EveryDesktopFileName, NamesTheApplicationBeforeItsClass) {
    startDesktop();
    const auto client = makeClient("paint");
    startPlatform();

    setBytes(client->window(), "_KDE_NET_WM_DESKTOP_FILE", "UTF8_STRING", GetParam().property);
    setActiveWindow(client->window());

    EXPECT_EQ(frontmostApplication(), application(*client, GetParam().id));
}

TEST_F(FrontmostApplicationTest, IsNamedAfterItsClassWhereNoDesktopFileFits) {
    startDesktop();
    addDesktopFile("org.example.Paint", "StartupWMClass=other\n");
    const auto client = makeClient("Unknown-Program");
    startPlatform();

    setActiveWindow(client->window());

    EXPECT_EQ(frontmostApplication(), application(*client, "Unknown-Program"));
}

TEST_F(FrontmostApplicationTest, HasNoNameWhereItsWindowSaysNothing) {
    startDesktop();
    const auto client = makeClient("paint");
    startPlatform();

    xcb_delete_property(x().get(), client->window(), XCB_ATOM_WM_CLASS);
    setActiveWindow(client->window());

    EXPECT_EQ(frontmostApplication(),
              (FrontmostApplication{.processID = client->process().pid(), .bundleID = std::nullopt}));
}

TEST_F(FrontmostApplicationTest, IsTheProcessThatTheServerNamesWhateverTheWindowClaims) {
    startDesktop();
    const auto client = makeClient("liar");
    startPlatform();

    setCardinals(client->window(), "_NET_WM_PID", XCB_ATOM_CARDINAL, {1});
    setActiveWindow(client->window());

    EXPECT_EQ(frontmostApplication(), application(*client, "liar"));
}

TEST_F(FrontmostApplicationTest, IsTheProcessThatTheWindowClaimsWhereTheServerCannotTell) {
    startDesktop({.server = {.arguments = {"-extension", "X-Resource"}}});
    const auto client = makeClient("paint");
    startPlatform();

    setCardinals(client->window(), "_NET_WM_PID", XCB_ATOM_CARDINAL, {4711});
    setActiveWindow(client->window());

    EXPECT_EQ(frontmostApplication(), (FrontmostApplication{.processID = 4711, .bundleID = "paint"}));
}

class EveryImpossibleProcess : public FrontmostApplicationTest, public ::testing::WithParamInterface<std::uint32_t> {};

INSTANTIATE_TEST_SUITE_P(Numbers, EveryImpossibleProcess, ::testing::Values(0U, 0x80000000U, 0xFFFFFFFFU));

TEST_P(EveryImpossibleProcess, CountsAsNone) {
    startDesktop({.server = {.arguments = {"-extension", "X-Resource"}}});
    const auto client = makeClient("paint");
    startPlatform();

    setCardinals(client->window(), "_NET_WM_PID", XCB_ATOM_CARDINAL, {GetParam()});
    setActiveWindow(client->window());

    EXPECT_EQ(frontmostApplication(), std::nullopt);
}

TEST_F(FrontmostApplicationTest, IsNobodyWhereTheClaimedProcessIsNoNumber) {
    startDesktop({.server = {.arguments = {"-extension", "X-Resource"}}});
    const auto client = makeClient("paint");
    startPlatform();

    setBytes(client->window(), "_NET_WM_PID", "CARDINAL", "4711");
    setActiveWindow(client->window());

    EXPECT_EQ(frontmostApplication(), std::nullopt);
}

TEST_F(FrontmostApplicationTest, IsOurselvesByOurOwnName) {
    startDesktop();
    startPlatform();
    const xcb_window_t ours = makeWindow({.x = 0, .y = 0, .width = 100, .height = 100});
    setBytes(ours, "WM_CLASS", "STRING", std::string("other\0Other\0", 12));

    setActiveWindow(ours);

    EXPECT_EQ(frontmostApplication(),
              (FrontmostApplication{.processID = ::getpid(), .bundleID = std::string(programBundleID)}));
}

TEST_F(FrontmostApplicationTest, StaysWhoItWasWhileNoWindowIsActive) {
    startDesktop();
    const auto client = makeClient("paint");
    startPlatform();
    setActiveWindow(client->window());
    ASSERT_EQ(frontmostApplication(), application(*client, "paint"));

    setActiveWindow(support::noWindow);

    EXPECT_EQ(frontmostApplication(), application(*client, "paint"));
}

TEST_F(FrontmostApplicationTest, IsRememberedThoughNobodyAskedWhileItWasInFront) {
    startDesktop();
    const auto client = makeClient("paint");
    startPlatform();

    setActiveWindow(client->window());
    settle();
    setActiveWindow(support::noWindow);

    EXPECT_EQ(frontmostApplication(), application(*client, "paint"));
}

TEST_F(FrontmostApplicationTest, IsTheOneInFrontWhenThePlatformWasMade) {
    startDesktop();
    const auto client = makeClient("paint");
    setActiveWindow(client->window());
    startPlatform();

    xcb_delete_property(x().get(), x().root(), x().atom("_NET_ACTIVE_WINDOW"));
    x().roundTrip();

    EXPECT_EQ(frontmostApplication(), application(*client, "paint"));
}

TEST_F(FrontmostApplicationTest, IsNobodyOnceTheProcessIsGone) {
    startDesktop();
    const auto client = makeClient("paint");
    startPlatform();
    setActiveWindow(client->window());
    ASSERT_EQ(frontmostApplication(), application(*client, "paint"));

    client->process().kill();
    setActiveWindow(support::noWindow);

    EXPECT_EQ(frontmostApplication(), std::nullopt);
}

TEST_F(FrontmostApplicationTest, StaysWhoItWasWhereTheActiveWindowHasVanished) {
    startDesktop();
    const auto client = makeClient("paint");
    startPlatform();
    setActiveWindow(client->window());
    ASSERT_EQ(frontmostApplication(), application(*client, "paint"));

    const auto shortLived = makeClient("short-lived");
    setActiveWindow(shortLived->window());
    shortLived->process().kill();

    EXPECT_EQ(frontmostApplication(), application(*client, "paint"));
}

TEST_F(FrontmostApplicationTest, IsNotWhoItWasWhereTheActiveWindowHasNoKnownProcess) {
    startDesktop({.server = {.arguments = {"-extension", "X-Resource"}}});
    const auto paint = makeClient("paint");
    const auto distant = makeClient("distant");
    startPlatform();
    setActiveWindow(paint->window());
    ASSERT_EQ(frontmostApplication(), application(*paint, "paint"));

    xcb_delete_property(x().get(), distant->window(), x().atom("_NET_WM_PID"));
    setActiveWindow(distant->window());

    EXPECT_EQ(platform().frontmostProcessID(), std::nullopt);
    EXPECT_EQ(platform().frontmostBundleID(), "distant");
}

TEST_F(FrontmostApplicationTest, IsNobodyOnceAWindowWithoutAKnownProcessIsNoLongerActive) {
    startDesktop({.server = {.arguments = {"-extension", "X-Resource"}}});
    const auto distant = makeClient("distant");
    startPlatform();
    xcb_delete_property(x().get(), distant->window(), x().atom("_NET_WM_PID"));
    setActiveWindow(distant->window());
    ASSERT_EQ(platform().frontmostBundleID(), "distant");

    setActiveWindow(support::noWindow);

    EXPECT_EQ(platform().frontmostBundleID(), std::nullopt);
}

TEST_F(FrontmostApplicationTest, IsKnownByItsProcessWithoutALookAtDesktopFiles) {
    startDesktop();
    addDesktopFile("org.example.Paint", "StartupWMClass=paint\n");
    const auto client = makeClient("paint");
    setActiveWindow(client->window());
    const support::FileDescriptor watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    ASSERT_GE(::inotify_add_watch(watch.get(), (desktop().dataHome() / "applications").c_str(), IN_OPEN), 0);
    startPlatform();
    std::array<char, 4096> events{};

    EXPECT_EQ(platform().frontmostProcessID(), client->process().pid());
    EXPECT_EQ(::read(watch.get(), events.data(), events.size()), -1) << "a desktop file was looked for";
    EXPECT_EQ(platform().frontmostBundleID(), "org.example.Paint");
    EXPECT_GT(::read(watch.get(), events.data(), events.size()), 0) << "this test would see nothing";
}

TEST_F(FrontmostApplicationTest, KeepsItsNameWhileItsActiveWindowVanishes) {
    startDesktop();
    const auto client = makeClient("paint");
    startPlatform();
    setActiveWindow(client->window());
    ASSERT_EQ(frontmostApplication(), application(*client, "paint"));

    // A window that this client once had: the server still knows the client by its number, but no property of it.
    setActiveWindow(client->window() + 100);

    EXPECT_EQ(frontmostApplication(), application(*client, "paint"));
}

TEST_F(FrontmostApplicationTest, IsNobodyWhereTheActiveWindowIsNoWindow) {
    startDesktop();
    startPlatform();

    setBytes(x().root(), "_NET_ACTIVE_WINDOW", "WINDOW", "text");
    EXPECT_EQ(frontmostApplication(), std::nullopt);

    setCardinals(x().root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_CARDINAL, {x().root()});
    EXPECT_EQ(frontmostApplication(), std::nullopt);
}

TEST_F(FrontmostApplicationTest, CanBeAskedForWhileWindowsComeAndGo) {
    startDesktop();
    startPlatform();
    const auto restless = startRestlessClient();
    const FrontmostApplication named{.processID = restless->pid(), .bundleID = "Restless"};
    const FrontmostApplication tooLateForTheName{.processID = restless->pid(), .bundleID = std::nullopt};

    std::vector<std::optional<FrontmostApplication>> answers;
    std::generate_n(std::back_inserter(answers), 3000, [this] { return frontmostApplication(); });
    settle();

    EXPECT_THAT(answers, ::testing::Each(AnyOf(Eq(std::nullopt), Eq(named), Eq(tooLateForTheName))));
    EXPECT_THAT(answers, ::testing::Contains(Eq(named)));
    EXPECT_THAT(platform().screens(), SizeIs(1));
}

struct HostileText {
    std::string what;
    std::string property;
    std::string type;
    std::string value;
    std::string bundleID;
};

void PrintTo(const HostileText& text, std::ostream* stream) {
    *stream << text.what;
}

class EveryHostileText : public FrontmostApplicationTest, public ::testing::WithParamInterface<HostileText> {};

using namespace std::string_literals;

INSTANTIATE_TEST_SUITE_P(
    Texts, EveryHostileText,
    ::testing::Values(
        HostileText{"a megabyte", "_GTK_APPLICATION_ID", "UTF8_STRING", std::string(1U << 20U, 'x'),
                    std::string(4096, 'x')},
        HostileText{"a megabyte cut within a character", "_GTK_APPLICATION_ID", "UTF8_STRING",
                    "x" + std::string(1U << 20U, '\xC3'),
                    "x" +
                        [] {
                            std::string text;
                            for (int i = 0; i < 4094; ++i) {
                                text += "\uFFFD";
                            }
                            return text;
                        }()},
        HostileText{"a megabyte of class", "WM_CLASS", "STRING", std::string(1U << 20U, 'x'), std::string(4096, 'x')},
        HostileText{"bad UTF-8", "_GTK_APPLICATION_ID", "UTF8_STRING", "org.\xFF.Paint", "org.\uFFFD.Paint"},
        HostileText{"control characters", "_KDE_NET_WM_DESKTOP_FILE", "UTF8_STRING", "org\n.Paint\0"s, "org .Paint "},
        HostileText{"another type", "_GTK_APPLICATION_ID", "STRING", "org.example.Paint", "org.example.Paint"},
        HostileText{"an empty identifier", "_GTK_APPLICATION_ID", "UTF8_STRING", "", "paint"},
        HostileText{"an ending and nothing else", "_KDE_NET_WM_DESKTOP_FILE", "UTF8_STRING", ".desktop", "paint"},
        HostileText{"a folder", "_KDE_NET_WM_DESKTOP_FILE", "UTF8_STRING", "/usr/share/", "paint"},
        HostileText{"a class without an end", "WM_CLASS", "STRING", "instance\0Class"s, "Class"},
        HostileText{"an instance without a class", "WM_CLASS", "STRING", "instance\0"s, "instance"},
        HostileText{"one text", "WM_CLASS", "STRING", "single", "single"},
        HostileText{"three texts", "WM_CLASS", "STRING", "one\0Two\0Three\0"s, "Two"},
        HostileText{"a class beyond ASCII", "WM_CLASS", "STRING", "m\0M\xFCnchen\0"s, "M\u00FCnchen"}));

TEST_P(EveryHostileText, IsCleaned) {
    startDesktop();
    const auto client = makeClient("paint");
    startPlatform();

    setBytes(client->window(), GetParam().property, GetParam().type, GetParam().value);
    setActiveWindow(client->window());

    EXPECT_EQ(frontmostApplication(), application(*client, GetParam().bundleID));
    EXPECT_THAT(platform().screens(), SizeIs(1));
}

TEST_F(FrontmostApplicationTest, IgnoresAnIdentifierOfNumbers) {
    startDesktop();
    const auto client = makeClient("paint");
    startPlatform();

    setCardinals(client->window(), "_GTK_APPLICATION_ID", XCB_ATOM_CARDINAL, {1, 2, 3});
    setCardinals(client->window(), "_KDE_NET_WM_DESKTOP_FILE", XCB_ATOM_CARDINAL, {});
    setActiveWindow(client->window());

    EXPECT_EQ(frontmostApplication(), application(*client, "paint"));
}

TEST_F(FrontmostApplicationTest, HasNoNameWhereItsClassIsBlank) {
    startDesktop();
    const auto client = makeClient("paint");
    startPlatform();

    setBytes(client->window(), "WM_CLASS", "STRING", "\0\0"s);
    setActiveWindow(client->window());

    EXPECT_EQ(frontmostApplication(),
              (FrontmostApplication{.processID = client->process().pid(), .bundleID = std::nullopt}));
}

}  // namespace
}  // namespace pallwick::x11
