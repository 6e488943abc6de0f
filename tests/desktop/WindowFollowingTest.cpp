// An overlay attached to another program's window goes where that goes, and shows while that program is in front.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Accessible;
using support::AccessibleState;
using support::PixelPoint;
using support::PixelRect;
using support::Program;
using support::TestClient;

class WindowFollowing : public testing::TestWithParam<DesktopKind> {
protected:
    WindowFollowing() : stage_(GetParam()), secret_(stage_.openSecret()) {
        overlay_ = stage_.add();
        stage_.attachToLastWindow();
        stage_.awaitStatus("Attached to " + secretClass() + " - Secret");
        bringToFront(*secret_);
        awaitShownAt(overlay_.rect);
    }

    [[nodiscard]] std::string secretClass() { return stage_.windows().windowClass(secret_->window()).at(1); }

    void bringToFront(TestClient& client) { stage_.windows().activate(client.window()); }

    void awaitShownAt(const PixelRect& rect) { stage_.program().awaitOverlayAt(rect); }
    void awaitHidden() { stage_.program().awaitOverlayCount(0); }

    /// A window of a program of its own, lower on the screen than the secret, and not in front of it by name either.
    std::unique_ptr<TestClient> openWitness() {
        return std::make_unique<TestClient>(
            stage_.desktop(),
            TestClient::Options{
                .title = "Witness", .rect = {.x = 40, .y = 700, .width = 300, .height = 200}, .undecorated = true});
    }

    /// Adds a second overlay, attached to the witness's window, and returns where it shows.
    PixelRect attachToWitness(TestClient& witness) {
        const Program::Overlay overlay = stage_.add();
        stage_.attachToLastWindow();
        stage_.awaitStatus("Attached to " + secretClass() + " - Witness");
        bringToFront(witness);
        return stage_.program().awaitOverlayAt(overlay.rect).rect;
    }

    /// Returns once the program has looked after all attached overlays: when that of the witness has followed it.
    void awaitTick(TestClient& witness, const PixelRect& overlay) {
        constexpr int way = 35;
        stage_.windows().move(witness.window(), {.x = witness.rect().x + way, .y = witness.rect().y});
        awaitShownAt({.x = overlay.x + way, .y = overlay.y, .width = overlay.width, .height = overlay.height});
    }

    /// The list's row of the first overlay, which tells where that is.
    std::string firstRow() { return itemsBeginning("Overlay 1, ").at(0); }

    /// What the inspector says of the selected overlay's attachment, empty where it says nothing.
    std::string attachedLine() {
        const std::vector<std::string> lines = itemsBeginning("Attached to ");
        return lines.empty() ? std::string() : lines.front();
    }

    /// The names of all things of the program's windows that begin so.
    std::vector<std::string> itemsBeginning(const std::string& text) {
        std::vector<std::string> names;
        for (const Accessible& item : stage_.program().controls().application().findAll(
                 [&](const Accessible& candidate) { return candidate.name().starts_with(text); })) {
            names.push_back(item.name());
        }
        return names;
    }

    bool isEnabled(const std::string& button) {
        return stage_.program().controls().await("push button", button).has(AccessibleState::enabled);
    }

    /// Moves the window so that its own corner is `way` further, and returns where the overlay belongs then.
    PixelRect moveSecretBy(const PixelPoint& way) {
        const PixelRect before = secret_->rect();
        stage_.windows().move(secret_->window(), {.x = before.x + way.x, .y = before.y + way.y});
        return {.x = overlay_.rect.x + way.x,
                .y = overlay_.rect.y + way.y,
                .width = overlay_.rect.width,
                .height = overlay_.rect.height};
    }

    Stage stage_;
    std::unique_ptr<TestClient> secret_;
    Program::Overlay overlay_;
};

INSTANTIATE_TEST_SUITE_P(Desktops, WindowFollowing,
                         testing::Values(DesktopKind::openbox, DesktopKind::openboxPicom, DesktopKind::xfwm4,
                                         DesktopKind::xfwm4Compositing),
                         [](const auto& instance) { return describe(instance.param); });

TEST_P(WindowFollowing, MovesTheOverlayAfterItsWindow) {
    const PixelRect expected = moveSecretBy({.x = -60, .y = 45});

    awaitShownAt(expected);
}

TEST_P(WindowFollowing, ShowsTheOverlayOnlyWhileTheOwnerIsInFront) {
    stage_.windows().activate(stage_.mainWindow());
    awaitHidden();

    bringToFront(*secret_);
    awaitShownAt(overlay_.rect);
}

TEST_P(WindowFollowing, HidesTheOverlayWhileAThirdProgramIsInFront) {
    const auto other = openWitness();

    bringToFront(*other);
    awaitHidden();

    bringToFront(*secret_);
    awaitShownAt(overlay_.rect);
}

TEST_P(WindowFollowing, TellsProgramsApartThatClaimToBeTheSameProcess) {
    stage_.windows().setCardinal(secret_->window(), "_NET_WM_PID", 1);
    stage_.operate("Detach");
    stage_.awaitStatus("Window attachment removed");
    stage_.attachToLastWindow();
    stage_.awaitStatus("Attached to " + secretClass() + " - Secret");
    const auto other = openWitness();
    stage_.windows().setCardinal(other->window(), "_NET_WM_PID", 1);

    bringToFront(*secret_);
    awaitShownAt(overlay_.rect);

    bringToFront(*other);
    awaitHidden();
}

TEST_P(WindowFollowing, StaysWhereItIsOnceItsWindowIsClosedThoughThereIsANewOneOfThatName) {
    const std::string row = firstRow();
    const auto witness = openWitness();
    // Before the old one goes: the server gives the number of a window that is gone to the next that comes.
    auto reopened = stage_.openSecret();
    stage_.windows().close(secret_->window());
    secret_->awaitEvent("close");
    secret_ = std::move(reopened);
    // The status line would tell of the attachment too.
    stage_.lock();

    EXPECT_EQ(attachedLine(), "Attached to " + secretClass() + " - Secret");
    EXPECT_TRUE(isEnabled("Detach"));
    const PixelRect witnessOverlay = attachToWitness(*witness);
    moveSecretBy({.x = -60, .y = 45});
    awaitTick(*witness, witnessOverlay);

    EXPECT_EQ(firstRow(), row);
}

TEST_P(WindowFollowing, WaitsWhileItsWindowIsMinimisedAndFollowsAgain) {
    stage_.windows().minimise(secret_->window());
    const PixelRect expected = moveSecretBy({.x = -30, .y = -20});

    bringToFront(*secret_);

    awaitShownAt(PixelRect{.x = overlay_.rect.x + secret_->rect().x - stage_.secretRect().x,
                           .y = overlay_.rect.y + secret_->rect().y - stage_.secretRect().y,
                           .width = expected.width,
                           .height = expected.height});
}

TEST_P(WindowFollowing, FollowsAgainAfterAVisitToAnotherWorkspace) {
    stage_.windows().setWorkspaceCount(2);
    stage_.windows().switchToWorkspace(1);
    stage_.windows().switchToWorkspace(0);
    bringToFront(*secret_);

    awaitShownAt(moveSecretBy({.x = 25, .y = 15}));
}

TEST_P(WindowFollowing, WaitsWhileItsWindowIsOnAnotherWorkspace) {
    const auto witness = openWitness();
    const PixelRect witnessOverlay = attachToWitness(*witness);
    stage_.windows().setWorkspaceCount(2);
    stage_.windows().sendToWorkspace(witness->window(), 1);
    const std::string row = firstRow();

    stage_.windows().switchToWorkspace(1);
    bringToFront(*witness);
    const PixelRect expected = moveSecretBy({.x = -60, .y = 45});
    awaitTick(*witness, witnessOverlay);
    EXPECT_EQ(firstRow(), row);

    stage_.windows().switchToWorkspace(0);
    bringToFront(*secret_);
    awaitShownAt(expected);
}

TEST_P(WindowFollowing, OffersWindowsByTheNamesOfTheirApplications) {
    const std::filesystem::path folder = stage_.desktop().dataHome() / "applications";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "org.example.Paint.desktop")
        << "[Desktop Entry]\nType=Application\nName=Paint Shop\nStartupWMClass=paint\n";
    const TestClient known(stage_.desktop(), {.title = "Sketch", .windowClass = "paint"});
    const TestClient unknown(stage_.desktop(), {.title = "Notes", .windowClass = "scribble"});

    stage_.operate("Refresh");

    static_cast<void>(stage_.program().controls().await("list item", "Paint Shop - Sketch"));
    static_cast<void>(stage_.program().controls().await("list item", "scribble - Notes"));
}

TEST_P(WindowFollowing, KeepsAnOverlayWhereItWasDraggedRelativeToItsWindow) {
    const Program::Overlay moved = stage_.dragBy(overlay_, {.x = 40, .y = -30});
    overlay_.rect = moved.rect;

    awaitShownAt(moveSecretBy({.x = -50, .y = 10}));
}

TEST_P(WindowFollowing, LeavesTheOverlayBehindOnceItIsDetached) {
    stage_.operate("Detach");
    stage_.awaitStatus("Window attachment removed");

    moveSecretBy({.x = -60, .y = 45});
    stage_.windows().activate(stage_.mainWindow());
    stage_.settle();

    awaitShownAt(overlay_.rect);
}

}  // namespace
}  // namespace pallwick::desktop
