#pragma once

#include <PallwickMac/Platform/Fake/FakePlatform.h>
#include <PallwickMac/Services/OverlayContentView.h>

#include <gmock/gmock.h>

#include <memory>
#include <vector>

namespace pallwick {

struct FrameChange {
    UUID overlayID;
    Rect frame;

    friend bool operator==(const FrameChange&, const FrameChange&) = default;
};

/// A view in edit mode on a visible surface of 300 by 200 points at (100, 100), and what it has reported.
class OverlayContentViewFixture : public ::testing::Test {
protected:
    OverlayContentViewFixture() {
        surface.setFrame(overlay.frame);
        view.setSurface(&surface);
        view.update(overlay, true);
        surface.show();
        platform.clearCalls();
    }

    FakePlatform platform;
    BlurOverlay overlay{{.frame = {.x = 100, .y = 100, .width = 300, .height = 200}}};
    std::vector<FrameChange> frameChanges;
    std::vector<UUID> deleteRequests;
    OverlayContentView view{
        overlay,
        [this](const UUID& id, const Rect& frame) { frameChanges.push_back({.overlayID = id, .frame = frame}); },
        [this](const UUID& id) { deleteRequests.push_back(id); }};
    FakeOverlaySurface surface{platform, view};
};

}  // namespace pallwick
