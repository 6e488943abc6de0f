// Frosted glass: what lies beneath an overlay shows through it as blurred as the style says, the same with and without
// a compositing manager, and follows what happens beneath.

#include <gmock/gmock.h>
#include <xcb/shape.h>

#include <array>
#include <chrono>

#include "PaintCounter.h"
#include "SeenThroughGlass.h"
#include "Stage.h"

namespace pallwick::desktop {
namespace {

using support::Colour;
using support::PixelArea;
using support::PixelPoint;
using support::PixelRect;
using support::PrivateDesktop;
using support::Program;
using support::Screenshot;
using support::TestClient;
using support::Timeout;

/// So far in from an edge beneath, in points, nothing of what lies beyond shows in the blur.
constexpr int blurReach = 60;
constexpr GlassStyle halfBlurred{.blur = 60, .opacity = 50};
/// Of what lies beneath it, next to nothing stays sharp.
constexpr GlassStyle hiding{.blur = 100, .opacity = 90};

std::uint32_t pixel(int level) {
    const auto channel = static_cast<std::uint32_t>(level);
    return channel << 16 | channel << 8 | channel;
}

class GlassStage {
public:
    explicit GlassStage(DesktopKind kind) : GlassStage(kind, Stage::Options{}) {}
    GlassStage(DesktopKind kind, const Stage::Options& options) : scale_(options.scale), stage_(kind, options) {}

    [[nodiscard]] Stage& stage() { return stage_; }

    [[nodiscard]] std::unique_ptr<TestClient> open(const PixelRect& rect, int ground, int mark) {
        return std::make_unique<TestClient>(
            stage_.desktop(),
            TestClient::Options{
                .title = "Beneath", .rect = rect, .ground = grey(ground), .mark = grey(mark), .undecorated = true});
    }

    /// Black on white stripes.
    [[nodiscard]] std::unique_ptr<TestClient> openStriped() { return open(stage_.secretRect(), 255, 0); }

    /// One beneath the overlay that no window manager looks after: it is a child of the root itself.
    [[nodiscard]] std::unique_ptr<TestClient> openUnmanaged(const PixelRect& rect, int level) {
        auto client = std::make_unique<TestClient>(
            stage_.desktop(),
            TestClient::Options{.rect = rect, .ground = grey(level), .mark = grey(level), .overrideRedirect = true});
        const std::array<std::uint32_t, 2> place{overlay_.window, XCB_STACK_MODE_BELOW};
        support::XConnection& x = stage_.desktop().x();
        xcb_configure_window(x.get(), client->window(), XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                             place.data());
        x.roundTrip();
        return client;
    }

    /// Paints all of a window or pixmap in one request, which the server tells of as one damage.
    void fill(xcb_drawable_t drawable, const PixelRect& rect, int level) {
        support::XConnection& x = stage_.desktop().x();
        const std::uint32_t colour = pixel(level);
        const xcb_gcontext_t pen = xcb_generate_id(x.get());
        xcb_create_gc(x.get(), pen, drawable, XCB_GC_FOREGROUND, &colour);
        const xcb_rectangle_t whole{.x = 0,
                                    .y = 0,
                                    .width = static_cast<std::uint16_t>(rect.width),
                                    .height = static_cast<std::uint16_t>(rect.height)};
        xcb_poly_fill_rectangle(x.get(), drawable, pen, 1, &whole);
        xcb_free_gc(x.get(), pen);
        x.roundTrip();
    }

    /// A background picture as programs that set one leave it.
    void setGroundPicture(int level) {
        support::XConnection& x = stage_.desktop().x();
        const PixelRect root = x.rootRect();
        const xcb_pixmap_t picture = xcb_generate_id(x.get());
        xcb_create_pixmap(x.get(), 24, picture, x.root(), static_cast<std::uint16_t>(root.width),
                          static_cast<std::uint16_t>(root.height));
        fill(picture, root, level);
        xcb_change_window_attributes(x.get(), x.root(), XCB_CW_BACK_PIXMAP, &picture);
        xcb_clear_area(x.get(), 0, x.root(), 0, 0, 0, 0);
        xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, x.root(), x.atom("_XROOTPMAP_ID"), XCB_ATOM_PIXMAP, 32, 1,
                            &picture);
        x.roundTrip();
    }

    Program::Overlay add(const GlassStyle& style) {
        overlay_ = stage_.add();
        stage_.setStyle(style.blur, style.opacity);
        // Where the pointer is, the overlay's controls show.
        stage_.pointer().moveTo({.x = 5, .y = 5});
        return overlay_;
    }

    /// What the overlay covers, less a rim for its outline, where the blur reaches nothing beyond `beneath`.
    [[nodiscard]] PixelArea measured(const PixelRect& beneath, Shape shape = Shape::rectangle) const {
        const int reach = static_cast<int>(blurReach * scale_);
        const int rim = static_cast<int>(4 * scale_);
        if (shape == Shape::circle) {
            return PixelArea::ellipse(overlay_.rect.inset(rim));
        }
        // Clear of the rounded corners.
        return PixelArea::rectangle(overlay_.rect.inset(2 * rim).intersection(beneath.inset(reach)));
    }

    /// Returns the first right picture. Says what is wrong in the last one where none comes.
    Screenshot expectGlass(const PixelArea& area, const GreyPicture& beneath, const GlassStyle& style) {
        std::string last;
        try {
            return stage_.desktop().awaitPixels("the glass", [&](const Screenshot& screen) {
                last = deviation(screen, area, beneath, style);
                return last.empty();
            });
        } catch (const Timeout& timeout) {
            ADD_FAILURE() << timeout.what() << ": " << last;
            return stage_.desktop().screenshot();
        }
    }

    /// The same, and still so when everybody has said all they have to say.
    void expectSettledGlass(const PixelArea& area, const GreyPicture& beneath, const GlassStyle& style) {
        expectGlass(area, beneath, style);
        stage_.settle();
        EXPECT_EQ(deviation(stage_.desktop().screenshot(), area, beneath, style), "");
    }

    Program::Overlay overlay_;

private:
    double scale_;
    Stage stage_;
};

class Glass : public testing::TestWithParam<DesktopKind>, protected GlassStage {
protected:
    Glass() : GlassStage(GetParam()) {}

    [[nodiscard]] bool isComposited() const {
        return GetParam() == DesktopKind::openboxPicom || GetParam() == DesktopKind::xfwm4Compositing;
    }

    /// The first pixel of the frame, outside the shape, that differs between two pictures; empty when there
    /// is none. A pixel's width along the outline belongs to both.
    [[nodiscard]] std::string differenceOutside(const Screenshot& before, const Screenshot& after, Shape shape) const {
        const PixelRect& rect = overlay_.rect;
        const PixelArea outline = shape == Shape::circle ? PixelArea::ellipse(rect.inset(-1))
                                                         : PixelArea::roundedRectangle(rect.inset(-1), 13);
        for (int y = rect.y; y < rect.maxY(); ++y) {
            for (int x = rect.x; x < rect.maxX(); ++x) {
                const PixelPoint point{.x = x, .y = y};
                if (!outline.contains(point) && before.at(point) != after.at(point)) {
                    return support::describe(after.at(point)) + " at " + support::describe(point) + " instead of " +
                           support::describe(before.at(point));
                }
            }
        }
        return {};
    }

    /// Until nothing has been painted for far more turns of the program's event loop than a picture is put off by.
    void awaitRest(PaintCounter& paints) {
        constexpr int enough = 10;
        for (int quiet = 0; quiet < enough;) {
            stage().settle();
            quiet = paints.take() == 0 ? quiet + 1 : 0;
        }
    }

    struct Film {
        int pictures = 0;
        std::chrono::steady_clock::duration time{};
    };

    /// Paints a window anew as often as the server does it. A slow machine makes fewer pictures of that, so only too
    /// many can be wrong.
    Film showFilm(TestClient& client) {
        using Clock = std::chrono::steady_clock;
        constexpr std::chrono::milliseconds longEnough{2000};
        PaintCounter paints(stage().desktop().server().display(), overlay_.window);
        const Clock::time_point start = Clock::now();
        for (int level = 0; Clock::now() - start < longEnough; level = 255 - level) {
            fill(client.window(), client.rect(), level);
        }
        const int pictures = paints.take();
        return {.pictures = pictures, .time = Clock::now() - start};
    }

    /// Looks at every picture until the glass over `beneath` is right.
    void expectNothingSharperUntil(const PixelArea& area, const GreyPicture& beneath, const GlassStyle& style) {
        stage().watch(
            "the glass", [&](const Screenshot& screen) { EXPECT_EQ(sharperThan(screen, area, style), ""); },
            [&](const Screenshot& screen) { return deviation(screen, area, beneath, style).empty(); });
    }

    /// Looks at every picture until the glass is right. Without a compositing manager nothing is shown before it is.
    void expectGlassAt(const PixelRect& to, const PixelArea& area, const GreyPicture& beneath,
                       const GlassStyle& style) {
        overlay_ = stage().program().awaitOverlayAt(to);
        if (!isComposited()) {
            EXPECT_EQ(deviation(stage().desktop().screenshot(), area, beneath, style), "") << support::describe(to);
        }
        expectGlass(area, beneath, style);
    }
};

#define PALLWICK_ON_GLASS_DESKTOPS(suite)                                                                         \
    INSTANTIATE_TEST_SUITE_P(Desktops, suite,                                                                     \
                             testing::Values(DesktopKind::openbox, DesktopKind::openboxPicom, DesktopKind::xfwm4, \
                                             DesktopKind::xfwm4Compositing),                                      \
                             [](const auto& instance) { return describe(instance.param); })

TEST_P(Glass, BlursAsMuchAsTheStyleSays) {
    const auto client = openStriped();
    add(halfBlurred);
    const GreyPicture beneath = stripes(client->rect(), 255, 0);

    expectSettledGlass(measured(client->rect()), beneath, halfBlurred);
    stage().lock();
    expectSettledGlass(measured(client->rect()), beneath, halfBlurred);
    stage().unlock();
    constexpr GlassStyle faint{.blur = 100, .opacity = 25};
    stage().setStyle(faint.blur, faint.opacity);
    expectSettledGlass(measured(client->rect()), beneath, faint);
}

TEST_P(Glass, IsClearWhereTheBlurIsNone) {
    const auto client = openStriped();
    constexpr GlassStyle clear{.blur = 0, .opacity = 40};

    add(clear);

    expectSettledGlass(measured(client->rect()), stripes(client->rect(), 255, 0), clear);
}

TEST_P(Glass, FillsACircle) {
    const auto client = openStriped();
    add(halfBlurred);
    // The blur reaches nothing beyond the client from there.
    overlay_ = stage().dragBy(overlay_, {.x = -170, .y = 0});
    stage().setShape(Shape::circle);
    stage().lock();

    expectSettledGlass(measured(client->rect(), Shape::circle), stripes(client->rect(), 255, 0), halfBlurred);
}

TEST_P(Glass, ChangesNoPixelOutsideItsShape) {
    const auto client = openStriped();
    const PixelRect future{.x = 780, .y = 440, .width = 360, .height = 200};
    const Screenshot before =
        expectGlass(PixelArea::rectangle(future), stripes(client->rect(), 255, 0), {.blur = 0, .opacity = 0});
    add(halfBlurred);
    ASSERT_EQ(overlay_.rect, future);

    expectSettledGlass(measured(client->rect()), stripes(client->rect(), 255, 0), halfBlurred);
    EXPECT_EQ(differenceOutside(before, stage().desktop().screenshot(), Shape::rectangle), "");
    stage().lock();
    stage().settle();
    EXPECT_EQ(differenceOutside(before, stage().desktop().screenshot(), Shape::rectangle), "");
    stage().unlock();
    stage().setShape(Shape::circle);
    stage().settle();
    EXPECT_EQ(differenceOutside(before, stage().desktop().screenshot(), Shape::circle), "");
    stage().lock();
    stage().settle();
    EXPECT_EQ(differenceOutside(before, stage().desktop().screenshot(), Shape::circle), "");
}

TEST_P(Glass, IsNotPaintedWhileNothingBeneathItChanges) {
    const auto client = openStriped();
    const auto elsewhere = open({.x = 20, .y = 20, .width = 300, .height = 150}, 255, 0);
    add(halfBlurred);
    expectSettledGlass(measured(client->rect()), stripes(client->rect(), 255, 0), halfBlurred);
    stage().settle();
    PaintCounter paints(stage().desktop().server().display(), overlay_.window);

    stage().settle();
    EXPECT_EQ(paints.take(), 0);

    elsewhere->setColours(grey(40), grey(200));
    stage().desktop().awaitPixels("other colours elsewhere",
                                  [](const Screenshot& screen) { return screen.at({.x = 28, .y = 100}) == grey(40); });
    stage().settle();
    EXPECT_EQ(paints.take(), 0);
}

TEST_P(Glass, ShowsNoGhostOfAWindowThatIsMinimisedOrClosed) {
    const auto client = openStriped();
    const GreyPicture asBefore = stripes(client->rect(), 255, 0);
    add(halfBlurred);
    stage().lock();
    auto visitor = open(client->rect(), 60, 60);
    const PixelArea area = measured(client->rect());
    expectSettledGlass(area, plain(60), halfBlurred);

    stage().windows().minimise(visitor->window());
    expectSettledGlass(area, asBefore, halfBlurred);
    stage().windows().activate(visitor->window());
    expectSettledGlass(area, plain(60), halfBlurred);
    visitor.reset();
    expectSettledGlass(area, asBefore, halfBlurred);
}

TEST_P(Glass, ShowsNoGhostOfAnotherWorkspace) {
    stage().windows().setWorkspaceCount(2);
    setGroundPicture(90);
    const auto client = openStriped();
    const GreyPicture asBefore = stripes(client->rect(), 255, 0);
    add(halfBlurred);
    stage().lock();
    const PixelArea area = measured(client->rect());
    expectSettledGlass(area, asBefore, halfBlurred);

    stage().windows().switchToWorkspace(1);
    expectSettledGlass(area, plain(90), halfBlurred);
    stage().windows().switchToWorkspace(0);
    expectSettledGlass(area, asBefore, halfBlurred);
}

TEST_P(Glass, FollowsAWindowThatMovesGrowsAndIsRaisedBeneathIt) {
    const auto client = openStriped();
    const GreyPicture asBefore = stripes(client->rect(), 255, 0);
    const PixelRect over = client->rect();
    const PixelRect away{.x = 20, .y = 20, .width = 300, .height = 150};
    add(halfBlurred);
    stage().lock();
    const PixelArea area = measured(over);
    const auto visitor = open(away, 60, 60);
    expectSettledGlass(area, asBefore, halfBlurred);

    visitor->place({.x = over.x, .y = over.y, .width = 300, .height = 150});
    stage().settle();
    expectSettledGlass(area, asBefore, halfBlurred);
    visitor->place(over);
    expectSettledGlass(area, plain(60), halfBlurred);
    stage().windows().activate(client->window());
    expectSettledGlass(area, asBefore, halfBlurred);
    stage().windows().activate(visitor->window());
    expectSettledGlass(area, plain(60), halfBlurred);
    visitor->place(away);
    expectSettledGlass(area, asBefore, halfBlurred);
}

TEST_P(Glass, ShowsAShapedWindowInItsShape) {
    const auto client = openStriped();
    client->setColours(grey(255), grey(255));
    add(halfBlurred);
    stage().lock();
    const PixelRect over = client->rect();
    const auto visitor = openUnmanaged(over, 60);
    const int edge = overlay_.rect.x + 100;
    const xcb_rectangle_t leftHalf{.x = 0,
                                   .y = 0,
                                   .width = static_cast<std::uint16_t>(edge - over.x),
                                   .height = static_cast<std::uint16_t>(over.height)};

    xcb_shape_rectangles(stage().desktop().x().get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, 0, visitor->window(), 0,
                         0, 1, &leftHalf);
    stage().desktop().x().roundTrip();

    expectSettledGlass(measured(over), halves(edge, 60, 255), halfBlurred);
}

TEST_P(Glass, ShowsAnotherOverlayBeneathAndFollowsItsDrag) {
    const auto client = open(stage().secretRect(), 255, 255);
    // Opaque and black.
    const Program::Overlay lower = stage().dragBy(stage().add(), {.x = -180, .y = 0});
    add(halfBlurred);
    const int middle = overlay_.rect.centre().y;
    const PixelPoint grip{.x = lower.rect.x + 60, .y = middle};
    // Beside the lower overlay's border, as far from its top and bottom and the client's right edge as the blur
    // reaches.
    const auto expectEdgeAt = [&](int edge) {
        const int left = overlay_.rect.x + 8;
        const PixelArea onTheLeft = PixelArea::rectangle({left, middle - 20, edge - 6 - left, 40});
        const PixelArea onTheRight = PixelArea::rectangle({edge + 6, middle - 20, left + 290 - (edge + 6), 40});
        expectSettledGlass(onTheLeft, halves(edge, 0, 255), halfBlurred);
        expectSettledGlass(onTheRight, halves(edge, 0, 255), halfBlurred);
    };
    expectEdgeAt(lower.rect.maxX());

    stage().pointer().moveTo(grip);
    stage().pointer().press();
    stage().pointer().moveTo({.x = grip.x + 51, .y = grip.y});
    expectEdgeAt(lower.rect.maxX() + 51);
    stage().pointer().moveTo({.x = grip.x - 63, .y = grip.y});
    expectEdgeAt(lower.rect.maxX() - 63);
    stage().pointer().release();
}

TEST_P(Glass, ShowsTheNewPlaceAtEveryStepOfADrag) {
    const PixelRect whole = stage().secretRect();
    const int edge = 800;
    const auto left = open({.x = whole.x, .y = whole.y, .width = edge - whole.x, .height = whole.height}, 40, 40);
    const auto right = open({.x = edge, .y = whole.y, .width = whole.maxX() - edge, .height = whole.height}, 220, 220);
    add(halfBlurred);
    const GreyPicture beneath = halves(edge, 40, 220);
    const PixelRect start = overlay_.rect;
    const auto row = [](const PixelRect& at) { return PixelArea::rectangle({at.x + 8, at.centre().y - 20, 270, 40}); };
    expectSettledGlass(row(start), beneath, halfBlurred);
    const PixelPoint grip{.x = start.centre().x, .y = start.centre().y};

    stage().pointer().moveTo(grip);
    stage().pointer().press();
    for (int step = 1; step <= 8; ++step) {
        const PixelPoint way{.x = -37 * step, .y = -7 * step};
        const PixelRect at{start.x + way.x, start.y + way.y, start.width, start.height};
        stage().pointer().moveTo({.x = grip.x + way.x, .y = grip.y + way.y});
        expectGlassAt(at, row(at), beneath, halfBlurred);
    }
    stage().pointer().release();
}

TEST_P(Glass, ShowsNothingSharperThanTheStyleSaysWhileItIsLockedAndUnlocked) {
    const auto client = openStriped();
    add(hiding);
    const PixelArea area = measured(client->rect());
    expectSettledGlass(area, stripes(client->rect(), 255, 0), hiding);
    const PixelPoint border{.x = overlay_.rect.centre().x, .y = overlay_.rect.y + 1};
    const Colour inEditMode = stage().desktop().screenshot().at(border);
    // The border is no part of what is hidden.
    const PixelArea inBorder = PixelArea::roundedRectangle(overlay_.rect.inset(3), 9);
    const auto look = [&](const Screenshot& screen) { EXPECT_EQ(sharperThan(screen, inBorder, hiding), ""); };

    stage().operate("Lock");
    stage().watch("no border", look, [&](const Screenshot& screen) { return screen.at(border) != inEditMode; });
    stage().operate("Edit");
    stage().watch("the border", look, [&](const Screenshot& screen) { return screen.at(border) == inEditMode; });
}

TEST_P(Glass, ShowsNothingSharperThanTheStyleSaysFromItsFirstFrameOn) {
    const auto client = openStriped();
    const GreyPicture beneath = stripes(client->rect(), 255, 0);
    add(halfBlurred);
    stage().lock();
    const PixelArea area = measured(client->rect());
    stage().choosePreset("Save Display Preset");
    stage().awaitStatus("Display preset saved");
    stage().operate("Clear");
    const auto isBare = [&](const Screenshot& screen) {
        return deviation(screen, area, beneath, {.blur = 0, .opacity = 0}).empty();
    };
    stage().desktop().awaitPixels("nothing over the window", isBare);

    stage().choosePreset("Load Display Preset");

    stage().watch(
        "the glass",
        [&](const Screenshot& screen) {
            if (!isBare(screen)) {
                EXPECT_EQ(sharperThan(screen, area, halfBlurred), "");
            }
        },
        [&](const Screenshot& screen) { return deviation(screen, area, beneath, halfBlurred).empty(); });
}

TEST_P(Glass, ShowsWhatIsPaintedAnewWithinTwoFramesOfItsDamage) {
    const auto client = openStriped();
    add(halfBlurred);
    const PixelArea area = measured(client->rect());
    expectSettledGlass(area, stripes(client->rect(), 255, 0), halfBlurred);
    PaintCounter paints(stage().desktop().server().display(), overlay_.window);

    fill(client->window(), client->rect(), 60);
    expectGlass(area, plain(60), halfBlurred);
    EXPECT_THAT(paints.take(), testing::AllOf(testing::Ge(1), testing::Le(2)));

    stage().settle();
    EXPECT_EQ(paints.take(), 0);
}

TEST_P(Glass, ShowsAFilmBeneathItInThirtyPicturesASecond) {
    const auto client = openStriped();
    add(halfBlurred);
    expectSettledGlass(measured(client->rect()), stripes(client->rect(), 255, 0), halfBlurred);

    const Film film = showFilm(*client);

    EXPECT_GE(film.pictures, 1);
    EXPECT_LE(film.pictures, 15 + film.time / std::chrono::microseconds(33'333) + 1);
}

TEST_P(Glass, ShowsAFilmBeneathItsRimAloneInTenPicturesASecondAndTheLastOne) {
    const auto client = openStriped();
    add({.blur = 60, .opacity = 100});
    const PixelPoint rim{.x = overlay_.rect.x, .y = overlay_.rect.centre().y};
    PaintCounter paints(stage().desktop().server().display(), overlay_.window);
    awaitRest(paints);

    const Film film = showFilm(*client);

    EXPECT_GE(film.pictures, 1);
    EXPECT_LE(film.pictures, film.time / std::chrono::milliseconds(100) + 2);
    // The border of edit mode lies over the rim.
    stage().lock();
    fill(client->window(), client->rect(), 0);
    stage().desktop().awaitPixels("a dark rim", [&](const Screenshot& screen) { return screen.at(rim).red < 40; });
    fill(client->window(), client->rect(), 255);
    stage().desktop().awaitPixels("a light rim", [&](const Screenshot& screen) { return screen.at(rim).red > 160; });
}

TEST_P(Glass, ShowsWhatWasPaintedWhileItWasSwitchedOff) {
    const auto client = openStriped();
    add(halfBlurred);
    const PixelArea area = measured(client->rect());
    expectSettledGlass(area, stripes(client->rect(), 255, 0), halfBlurred);

    stage().setGlass(false);
    stage().settle();
    fill(client->window(), client->rect(), 60);
    stage().setGlass(true);

    expectSettledGlass(area, plain(60), halfBlurred);
}

TEST_P(Glass, IsNotPaintedForWhatAnOpaqueTintHides) {
    const auto client = openStriped();
    add({.blur = 60, .opacity = 100});
    stage().lock();
    stage().settle();
    PaintCounter paints(stage().desktop().server().display(), overlay_.window);
    const PixelRect middle{
        .x = overlay_.rect.centre().x - 4, .y = overlay_.rect.centre().y - 4, .width = 8, .height = 8};
    const auto small = openUnmanaged(middle, 255);
    awaitRest(paints);

    fill(small->window(), middle, 60);
    stage().settle();
    stage().settle();
    EXPECT_EQ(paints.take(), 0);
}

TEST_P(Glass, ShowsWhatWasPaintedWhileItWasOpaque) {
    const auto client = openStriped();
    add({.blur = halfBlurred.blur, .opacity = 100});
    stage().settle();
    fill(client->window(), client->rect(), 60);
    stage().settle();

    stage().setStyle(halfBlurred.blur, halfBlurred.opacity);

    expectSettledGlass(measured(client->rect()), plain(60), halfBlurred);
}

TEST_P(Glass, ShowsNothingSharperThanTheStyleSaysWhileASecretIsPaintedBeneath) {
    const auto client = openStriped();
    client->setColours(grey(255), grey(255));
    add(hiding);
    stage().lock();
    const PixelArea area = measured(client->rect());
    expectSettledGlass(area, plain(255), hiding);
    const GreyPicture secret = stripes(client->rect(), 255, 0);

    client->setColours(grey(255), grey(0));
    expectNothingSharperUntil(area, secret, hiding);
}

TEST_P(Glass, ShowsNothingSharperThanTheStyleSaysWhileASecretMovesBeneath) {
    const auto client = open(stage().secretRect(), 255, 255);
    const auto secret = open({.x = 20, .y = 20, .width = 300, .height = 150}, 255, 0);
    add(hiding);
    stage().lock();
    const PixelArea area = measured(client->rect());
    expectSettledGlass(area, plain(255), hiding);
    const GreyPicture beneath = stripes(client->rect(), 255, 0);

    secret->place(client->rect());
    expectNothingSharperUntil(area, beneath, hiding);
}

TEST_P(Glass, ShowsNothingSharperThanTheStyleSaysWhileASecretIsLaidOpenBeneath) {
    const auto secret = openStriped();
    auto client = open(stage().secretRect(), 255, 255);
    add(hiding);
    stage().lock();
    const PixelArea area = measured(secret->rect());
    expectSettledGlass(area, plain(255), hiding);
    const GreyPicture beneath = stripes(secret->rect(), 255, 0);

    client->unmap();
    expectNothingSharperUntil(area, beneath, hiding);
}

PALLWICK_ON_GLASS_DESKTOPS(Glass);

/// Compositing managers come and go under the running program.
class GlassUnderNewManagement : public testing::TestWithParam<PrivateDesktop::Fading>, protected GlassStage {
protected:
    GlassUnderNewManagement() : GlassStage(DesktopKind::openbox) {}

    /// Looks at every picture in which the desktop is drawn at all, as it is beside the overlay.
    void expectAlwaysGlass(const std::string& what, const PixelArea& area, const GreyPicture& beneath,
                           const GlassStyle& style, const std::function<bool()>& isOver) {
        const PixelPoint beside{.x = overlay_.rect.x - 9, .y = overlay_.rect.centre().y};
        int pictures = 0;
        stage().watch(
            what,
            [&](const Screenshot& screen) {
                if (screen.at(beside) == grey(static_cast<int>(beneath.sharp(beside)))) {
                    ++pictures;
                    EXPECT_EQ(deviation(screen, area, beneath, style), "") << "picture " << pictures;
                }
            },
            [&](const Screenshot&) { return isOver(); });
        EXPECT_GE(pictures, 1);
    }
};

TEST_P(GlassUnderNewManagement, LooksTheSameWhileACompositingManagerStarts) {
    const auto client = openStriped();
    add(halfBlurred);
    stage().lock();
    const PixelArea area = measured(client->rect());
    const GreyPicture beneath = stripes(client->rect(), 255, 0);
    expectSettledGlass(area, beneath, halfBlurred);
    const xcb_window_t former = overlay_.window;

    stage().desktop().startCompositor(GetParam());
    expectAlwaysGlass("the window from before gone", area, beneath, halfBlurred,
                      [&] { return !stage().windows().isViewable(former); });

    expectSettledGlass(area, beneath, halfBlurred);
}

TEST_P(GlassUnderNewManagement, LooksTheSameOnceACompositingManagerHasGoneAndAnotherHasCome) {
    stage().desktop().startCompositor(GetParam());
    const auto client = openStriped();
    add(halfBlurred);
    stage().lock();
    const PixelArea area = measured(client->rect());
    const GreyPicture beneath = stripes(client->rect(), 255, 0);
    expectSettledGlass(area, beneath, halfBlurred);

    stage().desktop().stopCompositor();
    stage().watch(
        "the glass", [&](const Screenshot& screen) { EXPECT_EQ(sharperThan(screen, area, halfBlurred), ""); },
        [&](const Screenshot& screen) { return deviation(screen, area, beneath, halfBlurred).empty(); });
    expectSettledGlass(area, beneath, halfBlurred);
    const xcb_window_t former = overlay_.window;
    stage().desktop().startCompositor(GetParam());
    expectAlwaysGlass("the window from before gone", area, beneath, halfBlurred,
                      [&] { return !stage().windows().isViewable(former); });

    expectSettledGlass(area, beneath, halfBlurred);
}

INSTANTIATE_TEST_SUITE_P(Managers, GlassUnderNewManagement,
                         testing::Values(PrivateDesktop::Fading::off, PrivateDesktop::Fading::on),
                         [](const auto& instance) {
                             return std::string(instance.param == PrivateDesktop::Fading::on ? "fading" : "plain");
                         });

class DarkGlass : public testing::TestWithParam<DesktopKind>, protected GlassStage {
protected:
    DarkGlass() : GlassStage(GetParam(), {.dark = true}) {}
};

TEST_P(DarkGlass, IsWashedWithBlack) {
    const auto client = openStriped();
    constexpr GlassStyle style{.blur = 100, .opacity = 50, .dark = true};

    add(style);

    expectSettledGlass(measured(client->rect()), stripes(client->rect(), 255, 0), style);
}

INSTANTIATE_TEST_SUITE_P(Desktops, DarkGlass, testing::Values(DesktopKind::openbox, DesktopKind::openboxPicom),
                         [](const auto& instance) { return describe(instance.param); });

class LargeGlass : public testing::TestWithParam<DesktopKind>, protected GlassStage {
protected:
    LargeGlass() : GlassStage(GetParam(), {.width = 3840, .height = 2160, .scale = 2}) {}
};

TEST_P(LargeGlass, BlursAsMuchInPoints) {
    const auto client = open(stage().secretRect(), 60, 60);
    add(halfBlurred);
    const PixelRect whole = client->rect();
    const int edge = overlay_.rect.x + 250;
    // On the right: shadows of windows, which some compositing managers draw, fall to the other side.
    const auto visitor =
        open({.x = edge, .y = whole.y, .width = whole.maxX() - edge, .height = whole.height}, 255, 255);
    stage().lock();

    expectSettledGlass(measured(whole), halves(edge, 60, 255, 2), halfBlurred);
}

INSTANTIATE_TEST_SUITE_P(Desktops, LargeGlass,
                         testing::Values(DesktopKind::openbox, DesktopKind::openboxPicom,
                                         DesktopKind::xfwm4Compositing),
                         [](const auto& instance) { return describe(instance.param); });

class TranslucentBeneath : public testing::TestWithParam<DesktopKind>, protected GlassStage {
protected:
    TranslucentBeneath() : GlassStage(GetParam()) {}

    /// That the glass shows `level` where a window of that colour lies beneath it, over white. Says where it lies.
    PixelRect expectWithAlpha(std::uint32_t colour, int level) {
        const auto client = open(stage().secretRect(), 255, 255);
        add(halfBlurred);
        stage().lock();
        openWithAlpha(client->rect(), colour);
        expectSettledGlass(measured(client->rect()), plain(level), halfBlurred);
        return client->rect();
    }

    /// The same for a black window that asks to be drawn half opaque.
    void expectWithHalfOpacity(int level) {
        const auto client = open(stage().secretRect(), 255, 255);
        add(halfBlurred);
        stage().lock();
        const auto visitor = openUnmanaged(client->rect(), 0);
        expectSettledGlass(measured(client->rect()), plain(0), halfBlurred);

        makeHalfOpaque(visitor->window());

        expectSettledGlass(measured(client->rect()), plain(level), halfBlurred);
    }

private:
    void makeHalfOpaque(xcb_window_t window) {
        const std::uint32_t half = 0x80000000;
        support::XConnection& x = stage().desktop().x();
        xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, window, x.atom("_NET_WM_WINDOW_OPACITY"), XCB_ATOM_CARDINAL,
                            32, 1, &half);
        x.roundTrip();
    }

    /// A window with an alpha channel, directly beneath the overlay. Colour and alpha are premultiplied.
    void openWithAlpha(const PixelRect& rect, std::uint32_t colour) {
        support::XConnection& x = stage().desktop().x();
        const xcb_visualid_t visual = visualWithAlpha(x.get());
        const xcb_colormap_t colormap = xcb_generate_id(x.get());
        xcb_create_colormap(x.get(), XCB_COLORMAP_ALLOC_NONE, colormap, x.root(), visual);
        const xcb_window_t window = xcb_generate_id(x.get());
        const std::array<std::uint32_t, 4> values{colour, 0, 1, colormap};
        xcb_create_window(x.get(), 32, window, x.root(), static_cast<std::int16_t>(rect.x),
                          static_cast<std::int16_t>(rect.y), static_cast<std::uint16_t>(rect.width),
                          static_cast<std::uint16_t>(rect.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
                          values.data());
        const std::array<std::uint32_t, 2> place{overlay_.window, XCB_STACK_MODE_BELOW};
        xcb_configure_window(x.get(), window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, place.data());
        xcb_map_window(x.get(), window);
        x.roundTrip();
    }

private:
    static xcb_visualid_t visualWithAlpha(xcb_connection_t* xcb) {
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data;
        for (auto depth = xcb_screen_allowed_depths_iterator(screen); depth.rem != 0; xcb_depth_next(&depth)) {
            if (depth.data->depth == 32) {
                return xcb_depth_visuals(depth.data)->visual_id;
            }
        }
        throw std::runtime_error("no visual with an alpha channel");
    }
};

TEST_P(TranslucentBeneath, IsMixedByItsAlphaChannel) {
    // A half of white, and what the window adds to it.
    expectWithAlpha(0x80202020, 127 + 32);
}

TEST_P(TranslucentBeneath, IsSeenThroughTheGlassAsTranslucentAsItIs) {
    expectWithHalfOpacity(127);
}

INSTANTIATE_TEST_SUITE_P(Desktops, TranslucentBeneath,
                         testing::Values(DesktopKind::openboxPicom, DesktopKind::xfwm4Compositing),
                         [](const auto& instance) { return describe(instance.param); });

/// Without a compositing manager nobody mixes colours, and windows that ask for it show as they are.
class WouldBeTranslucentBeneath : public TranslucentBeneath {};

TEST_P(WouldBeTranslucentBeneath, ShowsItsColoursWhateverTheAlphaChannelSays) {
    const PixelRect beneath = expectWithAlpha(0x80202020, 32);

    // Beside the overlay the screen shows the same.
    EXPECT_EQ(stage().desktop().screenshot().at({.x = beneath.x + 4, .y = overlay_.rect.centre().y}), grey(32));
}

TEST_P(WouldBeTranslucentBeneath, IsSeenThroughTheGlassAsOpaqueAsItIs) {
    expectWithHalfOpacity(0);
}

INSTANTIATE_TEST_SUITE_P(Desktops, WouldBeTranslucentBeneath, testing::Values(DesktopKind::openbox, DesktopKind::xfwm4),
                         [](const auto& instance) { return describe(instance.param); });

}  // namespace
}  // namespace pallwick::desktop
