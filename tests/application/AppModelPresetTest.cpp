#include "ViewTestSupport.h"

#include <QCoreApplication>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "tests/support/TemporaryDirectory.h"

namespace pallwick {
namespace {

using ::testing::IsEmpty;

constexpr Screen screenNumbered(std::uint32_t displayID) {
    return {.frame = {.x = 0, .y = 0, .width = 1920, .height = 1080},
            .visibleFrame = {.x = 0, .y = 0, .width = 1920, .height = 1080},
            .scale = 1,
            .displayID = displayID,
            .name = {}};
}

/// A model that keeps presets, on display 7, with an application in front.
class AppModelPresetTest : public ::testing::Test {
protected:
    AppModelPresetTest() {
        platform.setScreens({screenNumbered(7)});
        platform.setFrontmostApplication(FrontmostApplication{.processID = 42, .bundleID = "org.example.Mail"});
    }

    ~AppModelPresetTest() override {
        // Closed panels let go of their surfaces while the platform is still there.
        owner_.reset();
        QCoreApplication::sendPostedEvents();
    }

    [[nodiscard]] std::filesystem::path file() const { return directory.path() / "presets.json"; }

    [[nodiscard]] std::string fileText() const {
        std::ostringstream text;
        text << std::ifstream(file()).rdbuf();
        return text.str();
    }

    void writeFile(const std::string& text) const { std::ofstream(file()) << text; }

    [[nodiscard]] std::string status() const { return model.statusText().toStdString(); }

    FakePlatform platform;
    support::TemporaryDirectory directory;

private:
    std::unique_ptr<AppModel> owner_ =
        std::make_unique<AppModel>(platform, [this] { return std::make_unique<PresetStore>(directory.path()); });

protected:
    AppModel& model = *owner_;
};

TEST_F(AppModelPresetTest, SavesAllOverlaysForTheDisplayAndBringsThemBackExactly) {
    model.addOverlay();
    model.updateSelectedShape(OverlayShape::circle);
    platform.setScreens({screenNumbered(8)});
    model.addOverlay();
    platform.setScreens({screenNumbered(7)});
    const std::vector<BlurOverlay> saved = model.overlays();

    model.saveDisplayPreset();
    EXPECT_EQ(status(), "Display preset saved");
    model.clearOverlays();
    model.loadDisplayPreset();

    EXPECT_EQ(status(), "Display preset loaded");
    EXPECT_EQ(model.overlays(), saved);
    EXPECT_EQ(PresetStore(directory.path()).load(PresetScope::screen(7)), saved);
}

TEST_F(AppModelPresetTest, SavesAndLoadsForTheApplicationInFront) {
    model.addOverlay();
    const std::vector<BlurOverlay> saved = model.overlays();

    model.saveApplicationPreset();
    EXPECT_EQ(status(), "App preset saved");
    platform.setFrontmostApplication(FrontmostApplication{.processID = 43, .bundleID = "org.example.Chat"});
    model.loadApplicationPreset();
    EXPECT_EQ(status(), "No app preset saved");
    EXPECT_THAT(model.overlays(), IsEmpty());
    platform.setFrontmostApplication(FrontmostApplication{.processID = 42, .bundleID = "org.example.Mail"});
    model.loadApplicationPreset();

    EXPECT_EQ(status(), "App preset loaded");
    EXPECT_EQ(model.overlays(), saved);
}

TEST_F(AppModelPresetTest, KeysByTheProgramItselfWhileThatIsInFront) {
    platform.setFrontmostApplication(FrontmostApplication{.processID = 1, .bundleID = "org.pallwick.Pallwick"});
    model.addOverlay();

    model.saveApplicationPreset();

    EXPECT_EQ(PresetStore(directory.path()).load(PresetScope::application("org.pallwick.Pallwick")), model.overlays());
}

TEST_F(AppModelPresetTest, LeavesEverythingAsItWasWhenItSaves) {
    model.addOverlay();
    model.addOverlay();
    model.setSelectedOverlayID(model.overlays()[0].id());
    model.toggleEditMode();
    const std::vector<BlurOverlay> before = model.overlays();
    platform.clearCalls();

    model.saveDisplayPreset();

    EXPECT_EQ(model.overlays(), before);
    EXPECT_EQ(model.selectedOverlayID(), before[0].id());
    EXPECT_FALSE(model.editMode());
    EXPECT_THAT(platform.calls(), IsEmpty());
}

TEST_F(AppModelPresetTest, SelectsTheFirstLoadedOverlayAndKeepsTheMode) {
    model.addOverlay();
    model.addOverlay();
    model.saveDisplayPreset();
    const UUID first = model.overlays()[0].id();
    model.toggleEditMode();

    model.loadDisplayPreset();

    EXPECT_EQ(model.selectedOverlayID(), first);
    EXPECT_FALSE(model.editMode());
}

TEST_F(AppModelPresetTest, ClearsTheListWhereNothingWasSavedForTheDisplay) {
    model.addOverlay();

    model.loadDisplayPreset();

    EXPECT_EQ(status(), "No display preset saved");
    EXPECT_THAT(model.overlays(), IsEmpty());
    EXPECT_EQ(model.selectedOverlayID(), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(AppModelPresetTest, ShowsAndClosesPanelsAsItLoads) {
    model.addOverlay();
    model.saveDisplayPreset();
    model.addOverlay();

    model.loadDisplayPreset();
    // Closed panels let go of their surfaces in the next turn of the event loop.
    QCoreApplication::sendPostedEvents();

    EXPECT_EQ(platform.surfaces().size(), 1U);
}

TEST_F(AppModelPresetTest, SaysWithoutADisplayNumberThatNothingCanBeDone) {
    platform.setScreens({});

    model.saveDisplayPreset();
    EXPECT_EQ(status(), "Could not save display preset");
    model.loadDisplayPreset();
    EXPECT_EQ(status(), "Could not load display preset");

    Screen nameless = screenNumbered(7);
    nameless.displayID.reset();
    platform.setScreens({nameless});
    model.saveDisplayPreset();
    EXPECT_EQ(status(), "Could not save display preset");
}

TEST_F(AppModelPresetTest, SaysWithoutAnIdentifierInFrontThatThereIsNoApplication) {
    platform.setFrontmostApplication(FrontmostApplication{.processID = 42, .bundleID = std::nullopt});

    model.saveApplicationPreset();
    EXPECT_EQ(status(), "No foreground app detected");
    model.addOverlay();
    model.loadApplicationPreset();
    EXPECT_EQ(status(), "No foreground app detected");
    EXPECT_EQ(model.overlays().size(), 1U);
}

TEST_F(AppModelPresetTest, NamesFileAndPlaceWhenAFileCannotBeLoadedAndKeepsTheOverlays) {
    model.addOverlay();
    const std::vector<BlurOverlay> before = model.overlays();
    writeFile(R"({"screen:7": [{}]})");

    model.loadDisplayPreset();

    EXPECT_THAT(status(), ::testing::StartsWith("Load failed: presets.json: screen:7[0]"));
    EXPECT_THAT(status(), ::testing::Not(::testing::HasSubstr("\n")));
    EXPECT_EQ(model.overlays(), before);
    EXPECT_EQ(model.selectedOverlayID(), before[0].id());
}

TEST_F(AppModelPresetTest, LeavesAFileAloneThatItCannotRead) {
    writeFile("garbage");
    model.addOverlay();

    model.saveDisplayPreset();

    EXPECT_THAT(status(), ::testing::StartsWith("Save failed: presets.json"));
    EXPECT_EQ(fileText(), "garbage");
    model.saveApplicationPreset();
    EXPECT_THAT(status(), ::testing::StartsWith("Save failed: presets.json"));
    model.loadApplicationPreset();
    EXPECT_THAT(status(), ::testing::StartsWith("Load failed: presets.json"));
}

TEST_F(AppModelPresetTest, MakesNoFileBeforeAPresetIsSaved) {
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST(AppModelWithoutPresetStore, RunsAndSaysThatPresetsCannotBeHad) {
    FakePlatform platform;
    platform.setScreens({screenNumbered(7)});
    platform.setFrontmostApplication(FrontmostApplication{.processID = 42, .bundleID = "org.example.Mail"});
    int tries = 0;
    AppModel model(platform, [&]() -> std::unique_ptr<PresetStore> {
        ++tries;
        throw std::runtime_error("no directory");
    });

    model.addOverlay();
    EXPECT_EQ(model.overlays().size(), 1U);
    model.saveDisplayPreset();
    EXPECT_EQ(model.statusText(), QStringLiteral("Could not save display preset"));
    model.loadDisplayPreset();
    EXPECT_EQ(model.statusText(), QStringLiteral("Could not load display preset"));
    model.saveApplicationPreset();
    EXPECT_EQ(model.statusText(), QStringLiteral("No foreground app detected"));
    model.setSelectedOverlayID(std::nullopt);
    model.loadApplicationPreset();
    EXPECT_EQ(model.statusText(), QStringLiteral("No foreground app detected"));
    EXPECT_EQ(model.overlays().size(), 1U);
    EXPECT_EQ(tries, 1);
    model.clearOverlays();
    QCoreApplication::sendPostedEvents();
}

}  // namespace
}  // namespace pallwick
