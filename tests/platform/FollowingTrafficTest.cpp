// What the program asks of the X server at every tick while an overlay follows a window.

#include <PallwickMac/App/AppModel.h>
#include <gmock/gmock.h>
#include <support/TestClient.h>
#include <support/XProxy.h>
#include <xcb/res.h>

#include <QCoreApplication>

#include <optional>
#include <set>

#include "PlatformTest.h"

namespace pallwick::x11 {
namespace {

using support::TestClient;
using support::XProxy;
using ::testing::Contains;
using ::testing::IsEmpty;

/// The model on the real platform, everything that it says to the server counted.
class FollowingTraffic : public PlatformTest {
protected:
    void start() {
        startDesktop({.windowManager = support::WindowManager::openbox});
        client_.emplace(desktop(), TestClient::Options{});
        // The toolkit, which no tick concerns, keeps to its own way to the server.
        startPlatform();
        stopPlatform();
        proxy_.emplace(desktop().server().display());
        qputenv("DISPLAY", proxy_->display().c_str());
        startPlatform();
        model_.emplace(platform(), [] { return std::unique_ptr<PresetStore>(); });
        model_->addOverlay();
        model_->setSelectedWindowID(client_->window());
        model_->attachSelectedOverlayToWindow();
        desktop().windows().activate(client_->window());
        await("the overlay shown", [this] { return overlayRect().has_value(); });
    }

    ~FollowingTraffic() override {
        model_.reset();
        // A closed panel lets its surface go when the event loop runs again.
        QCoreApplication::processEvents();
        stopPlatform();
    }

    /// Where the overlay is, none while it is hidden.
    [[nodiscard]] std::optional<support::PixelRect> overlayRect() {
        constexpr int depthWithAlpha = 32;
        support::Windows& windows = desktop().windows();
        for (const xcb_window_t window : windows.stacking()) {
            const std::optional<support::PixelRect> rect = windows.rect(window);
            if (windows.depth(window) == depthWithAlpha && rect && rect->intersects(x().rootRect())) {
                return rect;
            }
        }
        return std::nullopt;
    }

    /// The protocol's numbers of all requests until a further tick is over, but for those that only ask.
    [[nodiscard]] std::set<int> changesOfATick() {
        std::set<int> seen;
        // Nothing but a tick looks where a window is.
        await("a tick", [&] {
            for (const auto& [request, count] : proxy_->takeTraffic().requests) {
                seen.insert(request);
            }
            return seen.contains(XCB_TRANSLATE_COORDINATES);
        });
        settle();
        for (const auto& [request, count] : proxy_->takeTraffic().requests) {
            seen.insert(request);
        }
        for (const int question : {XCB_GET_WINDOW_ATTRIBUTES, XCB_GET_GEOMETRY, XCB_QUERY_TREE, XCB_GET_PROPERTY,
                                   XCB_QUERY_POINTER, XCB_TRANSLATE_COORDINATES, XCB_GET_INPUT_FOCUS,
                                   int{xcb_get_extension_data(x().get(), &xcb_res_id)->major_opcode}}) {
            seen.erase(question);
        }
        return seen;
    }

    /// A new overlay looks to itself for a while.
    void awaitAQuietTick() {
        await("a tick that only asks", [this] { return changesOfATick().empty(); });
    }

    std::optional<TestClient> client_;
    std::optional<XProxy> proxy_;
    std::optional<AppModel> model_;
};

TEST_F(FollowingTraffic, OnlyAsksWhileTheWindowStaysWhereItIs) {
    start();
    awaitAQuietTick();

    constexpr int ticks = 5;
    for (int tick = 0; tick < ticks; ++tick) {
        EXPECT_THAT(changesOfATick(), IsEmpty());
    }
}

TEST_F(FollowingTraffic, MovesTheOverlayOnceTheWindowHasMoved) {
    start();
    awaitAQuietTick();
    const support::PixelRect before = overlayRect().value();
    constexpr int way = 30;

    client_->place({.x = client_->rect().x + way, .y = client_->rect().y, .width = 300, .height = 200});
    desktop().x().await("the window moved", [this] { return client_->rect().x == 100 + way; });

    EXPECT_THAT(changesOfATick(), Contains(XCB_CONFIGURE_WINDOW));
    EXPECT_EQ(overlayRect()->x, before.x + way);
}

}  // namespace
}  // namespace pallwick::x11
