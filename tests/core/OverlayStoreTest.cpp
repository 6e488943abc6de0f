#include "SampleRecords.h"
#include "SteppingClock.h"

#include <PallwickMacCore/Stores/OverlayStore.h>
#include <gmock/gmock.h>

namespace pallwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OverlayStoreTest : public testing::Test {
protected:
    /// A store of `overlays` whose clock is `clock_`.
    [[nodiscard]] OverlayStore storeOf(std::vector<BlurOverlay> overlays) {
        return OverlayStore(std::move(overlays), clock_.clock());
    }

    test::SteppingClock clock_;
};

TEST_F(OverlayStoreTest, StartsWithTheListItIsGiven) {
    const std::vector<BlurOverlay> overlays{test::overlayOf('A'), test::attachedOverlay()};

    EXPECT_EQ(OverlayStore(overlays).overlays(), overlays);
    EXPECT_THAT(OverlayStore().overlays(), IsEmpty());
}

TEST_F(OverlayStoreTest, AddsADefaultOverlayAtTheEnd) {
    OverlayStore store = storeOf({test::overlayOf('A')});

    const BlurOverlay added = store.addOverlay(2);

    ASSERT_EQ(store.overlays().size(), 2U);
    EXPECT_EQ(store.overlays().back(), added);
    EXPECT_EQ(added.displayID, 2U);
    EXPECT_EQ(added.frame, (Rect{.x = 160, .y = 160, .width = 320, .height = 180}));
    EXPECT_EQ(added.style, BlurStyle(50, "#000000", 100, true));
    EXPECT_EQ(added.shape, OverlayShape::rectangle);
    EXPECT_EQ(added.anchor, OverlayAnchor::screen);
    EXPECT_EQ(added.windowAttachment, std::nullopt);
}

TEST_F(OverlayStoreTest, ReadsTheClockTwiceForANewOverlay) {
    OverlayStore store = storeOf({});

    const BlurOverlay added = store.addOverlay(2);

    EXPECT_EQ(added.createdAt(), Date{1001});
    EXPECT_EQ(added.updatedAt, Date{1002});
    EXPECT_EQ(clock_.reads(), 2);
}

TEST_F(OverlayStoreTest, GivesEveryNewOverlayAnIdentityOfItsOwn) {
    OverlayStore store = storeOf({});

    const BlurOverlay first = store.addOverlay(2);
    const BlurOverlay second = store.addOverlay(2);

    EXPECT_NE(first.id(), second.id());
}

TEST_F(OverlayStoreTest, AddsAnOverlayWithTheGivenStyleAndAStandardizedFrame) {
    OverlayStore store = storeOf({});
    const BlurStyle style(10, "#ABCDEF", 20, false);

    const BlurOverlay added = store.addOverlay({.x = 300, .y = 300, .width = -100, .height = -50}, 3, style);

    EXPECT_EQ(added.frame, (Rect{.x = 200, .y = 250, .width = 100, .height = 50}));
    EXPECT_EQ(added.style, style);
    EXPECT_EQ(store.overlays().back(), added);
}

TEST_F(OverlayStoreTest, HandsOutACopyOfTheNewOverlay) {
    OverlayStore store = storeOf({});

    BlurOverlay added = store.addOverlay(2);
    added.displayID = 7;

    EXPECT_EQ(store.overlays().front().displayID, 2U);
}

TEST_F(OverlayStoreTest, ReplacesTheListWithoutTouchingTheRecords) {
    BlurOverlay inverted = test::overlayOf('B');
    inverted.frame = {.x = 1, .y = 2, .width = -3, .height = -4};
    const std::vector<BlurOverlay> replacement{inverted, inverted, test::attachedOverlay()};
    OverlayStore store = storeOf({test::overlayOf('A')});

    store.replace(replacement);

    EXPECT_EQ(store.overlays(), replacement);
    EXPECT_EQ(clock_.reads(), 0);
}

TEST_F(OverlayStoreTest, UpdatesAStyleWithoutNormalisingIt) {
    BlurStyle style;
    style.colorHex = "blue";
    style.intensity = 400;
    OverlayStore store = storeOf({test::overlayOf('A'), test::overlayOf('B')});

    store.updateStyle(test::uuidOf('B'), style);

    BlurOverlay expected = test::overlayOf('B');
    expected.style = style;
    expected.updatedAt = Date{1001};
    EXPECT_THAT(store.overlays(), ElementsAre(test::overlayOf('A'), expected));
}

TEST_F(OverlayStoreTest, StampsAnUpdateThatChangesNothing) {
    OverlayStore store = storeOf({test::overlayOf('A')});

    store.updateStyle(test::uuidOf('A'), store.overlays().front().style);

    BlurOverlay expected = test::overlayOf('A');
    expected.updatedAt = Date{1001};
    EXPECT_THAT(store.overlays(), ElementsAre(expected));
    EXPECT_EQ(clock_.reads(), 1);
}

TEST_F(OverlayStoreTest, UpdatesAShape) {
    OverlayStore store = storeOf({test::overlayOf('A')});

    store.updateShape(test::uuidOf('A'), OverlayShape::circle);

    EXPECT_EQ(store.overlays().front().shape, OverlayShape::circle);
    EXPECT_EQ(store.overlays().front().updatedAt, Date{1001});
}

TEST_F(OverlayStoreTest, StoresAStandardizedFrameAndKeepsTheAttachmentsOffset) {
    OverlayStore store = storeOf({test::attachedOverlay()});

    store.updateFrame(test::uuidOf('A'), {.x = 300, .y = 300, .width = -100, .height = -50});

    EXPECT_EQ(store.overlays().front().frame, (Rect{.x = 200, .y = 250, .width = 100, .height = 50}));
    EXPECT_EQ(store.overlays().front().windowAttachment, test::attachedOverlay().windowAttachment);
    EXPECT_EQ(store.overlays().front().updatedAt, Date{1001});
}

TEST_F(OverlayStoreTest, AttachesAnOverlayWhereItStands) {
    OverlayStore store = storeOf({test::overlayOf('A')});
    store.updateFrame(test::uuidOf('A'), {.x = 150, .y = 200, .width = 120, .height = 40});

    store.attachToWindow(test::uuidOf('A'), test::sampleWindow());

    const BlurOverlay& overlay = store.overlays().front();
    EXPECT_EQ(overlay.anchor, OverlayAnchor::window);
    ASSERT_TRUE(overlay.windowAttachment);
    EXPECT_EQ(overlay.windowAttachment->windowID, 77U);
    EXPECT_EQ(overlay.windowAttachment->offset, (Point{.x = 50, .y = 100}));
    EXPECT_EQ(overlay.updatedAt, Date{1002});
}

TEST_F(OverlayStoreTest, ReplacesAnEarlierAttachment) {
    OverlayStore store = storeOf({test::attachedOverlay()});
    TrackedWindow other = test::sampleWindow();
    other.id = 78;
    other.frame = {.x = 60, .y = 60, .width = 10, .height = 10};

    store.attachToWindow(test::uuidOf('A'), other);

    EXPECT_EQ(store.overlays().front().windowAttachment,
              WindowAttachment(other, {.x = 160, .y = 160, .width = 320, .height = 180}));
}

TEST_F(OverlayStoreTest, MovesAnAttachedOverlayWithItsWindow) {
    OverlayStore store = storeOf({test::overlayOf('A')});
    store.updateFrame(test::uuidOf('A'), {.x = 150, .y = 200, .width = 120, .height = 40});
    store.attachToWindow(test::uuidOf('A'), test::sampleWindow());

    store.updateAttachedOverlayFrame(test::uuidOf('A'), {.x = 400, .y = 50, .width = 800, .height = 600});

    EXPECT_EQ(store.overlays().front().frame, (Rect{.x = 450, .y = 150, .width = 120, .height = 40}));
    EXPECT_EQ(store.overlays().front().updatedAt, Date{1003});
}

TEST_F(OverlayStoreTest, KeepsANewSizeAndNotANewPlaceWhenFollowing) {
    OverlayStore store = storeOf({test::attachedOverlay()});
    store.updateFrame(test::uuidOf('A'), {.x = 0, .y = 0, .width = 500, .height = 50});

    store.updateAttachedOverlayFrame(test::uuidOf('A'), test::sampleWindow().frame);

    EXPECT_EQ(store.overlays().front().frame, (Rect{.x = 112, .y = 140, .width = 500, .height = 50}));
}

TEST_F(OverlayStoreTest, OnlyStampsAnOverlayThatFollowsNothing) {
    OverlayStore store = storeOf({test::overlayOf('A')});

    store.updateAttachedOverlayFrame(test::uuidOf('A'), {.x = 400, .y = 50, .width = 800, .height = 600});

    BlurOverlay expected = test::overlayOf('A');
    expected.updatedAt = Date{1001};
    EXPECT_THAT(store.overlays(), ElementsAre(expected));
}

TEST_F(OverlayStoreTest, DetachesFromAWindow) {
    OverlayStore store = storeOf({test::attachedOverlay()});

    store.detachFromWindow(test::uuidOf('A'));

    EXPECT_EQ(store.overlays().front().anchor, OverlayAnchor::screen);
    EXPECT_EQ(store.overlays().front().windowAttachment, std::nullopt);
    EXPECT_EQ(store.overlays().front().frame, test::attachedOverlay().frame);
    EXPECT_EQ(store.overlays().front().updatedAt, Date{1001});
}

TEST_F(OverlayStoreTest, DetachesAnApplicationsOverlayToItsScreen) {
    BlurOverlay overlay = test::overlayOf('A');
    overlay.anchor = OverlayAnchor::application;
    OverlayStore store = storeOf({overlay});

    store.detachFromWindow(test::uuidOf('A'));

    EXPECT_EQ(store.overlays().front().anchor, OverlayAnchor::screen);
}

struct Operation {
    const char* name;
    void (*apply)(OverlayStore&, const UUID&);
};

class OverlayStoreOperation : public testing::TestWithParam<Operation> {};

TEST_P(OverlayStoreOperation, DoesNothingForAnUnknownId) {
    test::SteppingClock clock;
    const std::vector<BlurOverlay> overlays{test::overlayOf('B'), test::attachedOverlay()};
    OverlayStore store(overlays, clock.clock());

    GetParam().apply(store, test::uuidOf('F'));

    EXPECT_EQ(store.overlays(), overlays);
    EXPECT_EQ(clock.reads(), 0);
}

TEST_P(OverlayStoreOperation, KeepsTheOrderOfTheRest) {
    OverlayStore store({test::overlayOf('B'), test::attachedOverlay(), test::overlayOf('0')});

    GetParam().apply(store, test::uuidOf('A'));

    EXPECT_EQ(store.overlays().front(), test::overlayOf('B'));
    EXPECT_EQ(store.overlays().back(), test::overlayOf('0'));
}

INSTANTIATE_TEST_SUITE_P(
    All, OverlayStoreOperation,
    testing::Values(
        Operation{"updateStyle", [](OverlayStore& store, const UUID& id) { store.updateStyle(id, BlurStyle(1)); }},
        Operation{"updateShape",
                  [](OverlayStore& store, const UUID& id) { store.updateShape(id, OverlayShape::circle); }},
        Operation{"updateFrame", [](OverlayStore& store, const UUID& id) { store.updateFrame(id, Rect()); }},
        Operation{"attachToWindow",
                  [](OverlayStore& store, const UUID& id) { store.attachToWindow(id, test::sampleWindow()); }},
        Operation{"detachFromWindow", [](OverlayStore& store, const UUID& id) { store.detachFromWindow(id); }},
        Operation{"updateAttachedOverlayFrame",
                  [](OverlayStore& store, const UUID& id) { store.updateAttachedOverlayFrame(id, Rect()); }},
        Operation{"removeOverlay", [](OverlayStore& store, const UUID& id) { store.removeOverlay(id); }}),
    [](const auto& instance) { return instance.param.name; });

TEST_F(OverlayStoreTest, UpdatesOnlyTheFirstOfTwoRecordsWithOneId) {
    OverlayStore store = storeOf({test::overlayOf('A'), test::overlayOf('A')});

    store.updateShape(test::uuidOf('A'), OverlayShape::circle);

    EXPECT_EQ(store.overlays().front().shape, OverlayShape::circle);
    EXPECT_EQ(store.overlays().back(), test::overlayOf('A'));
}

TEST_F(OverlayStoreTest, RemovesEveryRecordWithTheIdAndStampsNothing) {
    OverlayStore store = storeOf({test::overlayOf('A'), test::overlayOf('B'), test::overlayOf('A')});

    store.removeOverlay(test::uuidOf('A'));

    EXPECT_THAT(store.overlays(), ElementsAre(test::overlayOf('B')));
    EXPECT_EQ(clock_.reads(), 0);
}

TEST_F(OverlayStoreTest, RemovesTheRightRecordsWhenTheIdIsOneOfTheirs) {
    OverlayStore store =
        storeOf({test::overlayOf('A'), test::overlayOf('B'), test::overlayOf('A'), test::overlayOf('B')});

    store.removeOverlay(store.overlays().front().id());

    EXPECT_THAT(store.overlays(), ElementsAre(test::overlayOf('B'), test::overlayOf('B')));
}

TEST_F(OverlayStoreTest, ClearsTheListAndItsStorage) {
    OverlayStore store = storeOf({test::overlayOf('A'), test::overlayOf('B')});

    store.clear();

    EXPECT_THAT(store.overlays(), IsEmpty());
    EXPECT_EQ(store.overlays().capacity(), 0U);
}

TEST_F(OverlayStoreTest, TakesNewOverlaysAfterClearing) {
    OverlayStore store = storeOf({test::overlayOf('A'), test::overlayOf('B')});
    store.clear();

    const BlurOverlay added = store.addOverlay(1);

    EXPECT_THAT(store.overlays(), ElementsAre(added));
}

}  // namespace
}  // namespace pallwick
