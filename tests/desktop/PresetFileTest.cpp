// The file behind the presets: where it is, what others read in it, and what becomes of it when things go wrong.

#include <gmock/gmock.h>

#include <fstream>

#include "PresetsFile.h"
#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::PixelRect;
using support::Program;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

constexpr PixelRect newRect{.x = 780, .y = 440, .width = 360, .height = 200};
constexpr const char* newRow = "Overlay 1, Rectangle - 360 x 200 at 780, 440";

/// The text without the backslashes before slashes.
std::string withPlainSlashes(std::string text) {
    constexpr std::string_view escaped = R"(\/)";
    for (std::size_t at = 0; (at = text.find(escaped, at)) != std::string::npos;) {
        text.erase(at, 1);
    }
    return text;
}

class PresetFile : public testing::Test {
protected:
    explicit PresetFile(Stage::Options options = {}) : stage_(DesktopKind::openbox, std::move(options)) {}

    void save() {
        stage_.choosePreset("Save Display Preset");
        stage_.awaitStatus("Display preset saved");
    }

    Stage stage_;
    PresetsFile file_{stage_.desktop().dataHome()};
};

TEST_F(PresetFile, IsNotThereBeforeTheFirstSave) {
    EXPECT_EQ(file_.namesInDirectory(), "");
    EXPECT_EQ(file_.directoryMode(), 0700U);
}

TEST_F(PresetFile, IsReadableByItsOwnerAlone) {
    stage_.add();

    save();

    EXPECT_EQ(file_.mode(), 0600U);
    EXPECT_EQ(file_.namesInDirectory(), "presets.json");
}

TEST_F(PresetFile, KeepsTheModeThatItsOwnerGaveIt) {
    stage_.add();
    save();
    std::filesystem::permissions(file_.path(), std::filesystem::perms{0640});

    save();

    EXPECT_EQ(file_.mode(), 0640U);
}

TEST_F(PresetFile, IsSortedAndIndentedSoThatPythonWritesItAlike) {
    const auto secret = stage_.openSecret("Notes / \"Straße\"");
    stage_.add();
    stage_.attachToLastWindow();
    stage_.add();
    stage_.choosePreset("Save App Preset");
    stage_.awaitStatus("App preset saved");

    save();

    const std::string text = file_.text();
    EXPECT_THAT(text, HasSubstr(R"("title": "Notes \/ \"Straße\"")"));
    EXPECT_EQ(withPlainSlashes(text) + "\n", file_.asPythonWritesIt(PresetsFile::Layout::indentedByTwo));
}

TEST_F(PresetFile, HoldsAllOfAnOverlayAndNothingElse) {
    const auto secret = stage_.openSecret("Notes");
    stage_.add();
    stage_.attachToLastWindow();

    save();

    EXPECT_THAT(file_.asPythonWritesIt(PresetsFile::Layout::compact),
                MatchesRegex(R"(\{"screen:[1-9][0-9]*":\[\{"anchor":"window","createdAt":[0-9]+(\.[0-9]+)?,)"
                             R"("displayID":[1-9][0-9]*,"frame":\[\[780,440\],\[360,200\]\],)"
                             R"("id":"[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}",)"
                             R"("shape":"rectangle","style":\{"colorHex":"#[0-9A-F]{6}","glassBlur":true,)"
                             R"("intensity":[0-9]+,"opacity":[0-9]+\},"updatedAt":[0-9]+(\.[0-9]+)?,)"
                             R"("windowAttachment":\{"offset":\[-?[0-9]+,-?[0-9]+\],"ownerName":"[^"]+",)"
                             R"("ownerPID":[1-9][0-9]*,"title":"Notes","windowID":[1-9][0-9]*\}\}\]\})"
                             "\n"));
}

TEST_F(PresetFile, HoldsNoAttachmentForAnOverlayThatStays) {
    stage_.add();

    save();

    EXPECT_THAT(file_.asPythonWritesIt(PresetsFile::Layout::compact), Not(HasSubstr("windowAttachment")));
}

TEST_F(PresetFile, HoldsAnEmptyListWhenThereIsNoOverlay) {
    save();

    EXPECT_THAT(file_.asPythonWritesIt(PresetsFile::Layout::compact), MatchesRegex("\\{\"screen:[0-9]+\":\\[\\]\\}\n"));
}

TEST_F(PresetFile, KeepsWhatOthersHaveWrittenInIt) {
    stage_.add();
    file_.setText(R"({"somebody": [], "application:org.example.Mail": []})");

    save();

    EXPECT_THAT(file_.asPythonWritesIt(PresetsFile::Layout::compact),
                MatchesRegex("\\{\"application:org.example.Mail\":\\[\\],\"screen:[0-9]+\":\\[\\{.*\\}\\],"
                             "\"somebody\":\\[\\]\\}\n"));
}

TEST_F(PresetFile, IsLoadedAfterARestartThatBeginsWithNoOverlay) {
    stage_.add();
    save();
    EXPECT_EQ(stage_.program().quit(), support::ExitStatus{});

    stage_.startAgain();
    EXPECT_EQ(stage_.statusText(), "Ready");
    EXPECT_THAT(stage_.rows(), IsEmpty());
    EXPECT_THAT(stage_.program().overlays(), IsEmpty());
    stage_.choosePreset("Load Display Preset");

    stage_.awaitStatus("Display preset loaded");
    stage_.program().awaitOverlayAt(newRect);
    stage_.awaitRows({newRow});
}

TEST_F(PresetFile, IsWholeWhenTheProgramIsKilledOnceItSaysSaved) {
    stage_.add();
    save();
    stage_.desktop().x().release(stage_.program().process());

    stage_.program().process().kill();

    EXPECT_EQ(file_.namesInDirectory(), "presets.json");
    EXPECT_THAT(file_.asPythonWritesIt(PresetsFile::Layout::compact), HasSubstr(R"("frame":[[780,440],[360,200]])"));
    stage_.startAgain();
    stage_.choosePreset("Load Display Preset");
    stage_.program().awaitOverlayAt(newRect);
}

struct CommandAndStatus {
    const char* name;
    const char* entry;
    const char* status;
};

constexpr auto nameOfCommand = [](const testing::TestParamInfo<CommandAndStatus>& instance) {
    return std::string(instance.param.name);
};

class DamagedPresetFile : public PresetFile, public testing::WithParamInterface<CommandAndStatus> {
protected:
    /// Chooses the entry and expects that neither overlays nor selection change.
    void expectRefusal(const testing::Matcher<const std::string&>& says) {
        const Program::Overlay overlay = stage_.add();

        stage_.choosePreset(GetParam().entry);

        stage_.program().controls().awaitCondition("a refusal", [&] { return stage_.statusText() != "Overlay added"; });
        EXPECT_THAT(stage_.statusText(), says);
        stage_.settle();
        EXPECT_EQ(stage_.program().awaitOverlayAt(newRect).window, overlay.window);
        EXPECT_TRUE(stage_.rows()[0].has(support::AccessibleState::selected));
    }
};

TEST_P(DamagedPresetFile, IsNamedAndLeftAloneAsTheOverlaysAre) {
    file_.setText("garbage");

    expectRefusal(StartsWith(std::string(GetParam().status) + "presets.json: "));

    EXPECT_EQ(file_.text(), "garbage");
    EXPECT_EQ(file_.namesInDirectory(), "presets.json");
}

TEST_P(DamagedPresetFile, MayBeADirectory) {
    std::filesystem::create_directory(file_.path());

    expectRefusal(std::string(GetParam().status) + "presets.json could not be read: Is a directory");

    EXPECT_TRUE(std::filesystem::is_directory(file_.path()));
}

INSTANTIATE_TEST_SUITE_P(Commands, DamagedPresetFile,
                         testing::Values(CommandAndStatus{"SaveDisplay", "Save Display Preset", "Save failed: "},
                                         CommandAndStatus{"LoadDisplay", "Load Display Preset", "Load failed: "},
                                         CommandAndStatus{"SaveApp", "Save App Preset", "Save failed: "},
                                         CommandAndStatus{"LoadApp", "Load App Preset", "Load failed: "}),
                         nameOfCommand);

class BlockedPresetDirectory : public PresetFile, public testing::WithParamInterface<CommandAndStatus> {
protected:
    BlockedPresetDirectory()
        : PresetFile({.prepare = [](support::PrivateDesktop& desktop) {
              std::ofstream(desktop.dataHome() / "Pallwick") << "in the way";
          }}) {}
};

TEST_P(BlockedPresetDirectory, LeavesTheProgramRunningWithoutPresets) {
    const Program::Overlay overlay = stage_.add();

    stage_.choosePreset(GetParam().entry);

    stage_.awaitStatus(GetParam().status);
    EXPECT_EQ(stage_.program().awaitOverlayAt(newRect).window, overlay.window);
    EXPECT_TRUE(std::filesystem::is_regular_file(stage_.desktop().dataHome() / "Pallwick"));
}

INSTANTIATE_TEST_SUITE_P(
    Commands, BlockedPresetDirectory,
    testing::Values(CommandAndStatus{"SaveDisplay", "Save Display Preset", "Could not save display preset"},
                    CommandAndStatus{"LoadDisplay", "Load Display Preset", "Could not load display preset"},
                    CommandAndStatus{"SaveApp", "Save App Preset", "No foreground app detected"},
                    CommandAndStatus{"LoadApp", "Load App Preset", "No foreground app detected"}),
    nameOfCommand);

TEST_F(PresetFile, CannotBeSavedOnceItsDirectoryHasGone) {
    const Program::Overlay overlay = stage_.add();
    std::filesystem::remove(file_.path().parent_path());

    stage_.choosePreset("Save Display Preset");

    stage_.awaitStatus("Save failed: presets.json could not be written: No such file or directory");
    EXPECT_EQ(stage_.program().awaitOverlayAt(newRect).window, overlay.window);
}

struct DataHome {
    const char* name;
    Stage::Options options;
};

class PresetFileWithoutDataHome : public PresetFile, public testing::WithParamInterface<DataHome> {
protected:
    PresetFileWithoutDataHome() : PresetFile(GetParam().options) {}
};

TEST_P(PresetFileWithoutDataHome, IsInTheHomeDirectory) {
    stage_.add();

    save();

    EXPECT_TRUE(std::filesystem::exists(stage_.desktop().home() / ".local/share/Pallwick/presets.json"));
    EXPECT_FALSE(std::filesystem::exists("relative"));
    EXPECT_FALSE(std::filesystem::exists("Pallwick"));
}

INSTANTIATE_TEST_SUITE_P(Variables, PresetFileWithoutDataHome,
                         testing::Values(DataHome{"Unset", {.absentVariables = {"XDG_DATA_HOME"}}},
                                         DataHome{"Empty", {.environment = {{"XDG_DATA_HOME", ""}}}},
                                         DataHome{"Relative", {.environment = {{"XDG_DATA_HOME", "relative/share"}}}}),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(PresetFileInADataHome, IsMadeWithAllDirectoriesThatAreMissing) {
    const support::TemporaryDirectory elsewhere;
    const std::filesystem::path dataHome = elsewhere.path() / "not yet/there";
    Stage stage(DesktopKind::openbox, {.environment = {{"XDG_DATA_HOME", dataHome}}});
    stage.add();

    stage.choosePreset("Save Display Preset");
    stage.awaitStatus("Display preset saved");

    EXPECT_TRUE(PresetsFile(dataHome).exists());
    EXPECT_FALSE(std::filesystem::exists(stage.desktop().dataHome() / "Pallwick"));
}

}  // namespace
}  // namespace pallwick::desktop
