#include <PallwickMac/Platform/X11/SurfaceHost.h>
#include <PallwickMac/Platform/X11/X11OverlaySurface.h>

#include <QCoreApplication>

#include "SurfaceTest.h"

namespace pallwick::x11 {
namespace {

/// How many requests a surface's calls cost, counted on a connection that nothing else uses.
class SurfaceTraffic : public SurfaceTest {
protected:
    void start(bool compositing = false) {
        startDesktop();
        startPlatform();
        stopPlatform();
        connection_.emplace();
        host_.emplace(*connection_, PixelMapping({.x = 0, .y = 0, .width = 1280, .height = 800}, 1),
                      PixelRect{.x = 0, .y = 0, .width = 1280, .height = 800}, compositing);
        content_.state = DrawingState{.size = {.width = 200, .height = 100}};
        surface_ = std::make_unique<X11OverlaySurface>(*host_, content_);
        surface_->setFrame(frame_);
        surface_->setEffectLayer(layer_);
        surface_->setIgnoresMouseEvents(true);
        surface_->show();
        other_ = std::make_unique<X11OverlaySurface>(*host_, content_);
        other_->setFrame(frame_);
        other_->show();
        // The stock of windows fills itself up, and the stacking order is looked at once more after a pause. That pause
        // is far shorter than so many round trips.
        constexpr int turns = 2000;
        for (int i = 0; i < turns; ++i) {
            commit();
            static_cast<void>(internAtom(connection_->xcb(), "_PALLWICK_TEST"));
        }
    }

    ~SurfaceTraffic() override {
        other_.reset();
        surface_.reset();
    }

    /// What the surfaces put off until the event loop goes on.
    static void commit() { QCoreApplication::processEvents(); }

    template <typename Calls>
    [[nodiscard]] unsigned requestsOf(const Calls& calls) {
        const unsigned before = xcb_no_operation(connection_->xcb()).sequence;
        calls();
        commit();
        return xcb_no_operation(connection_->xcb()).sequence - before - 1;
    }

    const Rect frame_{.x = 100, .y = 100, .width = 200, .height = 100};
    const Rect movedFrame_{.x = 110, .y = 100, .width = 200, .height = 100};
    /// To be changed before `start` only.
    EffectLayer layer_{.shape = EffectLayer::Shape::ellipse};
    std::optional<Connection> connection_;
    std::optional<SurfaceHost> host_;
    std::unique_ptr<X11OverlaySurface> surface_;
    std::unique_ptr<X11OverlaySurface> other_;
};

struct Look {
    std::string name;
    bool glass;
    bool compositing;
};

class MoveOfWhatShowsItsBackdrop : public SurfaceTraffic, public ::testing::WithParamInterface<Look> {};

TEST_F(SurfaceTraffic, IsNoneForTheFrameItHas) {
    start();

    EXPECT_EQ(requestsOf([this] { surface_->setFrame(frame_); }), 0U);
}

TEST_F(SurfaceTraffic, IsNoneForADrawingThatWouldLookTheSame) {
    start();

    EXPECT_EQ(requestsOf([this] { surface_->setNeedsDisplay(); }), 0U);
}

TEST_F(SurfaceTraffic, IsNoneForTheLayerTheCursorsAndTheMouseItHas) {
    start();

    EXPECT_EQ(requestsOf([this] {
                  surface_->setEffectLayer(layer_);
                  surface_->setCursorRegions({});
                  surface_->setIgnoresMouseEvents(true);
              }),
              0U);
}

TEST_F(SurfaceTraffic, IsNoneForShowingAllSurfacesInTheOrderTheyAreIn) {
    start();

    EXPECT_EQ(requestsOf([this] {
                  surface_->show();
                  other_->show();
              }),
              0U);
}

TEST_F(SurfaceTraffic, IsNoneForAWholeSynchronisationThatChangesNothing) {
    start();

    EXPECT_EQ(requestsOf([this] {
                  for (X11OverlaySurface* surface : {surface_.get(), other_.get()}) {
                      surface->setFrame(frame_);
                      surface->setIgnoresMouseEvents(surface == surface_.get());
                      surface->setNeedsDisplay();
                      surface->show();
                  }
              }),
              0U);
}

TEST_F(SurfaceTraffic, IsNoneForHidingWhatIsHidden) {
    start();
    surface_->hide();

    EXPECT_EQ(requestsOf([this] { surface_->hide(); }), 0U);
}

TEST_F(SurfaceTraffic, IsNoneForChangesWhileItIsHidden) {
    start();
    surface_->hide();

    EXPECT_EQ(requestsOf([this] {
                  surface_->setFrame({.x = 0, .y = 0, .width = 50, .height = 50});
                  surface_->setEffectLayer({});
                  surface_->setNeedsDisplay();
              }),
              0U);
}

TEST_F(SurfaceTraffic, IsOneForAMoveWhereACompositingManagerShowsWhatLiesBeneath) {
    layer_.hidden = true;
    start(true);

    EXPECT_EQ(requestsOf([this] { surface_->setFrame(movedFrame_); }), 1U);
}

TEST_F(SurfaceTraffic, IsOneForAMoveOfGlassThatIsClear) {
    layer_.alpha = 0;
    start(true);

    EXPECT_EQ(requestsOf([this] { surface_->setFrame(movedFrame_); }), 1U);
}

TEST_P(MoveOfWhatShowsItsBackdrop, CapturesTheNewPlaceAndKeepsTheDrawing) {
    layer_.hidden = !GetParam().glass;
    start(GetParam().compositing);
    const int drawings = content_.drawings;

    EXPECT_GT(requestsOf([this] { surface_->setFrame(movedFrame_); }), 1U);
    EXPECT_EQ(content_.drawings, drawings);
}

INSTANTIATE_TEST_SUITE_P(Looks, MoveOfWhatShowsItsBackdrop,
                         ::testing::Values(Look{"glassUncomposited", true, false}, Look{"glassComposited", true, true},
                                           Look{"tintUncomposited", false, false}),
                         [](const auto& instance) { return instance.param.name; });

TEST_F(SurfaceTraffic, IsThereWhereTheDrawingDiffers) {
    start();
    content_.state->showsBorder = true;

    EXPECT_GT(requestsOf([this] { surface_->setNeedsDisplay(); }), 0U);
}

TEST_F(SurfaceTraffic, IsThereWhereTheOrderChanges) {
    start();

    EXPECT_GT(requestsOf([this] { surface_->show(); }), 0U);
    commit();
    EXPECT_TRUE(areStacked({other_->window(), surface_->window()}));
}

}  // namespace
}  // namespace pallwick::x11
