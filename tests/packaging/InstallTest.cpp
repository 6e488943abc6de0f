// What is installed is whole, and is what the desktop's own tools take for valid.

#include <gmock/gmock.h>
#include <support/PrivateDesktop.h>
#include <support/Program.h>

#include <QImage>

#include "InstalledTree.h"

namespace pallwick::packaging {
namespace {

using support::ExitStatus;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

constexpr const char* desktopEntry = "share/applications/org.pallwick.Pallwick.desktop";
constexpr const char* metainfo = "share/metainfo/org.pallwick.Pallwick.metainfo.xml";
constexpr const char* manualPage = "share/man/man1/pallwick.1";

TEST(Install, PutsEveryFileInItsPlace) {
    const InstalledTree tree;

    EXPECT_THAT(tree.files(),
                UnorderedElementsAre(
                    "usr/bin/pallwick", "usr/share/applications/org.pallwick.Pallwick.desktop",
                    "usr/share/doc/pallwick/CHANGELOG.md", "usr/share/doc/pallwick/copyright",
                    "usr/share/doc/pallwick/guide.md", "usr/share/icons/hicolor/128x128/apps/org.pallwick.Pallwick.png",
                    "usr/share/icons/hicolor/16x16/apps/org.pallwick.Pallwick.png",
                    "usr/share/icons/hicolor/22x22/apps/org.pallwick.Pallwick.png",
                    "usr/share/icons/hicolor/24x24/apps/org.pallwick.Pallwick.png",
                    "usr/share/icons/hicolor/256x256/apps/org.pallwick.Pallwick.png",
                    "usr/share/icons/hicolor/32x32/apps/org.pallwick.Pallwick.png",
                    "usr/share/icons/hicolor/48x48/apps/org.pallwick.Pallwick.png",
                    "usr/share/icons/hicolor/512x512/apps/org.pallwick.Pallwick.png",
                    "usr/share/icons/hicolor/64x64/apps/org.pallwick.Pallwick.png",
                    "usr/share/icons/hicolor/scalable/apps/org.pallwick.Pallwick.svg", "usr/share/man/man1/pallwick.1",
                    "usr/share/metainfo/org.pallwick.Pallwick.metainfo.xml"));
}

TEST(DesktopEntry, IsValid) {
    const InstalledTree tree;

    const Verdict verdict = packaging::verdict({"desktop-file-validate", tree.path(desktopEntry)});

    EXPECT_EQ(verdict.status, ExitStatus{});
    EXPECT_THAT(verdict.output, IsEmpty());
}

TEST(DesktopEntry, IsThatOfTheProgramsWindows) {
    const InstalledTree tree;
    support::PrivateDesktop desktop({});
    support::Program program(desktop);

    const xcb_window_t window = program.awaitMainWindow();

    EXPECT_THAT(desktop.windows().windowClass(window), ElementsAre("pallwick", "Pallwick"));
    EXPECT_THAT(text(tree.path(desktopEntry)), HasSubstr("\nExec=pallwick\n"));
    EXPECT_THAT(text(tree.path(desktopEntry)), HasSubstr("\nStartupWMClass=Pallwick\n"));
    EXPECT_EQ(program.quit(), ExitStatus{});
}

TEST(Metainfo, IsValid) {
    const InstalledTree tree;

    const Verdict verdict = packaging::verdict(
        {"appstreamcli", "validate", "--no-net", "--strict", "--pedantic", "--no-color", tree.path(metainfo)});

    EXPECT_EQ(verdict.status, ExitStatus{}) << verdict.output;
}

TEST(Metainfo, BelongsToTheDesktopEntry) {
    const InstalledTree tree;

    const Verdict verdict =
        packaging::verdict({"appstreamcli", "validate-tree", "--no-net", "--no-color", tree.path("")});

    EXPECT_EQ(verdict.status, ExitStatus{}) << verdict.output;
}

TEST(ManualPage, IsValid) {
    const InstalledTree tree;

    const Verdict verdict = packaging::verdict({"mandoc", "-T", "lint", tree.path(manualPage)});

    EXPECT_EQ(verdict.status, ExitStatus{});
    EXPECT_THAT(verdict.output, IsEmpty());
}

TEST(Version, IsTheSameEverywhere) {
    const InstalledTree tree;
    const std::string version = PALLWICK_VERSION;

    EXPECT_THAT(text(tree.path(manualPage)), HasSubstr("\"Pallwick " + version + "\""));
    EXPECT_THAT(text(tree.path(metainfo)), ContainsRegex("<releases>[[:space:]]*<release version=\"" + version + "\""));
    EXPECT_THAT(text(PALLWICK_SOURCE_DIR "/data/debian/changelog"), StartsWith("pallwick (" + version + ") "));
}

class IconOfSide : public testing::TestWithParam<int> {};

TEST_P(IconOfSide, HasIt) {
    const InstalledTree tree;
    const std::string side = std::to_string(GetParam());

    const QImage icon(QString::fromStdString(
        tree.path("share/icons/hicolor/" + side + "x" + side + "/apps/org.pallwick.Pallwick.png")));

    ASSERT_EQ(icon.size(), QSize(GetParam(), GetParam()));
    EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0) << "a rounded corner";
    EXPECT_EQ(icon.pixelColor(GetParam() / 2, GetParam() / 2).alpha(), 255);
}

INSTANTIATE_TEST_SUITE_P(Sides, IconOfSide, testing::Values(16, 22, 24, 32, 48, 64, 128, 256, 512),
                         testing::PrintToStringParamName());

TEST(SmallestIcon, HasLinesOfWholePixels) {
    const InstalledTree tree;

    const QImage icon(QString::fromStdString(tree.path("share/icons/hicolor/16x16/apps/org.pallwick.Pallwick.png")));

    const QColor line = icon.pixelColor(5, 3);
    EXPECT_GT(line.lightness(), 180);
    EXPECT_LT(icon.pixelColor(5, 2).lightness(), 110);
    EXPECT_LT(icon.pixelColor(5, 4).lightness(), 110);
}

}  // namespace
}  // namespace pallwick::packaging
