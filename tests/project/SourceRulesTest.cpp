#include "SourceRules.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace pallwick::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// One line in a file that has it as its third, and the rule that it breaks or does not.
struct Sample {
    const char* rule;
    const char* path;
    const char* line;
};

std::vector<std::size_t> verdict(const Sample& sample) {
    const auto rules = sourceRules();
    const auto rule = std::ranges::find(rules, std::string_view(sample.rule), &SourceRule::name);
    if (rule == rules.end()) {
        ADD_FAILURE() << "no rule " << sample.rule;
        return {};
    }
    return offendingLines(*rule, {.path = sample.path, .text = "#pragma once\n\n" + std::string(sample.line) + "\n"});
}

class Offender : public testing::TestWithParam<Sample> {};

TEST_P(Offender, IsFoundAtItsLine) {
    EXPECT_THAT(verdict(GetParam()), ElementsAre(3U)) << GetParam().path << ": " << GetParam().line;
}

class Innocent : public testing::TestWithParam<Sample> {};

TEST_P(Innocent, IsLeftAlone) {
    EXPECT_THAT(verdict(GetParam()), IsEmpty()) << GetParam().path << ": " << GetParam().line;
}

constexpr const char* coreStandsAlone = "CoreStandsAlone";

INSTANTIATE_TEST_SUITE_P(
    CoreStandsAlone, Offender,
    testing::Values(Sample{coreStandsAlone, "PallwickMacCore/Models/UUID.h", "#include <QString>"},
                    Sample{coreStandsAlone, "PallwickMacCore/Models/UUID.h", "#include <QtCore/QString>"},
                    Sample{coreStandsAlone, "PallwickMacCore/Models/UUID.cpp", "#include <qglobal.h>"},
                    Sample{coreStandsAlone, "PallwickMacCore/Models/UUID.cpp", "#include <xcb/xcb.h>"},
                    Sample{coreStandsAlone, "PallwickMacCore/Models/UUID.cpp", "#include <X11/Xlib.h>"},
                    Sample{coreStandsAlone, "PallwickMacCore/Stores/OverlayStore.cpp",
                           "#include <PallwickMac/App/AppModel.h>"}));

INSTANTIATE_TEST_SUITE_P(
    CoreStandsAlone, Innocent,
    testing::Values(Sample{coreStandsAlone, "PallwickMacCore/Models/UUID.h", "#include <queue>"},
                    Sample{coreStandsAlone, "PallwickMacCore/Models/UUID.h", "// #include <QString>"},
                    Sample{coreStandsAlone, "PallwickMacCore/Models/UUID.cpp",
                           "#include <PallwickMacCore/Models/UUID.h>"},
                    Sample{coreStandsAlone, "PallwickMac/Views/ContentView.h", "#include <QWidget>"}));

constexpr const char* backdropStandsAlone = "BackdropStandsAlone";

INSTANTIATE_TEST_SUITE_P(
    BackdropStandsAlone, Offender,
    testing::Values(Sample{backdropStandsAlone, "PallwickMac/Backdrop/Frost.cpp", "#include <QImage>"},
                    Sample{backdropStandsAlone, "PallwickMac/Backdrop/Frost.cpp", "#include <xcb/render.h>"},
                    Sample{backdropStandsAlone, "PallwickMac/Backdrop/Frost.h",
                           "#include <PallwickMacCore/Models/Geometry.h>"},
                    Sample{backdropStandsAlone, "PallwickMac/Backdrop/Frost.h",
                           "#include <PallwickMac/Platform/X11/PixelMapping.h>"}));

INSTANTIATE_TEST_SUITE_P(BackdropStandsAlone, Innocent,
                         testing::Values(Sample{backdropStandsAlone, "PallwickMac/Backdrop/Frost.cpp",
                                                "#include <algorithm>"},
                                         Sample{backdropStandsAlone, "PallwickMac/Backdrop/Frost.cpp",
                                                "#include <PallwickMac/Backdrop/GaussianBlur.h>"},
                                         Sample{backdropStandsAlone, "PallwickMac/Platform/X11/Glass.h",
                                                "#include <PallwickMac/Backdrop/Frost.h>"}));

constexpr const char* includesPointDown = "IncludesPointDown";

INSTANTIATE_TEST_SUITE_P(
    IncludesPointDown, Offender,
    testing::Values(
        Sample{includesPointDown, "PallwickMac/App/AppModel.cpp", "#include <PallwickMac/Views/ContentView.h>"},
        Sample{includesPointDown, "PallwickMac/App/AppDelegate.h", "#include <PallwickMac/App/PallwickMacApp.h>"},
        Sample{includesPointDown, "PallwickMac/Views/ContentView.cpp", "#include <PallwickMac/App/PallwickMacApp.h>"},
        Sample{includesPointDown, "PallwickMac/Services/AppOverlayPanel.h", "#include <PallwickMac/App/AppModel.h>"},
        Sample{includesPointDown, "PallwickMac/Services/AppOverlayPanel.h",
               "#include <PallwickMac/Views/ContentView.h>"},
        Sample{includesPointDown, "PallwickMac/Platform/DesktopPlatform.h",
               "#include <PallwickMac/Services/AppOverlayPanel.h>"},
        Sample{includesPointDown, "PallwickMac/Platform/X11/X11Platform.cpp", "#include <PallwickMac/App/AppModel.h>"},
        Sample{includesPointDown, "PallwickMac/Backdrop/GaussianBlur.h",
               "#include <PallwickMac/Platform/DesktopPlatform.h>"},
        Sample{includesPointDown, "PallwickMacCore/Models/UUID.h", "#include <PallwickMac/Backdrop/GaussianBlur.h>"}));

INSTANTIATE_TEST_SUITE_P(
    IncludesPointDown, Innocent,
    testing::Values(
        Sample{includesPointDown, "PallwickMac/App/main.cpp", "#include <PallwickMac/App/PallwickMacApp.h>"},
        Sample{includesPointDown, "PallwickMac/App/PallwickMacApp.cpp", "#include <PallwickMac/Views/ContentView.h>"},
        Sample{includesPointDown, "PallwickMac/Views/ContentView.cpp", "#include <PallwickMac/App/AppModel.h>"},
        Sample{includesPointDown, "PallwickMac/App/AppModel.cpp",
               "#include <PallwickMac/Services/WindowTrackingService.h>"},
        Sample{includesPointDown, "PallwickMac/Services/AppOverlayPanel.cpp",
               "#include <PallwickMac/Platform/DesktopPlatform.h>"},
        Sample{includesPointDown, "PallwickMac/Platform/X11/X11Platform.cpp",
               "#include <PallwickMac/Backdrop/GaussianBlur.h>"},
        Sample{includesPointDown, "tests/application/AppModelTest.cpp", "#include <PallwickMac/App/AppModel.h>"}));

constexpr const char* windowSystem = "WindowSystemStaysInItsFolder";

INSTANTIATE_TEST_SUITE_P(
    WindowSystem, Offender,
    testing::Values(
        Sample{windowSystem, "PallwickMac/Platform/DesktopPlatform.h", "#include <xcb/xcb.h>"},
        Sample{windowSystem, "PallwickMac/Platform/Freedesktop/DesktopEntryIndex.cpp", "#include <xcb/xcb.h>"},
        Sample{windowSystem, "PallwickMac/Views/ContentView.cpp", "#include <X11/Xlib.h>"},
        Sample{windowSystem, "PallwickMac/App/PallwickMacApp.cpp", "#include <PallwickMac/Platform/X11/X11Platform.h>"},
        Sample{windowSystem, "PallwickMac/Platform/PlatformFactory.h",
               "#include <PallwickMac/Platform/X11/X11Platform.h>"}));

INSTANTIATE_TEST_SUITE_P(WindowSystem, Innocent,
                         testing::Values(Sample{windowSystem, "PallwickMac/Platform/X11/Atoms.h",
                                                "#include <xcb/xcb.h>"},
                                         Sample{windowSystem, "PallwickMac/Platform/PlatformFactory.cpp",
                                                "#include <PallwickMac/Platform/X11/X11Platform.h>"},
                                         Sample{windowSystem, "tests/support/XConnection.h", "#include <xcb/xcb.h>"}));

constexpr const char* backends = "BackendsAreReachedThroughTheFactory";

INSTANTIATE_TEST_SUITE_P(Backends, Offender,
                         testing::Values(Sample{backends, "PallwickMac/App/PallwickMacApp.cpp",
                                                "#include <PallwickMac/Platform/Null/NullPlatform.h>"},
                                         Sample{backends, "PallwickMac/Services/WindowTrackingService.cpp",
                                                "#include <PallwickMac/Platform/Freedesktop/DesktopEntryIndex.h>"}));

INSTANTIATE_TEST_SUITE_P(Backends, Innocent,
                         testing::Values(Sample{backends, "PallwickMac/App/PallwickMacApp.cpp",
                                                "#include <PallwickMac/Platform/DesktopPlatform.h>"},
                                         Sample{backends, "PallwickMac/Platform/PlatformFactory.cpp",
                                                "#include <PallwickMac/Platform/Null/NullPlatform.h>"}));

constexpr const char* fakeIsForTests = "FakeIsForTests";
constexpr const char* fakeInclude = "#include <PallwickMac/Platform/Fake/FakePlatform.h>";

INSTANTIATE_TEST_SUITE_P(FakeIsForTests, Offender,
                         testing::Values(Sample{fakeIsForTests, "PallwickMac/Platform/PlatformFactory.cpp",
                                                fakeInclude},
                                         Sample{fakeIsForTests, "PallwickMac/App/main.cpp", fakeInclude}));

INSTANTIATE_TEST_SUITE_P(FakeIsForTests, Innocent,
                         testing::Values(Sample{fakeIsForTests, "tests/application/AppModelTest.cpp", fakeInclude},
                                         Sample{fakeIsForTests, "PallwickMac/Platform/Fake/FakePlatform.cpp",
                                                fakeInclude}));

constexpr const char* fullPath = "ProgramIncludesByFullPath";

INSTANTIATE_TEST_SUITE_P(
    FullPath, Offender,
    testing::Values(Sample{fullPath, "PallwickMac/Views/ContentView.cpp", "#include \"ContentView.h\""},
                    Sample{fullPath, "PallwickMac/Views/ContentView.cpp", "#include \"../App/AppModel.h\""},
                    Sample{fullPath, "PallwickMacCore/Models/UUID.cpp", "#include <PallwickMacCore/../x.h>"}));

INSTANTIATE_TEST_SUITE_P(
    FullPath, Innocent,
    testing::Values(Sample{fullPath, "PallwickMac/Views/ContentView.cpp", "#include <QWidget>"},
                    Sample{fullPath, "PallwickMac/Platform/X11/Connection.cpp", "#include <unistd.h>"},
                    Sample{fullPath, "PallwickMac/Views/ContentView.cpp", "#include \"ContentView.moc\""},
                    Sample{fullPath, "tests/core/UUIDTest.cpp", "#include \"SampleRecords.h\""}));

constexpr const char* jsonLibrary = "JsonLibraryStaysInSources";
constexpr const char* jsonInclude = "#include <nlohmann/json.hpp>";

INSTANTIATE_TEST_SUITE_P(JsonLibrary, Offender,
                         testing::Values(Sample{jsonLibrary, "PallwickMacCore/Models/JsonReader.h", jsonInclude},
                                         Sample{jsonLibrary, "tests/core/JsonEditing.h", jsonInclude},
                                         Sample{jsonLibrary, "PallwickMac/App/AppModel.cpp", jsonInclude}));

INSTANTIATE_TEST_SUITE_P(JsonLibrary, Innocent,
                         testing::Values(Sample{jsonLibrary, "PallwickMacCore/Models/JsonReader.cpp", jsonInclude}));

constexpr const char* conditions = "NoConditionalCode";

INSTANTIATE_TEST_SUITE_P(Conditions, Offender,
                         testing::Values(Sample{conditions, "PallwickMac/Views/ContentView.cpp", "#ifdef __linux__"},
                                         Sample{conditions, "PallwickMac/Views/ContentView.h", "#ifndef VIEW_H"},
                                         Sample{conditions, "PallwickMacCore/Models/UUID.cpp", "#if 0"},
                                         Sample{conditions, "PallwickMacCore/Models/UUID.cpp", "  #  if defined(X)"},
                                         Sample{conditions, "tests/core/UUIDTest.cpp", "#elif 1"}));

INSTANTIATE_TEST_SUITE_P(
    Conditions, Innocent,
    testing::Values(Sample{conditions, "PallwickMac/Platform/PlatformFactory.cpp", "#ifdef __linux__"},
                    Sample{conditions, "PallwickMac/Views/ContentView.cpp", "if (a) { b(\"#if\"); }  // #if"},
                    Sample{conditions, "PallwickMac/Views/ContentView.h", "#include <iffy/if.h>"}));

constexpr const char* halfOpen = "RectanglesAreHalfOpen";

INSTANTIATE_TEST_SUITE_P(
    HalfOpen, Offender,
    testing::Values(Sample{halfOpen, "PallwickMac/Platform/X11/WorkArea.cpp", "const int x = area.right();"},
                    Sample{halfOpen, "PallwickMac/Views/ContentView.cpp", "move(rect().bottom() + 1);"},
                    Sample{halfOpen, "tests/desktop/PanelTest.cpp", "EXPECT_EQ(rect->right(), 5);"}));

INSTANTIATE_TEST_SUITE_P(
    HalfOpen, Innocent,
    testing::Values(Sample{halfOpen, "PallwickMac/Platform/X11/WorkArea.cpp", "const int x = area.x + area.width;"},
                    Sample{halfOpen, "PallwickMac/Platform/X11/WorkArea.cpp", "const int x = struts.right;"},
                    Sample{halfOpen, "PallwickMac/Views/ContentView.cpp", "// never rect.right()"}));

class Rule : public testing::TestWithParam<SourceRule> {};

TEST_P(Rule, HoldsThroughoutTheTree) {
    std::vector<std::string> offences;

    for (const SourceFile& file : readSourceTree()) {
        for (const std::size_t line : offendingLines(GetParam(), file)) {
            offences.push_back(file.path + ":" + std::to_string(line));
        }
    }

    EXPECT_THAT(offences, IsEmpty()) << GetParam().sentence;
}

INSTANTIATE_TEST_SUITE_P(All, Rule, testing::ValuesIn(sourceRules().begin(), sourceRules().end()),
                         [](const auto& instance) { return instance.param.name; });

TEST(Layer, IsKnownForEveryFileOfTheProgram) {
    std::vector<std::string> unplaced;

    for (const SourceFile& file : readSourceTree()) {
        if (file.path.starts_with("Pallwick") && !layerOf(file.path)) {
            unplaced.push_back(file.path);
        }
    }

    EXPECT_THAT(unplaced, IsEmpty());
}

}  // namespace
}  // namespace pallwick::test
