// The program and another one that keeps its window above all clients in the same way leave each other alone.

#include <gmock/gmock.h>

#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Program;
using support::Reply;

/// Counts how often windows are restacked, moved or resized, on a connection of its own.
class ConfigureCount {
public:
    explicit ConfigureCount(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection_, root, XCB_CW_EVENT_MASK, &mask);
        static_cast<void>(take());
    }
    ~ConfigureCount() { xcb_disconnect(connection_); }
    ConfigureCount(const ConfigureCount&) = delete;
    ConfigureCount& operator=(const ConfigureCount&) = delete;

    /// Since the last call: of every child of the root.
    int take() {
        const Reply<xcb_get_input_focus_reply_t> done(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        int count = 0;
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
            count += (event->response_type & 0x7f) == XCB_CONFIGURE_NOTIFY ? 1 : 0;
        }
        return count;
    }

private:
    xcb_connection_t* connection_;
};

class Rival : public testing::TestWithParam<DesktopKind> {
protected:
    Rival() : stage_(GetParam()), secret_(stage_.openSecret()) {
        first_ = stage_.dragBy(stage_.add(), {.x = -100, .y = -60});
        constexpr support::PixelRect place{780, 440, 360, 200};
        rival_ = stage_.desktop().start({PALLWICK_RIVAL, std::to_string(place.x), std::to_string(place.y),
                                         std::to_string(place.width), std::to_string(place.height)});
        other_ = {.window = static_cast<xcb_window_t>(std::stoul(rival_->readLine())), .rect = place};
        later_ = stage_.openSecret("Later");
        awaitBothAbove(later_->window());
    }

    void awaitBothAbove(xcb_window_t client) {
        stage_.desktop().x().await("both above the client", [&] {
            return stage_.windows().isAbove(first_.window, client) && stage_.windows().isAbove(other_.window, client);
        });
    }

    /// Many turns of both programs, each after the server has answered what they sent in the one before.
    void letBothTurn() {
        constexpr int turns = 50;
        for (int turn = 0; turn < turns; ++turn) {
            static_cast<void>(stage_.program().controls().application().role());
            rival_->writeLine("turn");
            static_cast<void>(rival_->readLine());
            stage_.desktop().x().roundTrip();
        }
    }

    Stage stage_;
    std::unique_ptr<support::TestClient> secret_;
    std::unique_ptr<support::Process> rival_;
    Program::Overlay first_;
    Program::Overlay other_;
    std::unique_ptr<support::TestClient> later_;
};

TEST_P(Rival, CoversARaisedClientTogetherWithTheProgram) {
    stage_.windows().activate(secret_->window());
    stage_.desktop().x().await("the client raised",
                               [&] { return stage_.windows().isAbove(secret_->window(), later_->window()); });

    awaitBothAbove(secret_->window());
    stage_.awaitCovered(first_.rect);
    stage_.awaitCovered(other_.rect);
}

TEST_P(Rival, RestacksNothingOnceAllIsCovered) {
    ConfigureCount configures(stage_.desktop().server().display());
    letBothTurn();
    static_cast<void>(configures.take());

    letBothTurn();

    EXPECT_EQ(configures.take(), 0);
}

TEST_P(Rival, AnswersARaisedClientWithAHandfulOfRequests) {
    ConfigureCount configures(stage_.desktop().server().display());
    letBothTurn();
    static_cast<void>(configures.take());

    stage_.windows().activate(secret_->window());
    stage_.desktop().x().await("the client raised",
                               [&] { return stage_.windows().isAbove(secret_->window(), later_->window()); });
    awaitBothAbove(secret_->window());
    letBothTurn();
    const int whileRaised = configures.take();
    letBothTurn();

    // The window manager's own, and at most a few of each.
    EXPECT_LE(whileRaised, 24);
    EXPECT_EQ(configures.take(), 0);
}

INSTANTIATE_TEST_SUITE_P(Desktops, Rival,
                         testing::Values(DesktopKind::openbox, DesktopKind::openboxPicom,
                                         DesktopKind::xfwm4Compositing),
                         [](const auto& instance) { return describe(instance.param); });

}  // namespace
}  // namespace pallwick::desktop
