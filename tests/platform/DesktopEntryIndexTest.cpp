#include <PallwickMac/Platform/Freedesktop/DesktopEntryIndex.h>
#include <gmock/gmock.h>
#include <support/TemporaryDirectory.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace pallwick::freedesktop {
namespace {

namespace fs = std::filesystem;

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A folder of desktop files for one test.
class Applications {
public:
    explicit Applications(const fs::path& path) : path_(path) { fs::create_directories(path_); }

    [[nodiscard]] const fs::path& path() const { return path_; }

    /// `lines` are those of the main group.
    void add(const fs::path& name, const std::string& lines) const { write(name, "[Desktop Entry]\n" + lines); }

    void write(const fs::path& name, const std::string& content) const {
        fs::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary) << content;
    }

    /// Changes within one tick of the file system's clock would share a time.
    void advanceTime(const fs::path& folder = {}) const {
        const fs::path changed = folder.empty() ? path_ : path_ / folder;
        fs::last_write_time(changed, fs::last_write_time(changed) + std::chrono::seconds(1));
    }

private:
    fs::path path_;
};

class DesktopEntryIndexTest : public ::testing::Test {
protected:
    support::TemporaryDirectory directory_;
    Applications user_{directory_.path() / "user"};
    Applications system_{directory_.path() / "system"};
    DesktopEntryIndex index_{{user_.path(), directory_.path() / "missing", system_.path()}};
};

TEST_F(DesktopEntryIndexTest, FindsAnEntryByItsStartupClass) {
    user_.add("org.example.Paint.desktop", "Type=Application\nStartupWMClass=paint-gtk\n");

    EXPECT_EQ(index_.idForWindowClass("paint-gtk"), "org.example.Paint");
}

TEST_F(DesktopEntryIndexTest, FindsAnEntryByItsId) {
    user_.add("org.example.Paint.desktop", "");

    EXPECT_EQ(index_.idForWindowClass("org.example.Paint"), "org.example.Paint");
}

TEST_F(DesktopEntryIndexTest, FindsAnEntryByTheLastPartOfItsId) {
    user_.add("org.example.Paint.desktop", "");

    EXPECT_EQ(index_.idForWindowClass("Paint"), "org.example.Paint");
}

TEST_F(DesktopEntryIndexTest, FindsAnEntryByItsProgram) {
    user_.add("org.example.Painting.desktop", "Exec=/opt/paint/bin/paint-3 --new-window %U\n");

    EXPECT_EQ(index_.idForWindowClass("paint-3"), "org.example.Painting");
}

TEST_F(DesktopEntryIndexTest, FindsAnEntryByItsQuotedProgram) {
    user_.add("org.example.Painting.desktop", "Exec=\"/opt/My Paint/paint 3\" %U\n");

    EXPECT_EQ(index_.idForWindowClass("paint 3"), "org.example.Painting");
}

TEST_F(DesktopEntryIndexTest, IgnoresLetterCase) {
    user_.add("org.example.Paint.desktop", "StartupWMClass=PaintApp\nExec=RunPaint\n");

    EXPECT_EQ(index_.idForWindowClass("paintAPP"), "org.example.Paint");
    EXPECT_EQ(index_.idForWindowClass("ORG.EXAMPLE.PAINT"), "org.example.Paint");
    EXPECT_EQ(index_.idForWindowClass("pAINT"), "org.example.Paint");
    EXPECT_EQ(index_.idForWindowClass("runpaint"), "org.example.Paint");
}

TEST_F(DesktopEntryIndexTest, TakesTheStartupClassBeforeAnId) {
    user_.add("paint.desktop", "");
    system_.add("zz.other.desktop", "StartupWMClass=paint\n");

    EXPECT_EQ(index_.idForWindowClass("paint"), "zz.other");
}

TEST_F(DesktopEntryIndexTest, TakesAWholeIdBeforeTheLastPartOfAnother) {
    user_.add("com.a.Viewer.desktop", "");
    system_.add("viewer.desktop", "");

    EXPECT_EQ(index_.idForWindowClass("viewer"), "viewer");
}

TEST_F(DesktopEntryIndexTest, KnowsTheUntranslatedName) {
    user_.add("org.example.Paint.desktop", "Name[de]=Malen\nName=Paint Shop\nGenericName=Painter\n");

    EXPECT_EQ(index_.nameOf("org.example.Paint"), "Paint Shop");
}

TEST_F(DesktopEntryIndexTest, KnowsNoNameOfAnEntryThatHasNone) {
    user_.add("blank.desktop", "Name=\n");
    user_.add("nameless.desktop", "");

    EXPECT_EQ(index_.nameOf("blank"), std::nullopt);
    EXPECT_EQ(index_.nameOf("nameless"), std::nullopt);
    EXPECT_EQ(index_.nameOf("missing"), std::nullopt);
    EXPECT_EQ(index_.nameOf(""), std::nullopt);
}

TEST_F(DesktopEntryIndexTest, TakesTheNameFromTheMoreImportantFolder) {
    user_.add("paint.desktop", "Name=Mine\n");
    system_.add("paint.desktop", "Name=Theirs\n");

    EXPECT_EQ(index_.nameOf("paint"), "Mine");
}

TEST_F(DesktopEntryIndexTest, UndoesTheEscapesOfAName) {
    user_.add("paint.desktop", "Name=\\sA\\\\B\\nC\\tD\\\n");

    EXPECT_EQ(index_.nameOf("paint"), " A\\B C D\\");
}

TEST_F(DesktopEntryIndexTest, TakesAnIdBeforeAProgram) {
    user_.add("aa.other.desktop", "Exec=paint\n");
    system_.add("paint.desktop", "");

    EXPECT_EQ(index_.idForWindowClass("paint"), "paint");
}

TEST_F(DesktopEntryIndexTest, TakesTheMoreImportantFolderFirst) {
    user_.add("zz.mine.desktop", "StartupWMClass=paint\n");
    system_.add("aa.theirs.desktop", "StartupWMClass=paint\n");

    EXPECT_EQ(index_.idForWindowClass("paint"), "zz.mine");
}

TEST_F(DesktopEntryIndexTest, MakesDashesOfSubfolders) {
    user_.add("kde/tools/paint.desktop", "StartupWMClass=painter\n");

    EXPECT_EQ(index_.idForWindowClass("painter"), "kde-tools-paint");
    EXPECT_EQ(index_.idForWindowClass("kde-tools-paint"), "kde-tools-paint");
}

TEST_F(DesktopEntryIndexTest, ReadsTheMainGroupAlone) {
    user_.write("paint.desktop",
                "# a comment=StartupWMClass\n[Desktop Action New]\nStartupWMClass=action\n[Desktop Entry]\n"
                "StartupWMClass=main\n[Other]\nStartupWMClass=other\n");

    EXPECT_EQ(index_.idForWindowClass("main"), "paint");
    EXPECT_EQ(index_.idForWindowClass("action"), std::nullopt);
    EXPECT_EQ(index_.idForWindowClass("other"), std::nullopt);
}

TEST_F(DesktopEntryIndexTest, AllowsBlanksAroundKeysAndLineEndsOfOtherSystems) {
    user_.write("paint.desktop", "  [Desktop Entry] \r\n StartupWMClass \t=  spaced out \r\n");

    EXPECT_EQ(index_.idForWindowClass("spaced out"), "paint");
}

TEST_F(DesktopEntryIndexTest, KnowsNothingOfAClassThatFitsNothing) {
    user_.add("org.example.Paint.desktop", "StartupWMClass=paint\nExec=paint\n");

    EXPECT_EQ(index_.idForWindowClass("example"), std::nullopt);
    EXPECT_EQ(index_.idForWindowClass("pain"), std::nullopt);
    EXPECT_EQ(index_.idForWindowClass(""), std::nullopt);
}

TEST_F(DesktopEntryIndexTest, KnowsNothingWhereThereIsNoFolder) {
    DesktopEntryIndex index({directory_.path() / "missing", "/dev/null", ""});

    EXPECT_EQ(index.idForWindowClass("paint"), std::nullopt);
}

TEST_F(DesktopEntryIndexTest, NoticesAnEntryThatIsAdded) {
    ASSERT_EQ(index_.idForWindowClass("paint"), std::nullopt);

    user_.add("org.example.Paint.desktop", "");
    user_.advanceTime();

    EXPECT_EQ(index_.idForWindowClass("paint"), "org.example.Paint");
}

TEST_F(DesktopEntryIndexTest, NoticesAnEntryThatIsRemoved) {
    user_.add("org.example.Paint.desktop", "");
    ASSERT_EQ(index_.idForWindowClass("paint"), "org.example.Paint");

    fs::remove(user_.path() / "org.example.Paint.desktop");
    user_.advanceTime();

    EXPECT_EQ(index_.idForWindowClass("paint"), std::nullopt);
}

TEST_F(DesktopEntryIndexTest, NoticesAFolderThatComesIntoBeing) {
    ASSERT_EQ(index_.idForWindowClass("paint"), std::nullopt);

    Applications(directory_.path() / "missing").add("org.example.Paint.desktop", "");

    EXPECT_EQ(index_.idForWindowClass("paint"), "org.example.Paint");
}

TEST_F(DesktopEntryIndexTest, NoticesAnEntryThatIsAddedToASubfolder) {
    user_.add("kde/other.desktop", "");
    ASSERT_EQ(index_.idForWindowClass("kde-paint"), std::nullopt);

    user_.add("kde/paint.desktop", "");
    user_.advanceTime("kde");

    EXPECT_EQ(index_.idForWindowClass("kde-paint"), "kde-paint");
}

TEST_F(DesktopEntryIndexTest, SurvivesBrokenFiles) {
    using namespace std::string_literals;
    user_.write("bytes.desktop", "\xFF\xFE\0\0[Desktop Entry]\0StartupWMClass=bytes\n"s);
    user_.write("quote.desktop", "[Desktop Entry]\nExec=\"unended\nStartupWMClass\n=\n==\n[\n]\n[Desktop Entry\n");
    user_.write("blank.desktop", "[Desktop Entry]\nExec=\nStartupWMClass=\n");
    user_.write("empty.desktop", "");
    user_.write("unfinished.desktop", "[Desktop Entry]\nStartupWMClass=unfinished");

    EXPECT_EQ(index_.idForWindowClass("unfinished"), "unfinished");
    EXPECT_EQ(index_.idForWindowClass("unended"), "quote");
    EXPECT_EQ(index_.idForWindowClass("empty"), "empty");
}

TEST_F(DesktopEntryIndexTest, PassesOverAFileThatIsTooLargeForADesktopFile) {
    user_.add("huge.desktop", "StartupWMClass=huge\n" + std::string(1U << 20U, 'x'));
    user_.add("paint.desktop", "StartupWMClass=painter\n");

    EXPECT_EQ(index_.idForWindowClass("huge"), std::nullopt);
    EXPECT_EQ(index_.idForWindowClass("painter"), "paint");
}

TEST_F(DesktopEntryIndexTest, ReadsOnlyRegularFilesWithTheRightEnding) {
    fs::create_directory(user_.path() / "folder.desktop");
    ASSERT_EQ(::mkfifo((user_.path() / "pipe.desktop").c_str(), 0600), 0);
    fs::create_symlink("nowhere", user_.path() / "dangling.desktop");
    user_.add("paint.desktop.bak", "");

    EXPECT_EQ(index_.idForWindowClass("folder"), std::nullopt);
    EXPECT_EQ(index_.idForWindowClass("pipe"), std::nullopt);
    EXPECT_EQ(index_.idForWindowClass("dangling"), std::nullopt);
    EXPECT_EQ(index_.idForWindowClass("paint"), std::nullopt);
}

TEST_F(DesktopEntryIndexTest, FollowsALinkToADesktopFile) {
    const Applications elsewhere(directory_.path() / "elsewhere");
    elsewhere.add("target.desktop", "StartupWMClass=linked\n");
    fs::create_symlink(elsewhere.path() / "target.desktop", user_.path() / "paint.desktop");

    EXPECT_EQ(index_.idForWindowClass("linked"), "paint");
}

/// Sets or, with none, unsets an environment variable until the end of the test.
class ScopedVariable {
public:
    ScopedVariable(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
        const char* before = std::getenv(name_.c_str());
        before_ = before == nullptr ? std::nullopt : std::optional<std::string>(before);
        set(value);
    }
    ~ScopedVariable() { set(before_); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    void set(const std::optional<std::string>& value) const {
        if (value) {
            ::setenv(name_.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(name_.c_str());
        }
    }

    std::string name_;
    std::optional<std::string> before_;
};

TEST(StandardFolders, AreThoseOfTheVariablesInTheirOrder) {
    const ScopedVariable home("HOME", "/home/ada");
    const ScopedVariable dataHome("XDG_DATA_HOME", "/home/ada/data");
    const ScopedVariable dataFolders("XDG_DATA_DIRS", "/opt/share:/usr/share");

    EXPECT_THAT(DesktopEntryIndex::standardFolders(),
                ElementsAre("/home/ada/data/applications", "/opt/share/applications", "/usr/share/applications"));
}

TEST(StandardFolders, AreTheDefaultsWhereTheVariablesAreUnset) {
    const ScopedVariable home("HOME", "/home/ada");
    const ScopedVariable dataHome("XDG_DATA_HOME", std::nullopt);
    const ScopedVariable dataFolders("XDG_DATA_DIRS", std::nullopt);

    EXPECT_THAT(
        DesktopEntryIndex::standardFolders(),
        ElementsAre("/home/ada/.local/share/applications", "/usr/local/share/applications", "/usr/share/applications"));
}

TEST(StandardFolders, AreTheDefaultsWhereTheVariablesAreEmpty) {
    const ScopedVariable home("HOME", "/home/ada");
    const ScopedVariable dataHome("XDG_DATA_HOME", "");
    const ScopedVariable dataFolders("XDG_DATA_DIRS", "");

    EXPECT_THAT(
        DesktopEntryIndex::standardFolders(),
        ElementsAre("/home/ada/.local/share/applications", "/usr/local/share/applications", "/usr/share/applications"));
}

TEST(StandardFolders, LeaveOutRelativeAndEmptyPaths) {
    const ScopedVariable home("HOME", "/home/ada");
    const ScopedVariable dataHome("XDG_DATA_HOME", "relative/data");
    const ScopedVariable dataFolders("XDG_DATA_DIRS", "share::/opt/share:./here:");

    EXPECT_THAT(DesktopEntryIndex::standardFolders(),
                ElementsAre("/home/ada/.local/share/applications", "/opt/share/applications"));
}

TEST(StandardFolders, HaveNoPlaceInAHomeThatIsUnknown) {
    const ScopedVariable home("HOME", std::nullopt);
    const ScopedVariable dataHome("XDG_DATA_HOME", std::nullopt);
    const ScopedVariable dataFolders("XDG_DATA_DIRS", "relative");

    EXPECT_THAT(DesktopEntryIndex::standardFolders(), IsEmpty());
}

}  // namespace
}  // namespace pallwick::freedesktop
