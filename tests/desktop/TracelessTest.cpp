// A run that uses every command leaves nothing behind but the presets, and those only where some were saved.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <set>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using testing::ElementsAre;

std::set<std::string> everythingIn(const std::filesystem::path& directory) {
    std::set<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
        paths.insert(entry.path().lexically_relative(directory).string());
    }
    return paths;
}

class Run : public testing::Test {
protected:
    Run()
        : stage_(DesktopKind::openbox,
                 {.prepare = [this](support::PrivateDesktop& desktop) { before_ = everythingIn(desktop.home()); }}) {}

    /// Every command of the main window but those that save.
    void useEveryCommand() {
        const auto secret = stage_.openSecret();
        const support::AccessibleTree& controls = stage_.program().controls();
        stage_.add();
        stage_.add();
        stage_.setShape(Shape::circle);
        controls.await("slider", "Blur").setValue(10);
        controls.await("slider", "Opacity").setValue(20);
        stage_.program().click("check box", "Glass blur");
        stage_.awaitStatus("Style updated");
        stage_.lock();
        stage_.unlock();
        stage_.attachToLastWindow();
        stage_.operate("Detach");
        stage_.awaitStatus("Window attachment removed");
        stage_.operate("Remove Overlay");
        stage_.program().awaitOverlayCount(1);
        stage_.operate("Clear");
        stage_.program().awaitOverlayCount(0);
        stage_.choosePreset("Load Display Preset");
        stage_.awaitStatus("No display preset saved");
        stage_.choosePreset("Load App Preset");
        stage_.awaitStatus("No app preset saved");
    }

    /// Ends the program and returns what is in the home directory that was not there before it started.
    std::vector<std::string> leftBehind() {
        EXPECT_EQ(stage_.program().quit(), support::ExitStatus{});
        const std::set<std::string> after = everythingIn(stage_.desktop().home());
        EXPECT_TRUE(std::ranges::includes(after, before_));
        std::vector<std::string> left;
        std::ranges::set_difference(after, before_, std::back_inserter(left));
        return left;
    }

    std::set<std::string> before_;
    Stage stage_;
};

TEST_F(Run, ThatSavesNothingLeavesAnEmptyDirectory) {
    useEveryCommand();

    EXPECT_THAT(leftBehind(), ElementsAre(".local/share/Pallwick"));
}

TEST_F(Run, ThatSavesLeavesOneFile) {
    useEveryCommand();
    stage_.add();
    stage_.choosePreset("Save Display Preset");
    stage_.awaitStatus("Display preset saved");
    stage_.choosePreset("Save App Preset");
    stage_.awaitStatus("App preset saved");

    EXPECT_THAT(leftBehind(), ElementsAre(".local/share/Pallwick", ".local/share/Pallwick/presets.json"));
}

}  // namespace
}  // namespace pallwick::desktop
