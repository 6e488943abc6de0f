// What the server draws of frosted glass, against a Gaussian in double precision of the same picture.

#include <PallwickMac/Backdrop/Frost.h>
#include <PallwickMac/Platform/X11/BackdropCapture.h>
#include <PallwickMac/Platform/X11/Connection.h>
#include <PallwickMac/Platform/X11/Glass.h>
#include <PallwickMac/Platform/X11/ImageTransfer.h>
#include <PallwickMac/Platform/X11/SurfaceWindow.h>
#include <PallwickMac/Platform/X11/WindowLayers.h>
#include <PallwickMac/Platform/X11/XcbReply.h>
#include <gtest/gtest.h>

#include <QGuiApplication>

#include <backdrop/Pictures.h>
#include <backdrop/TrueGaussian.h>
#include <support/PrivateXServer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>

namespace pallwick::x11 {

namespace {

using backdrop::PixelImage;

constexpr PixelRect rootArea{.x = 0, .y = 0, .width = 400, .height = 304};
constexpr backdrop::Material clearGlass{.saturation = 1, .wash = 0, .washAlpha = 0};

/// A private server whose ground is a given picture, and a panel's window on it.
class GlassTest : public testing::Test {
protected:
    GlassTest() : server_({.width = rootArea.width, .height = rootArea.height, .arguments = {}}) {
        qputenv("DISPLAY", QByteArray::fromStdString(server_.display()));
        connection_ = std::make_unique<Connection>();
        layers_ = std::make_unique<WindowLayers>(*connection_);
        capture_ = std::make_unique<BackdropCapture>(*connection_, *layers_);
        glass_ = std::make_unique<Glass>(*connection_, *layers_, *capture_);
        panel_ = std::make_unique<SurfaceWindow>(*connection_);
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection_->xcb(), connection_->root(), XCB_CW_EVENT_MASK, &mask);
        layers_->setActive(true);
    }

    ~GlassTest() override {
        panel_.reset();
        glass_.reset();
        capture_.reset();
        layers_.reset();
    }

    [[nodiscard]] const Connection& connection() const { return *connection_; }
    [[nodiscard]] WindowLayers& layers() { return *layers_; }

    /// Lives as long as the server.
    xcb_pixmap_t makePixmap(const PixelImage& image) {
        xcb_connection_t* xcb = connection_->xcb();
        const xcb_pixmap_t pixmap = xcb_generate_id(xcb);
        xcb_create_pixmap(xcb, 24, pixmap, connection_->root(), static_cast<std::uint16_t>(image.width),
                          static_cast<std::uint16_t>(image.height));
        putImage(xcb, pixmap, 24, image.width, image.height, reinterpret_cast<const std::uint8_t*>(image.pixels.data()),
                 4 * image.width);
        return pixmap;
    }

    void setGround(const PixelImage& image) {
        const xcb_pixmap_t ground = makePixmap(image);
        xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, connection_->root(),
                            connection_->atom(Atom::rootPixmap), XCB_ATOM_PIXMAP, 32, 1, &ground);
    }

    /// A plain window of another program above everything. It lives as long as the server, or until it is closed.
    xcb_window_t openAbove(std::uint32_t colour, bool overrideRedirect, const PixelRect& area = rootArea) {
        if (!stranger_) {
            stranger_ = std::make_unique<Connection>();
        }
        xcb_connection_t* xcb = stranger_->xcb();
        const xcb_window_t window = xcb_generate_id(xcb);
        const std::array<std::uint32_t, 2> values{colour, overrideRedirect ? 1U : 0U};
        xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, stranger_->root(), static_cast<std::int16_t>(area.x),
                          static_cast<std::int16_t>(area.y), static_cast<std::uint16_t>(area.width),
                          static_cast<std::uint16_t>(area.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
        xcb_map_window(xcb, window);
        awaitStranger();
        return window;
    }

    void close(xcb_window_t window) {
        xcb_destroy_window(stranger_->xcb(), window);
        awaitStranger();
    }

    /// What a panel over `area` shows: all of it frosted at that opacity, nothing drawn on top.
    PixelImage frosted(const PixelRect& area, double sigma, double opacity = 1) {
        panel_->place(area);
        const bool captured = glass_->capture({.panel = panel_->id(),
                                               .area = area,
                                               .root = rootArea,
                                               .sigma = sigma,
                                               .material = clearGlass,
                                               .sharp = true,
                                               .topmost = std::nullopt});
        EXPECT_TRUE(captured);
        QImage mask(area.width, area.height, QImage::Format_Alpha8);
        mask.fill(static_cast<uint>(std::lround(255 * opacity)));
        glass_->setMask(mask);
        QImage nothing(area.width, area.height, QImage::Format_ARGB32_Premultiplied);
        nothing.fill(Qt::transparent);
        glass_->setDrawing(nothing);
        return read(glass_->compose(), area.width, area.height);
    }

    /// What the server has told of the windows so far.
    void handleEvents() {
        const auto done =
            own(xcb_get_input_focus_reply(connection_->xcb(), xcb_get_input_focus(connection_->xcb()), nullptr));
        while (const auto event = own(xcb_poll_for_event(connection_->xcb()))) {
            static_cast<void>(layers_->handle(*event));
        }
    }

    PixelImage read(xcb_pixmap_t pixmap, int width, int height) {
        const auto reply = own(xcb_get_image_reply(
            connection_->xcb(),
            xcb_get_image(connection_->xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, 0, 0,
                          static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0xFFFFFFFF),
            nullptr));
        PixelImage image(width, height);
        std::memcpy(image.pixels.data(), xcb_get_image_data(reply.get()), image.pixels.size() * 4);
        return image;
    }

private:
    void awaitStranger() {
        const auto done =
            own(xcb_get_input_focus_reply(stranger_->xcb(), xcb_get_input_focus(stranger_->xcb()), nullptr));
    }

    support::PrivateXServer server_;
    std::unique_ptr<Connection> connection_;
    std::unique_ptr<Connection> stranger_;
    std::unique_ptr<WindowLayers> layers_;
    std::unique_ptr<BackdropCapture> capture_;
    std::unique_ptr<Glass> glass_;
    std::unique_ptr<SurfaceWindow> panel_;
};

struct Case {
    std::string name;
    PixelImage (*make)(int width, int height);
    PixelRect area;
    double sigma;

    friend void PrintTo(const Case& value, std::ostream* out) { *out << value.name; }
};

class GlassAccuracy : public GlassTest, public testing::WithParamInterface<Case> {};

TEST_P(GlassAccuracy, StaysWithinThreeLevelsOfATrueGaussianAtTheEdgesToo) {
    const PixelImage ground = GetParam().make(rootArea.width, rootArea.height);
    setGround(ground);
    const std::vector<double> expected = backdrop::trueGaussian(ground, GetParam().sigma);

    const PixelRect area = GetParam().area;
    const PixelImage glass = frosted(area, GetParam().sigma);

    const backdrop::Deviation deviation = backdrop::deviation(glass, expected, ground.width, area.x, area.y);
    EXPECT_LE(deviation.largest, 3.0);
    EXPECT_LE(deviation.mean, 0.5 + backdrop::halfLevelSlack);
}

PixelImage checks(int width, int height) {
    return backdrop::checkerboard(width, height, 5);
}

INSTANTIATE_TEST_SUITE_P(
    Places, GlassAccuracy,
    testing::Values(Case{"textInTheMiddle", backdrop::text, {101, 83, 150, 97}, 20},
                    Case{"noiseInTheMiddle", backdrop::noise, {101, 83, 150, 97}, 20},
                    Case{"checksInTheMiddle", checks, {101, 83, 150, 97}, 20},
                    Case{"textAtTheTopLeftOfTheScreen", backdrop::text, {0, 0, 150, 97}, 20},
                    Case{"textAtTheBottomRightOfTheScreen", backdrop::text, {250, 207, 150, 97}, 20},
                    Case{"textOverAllOfTheScreen", backdrop::text, rootArea, 20},
                    Case{"textAtTwiceTheScale", backdrop::text, {51, 43, 250, 197}, 40}),
    [](const testing::TestParamInfo<Case>& instance) { return instance.param.name; });

TEST_F(GlassTest, LiesOverTheSharpPictureAtItsOpacity) {
    setGround(backdrop::picture(rootArea.width, rootArea.height,
                                [](int x, int) { return backdrop::grey(x % 16 < 8 ? 255 : 0); }));

    const PixelImage glass = frosted({.x = 160, .y = 120, .width = 64, .height = 64}, 20, 0.5);

    EXPECT_NEAR(static_cast<int>(glass.row(32)[4] & 0xFF), 191, 3);
    EXPECT_NEAR(static_cast<int>(glass.row(32)[12] & 0xFF), 64, 3);
}

TEST_F(GlassTest, LiesOverTheColourOfARootWithoutAPixmap) {
    xcb_connection_t* xcb = connection().xcb();
    const std::uint32_t colour = 0x3366CC;
    xcb_change_window_attributes(xcb, connection().root(), XCB_CW_BACK_PIXEL, &colour);

    const PixelImage glass = frosted({.x = 160, .y = 120, .width = 64, .height = 64}, 20);

    EXPECT_EQ(glass.row(32)[32] & 0xFFFFFFU, colour);
}

TEST_F(GlassTest, LiesOverTheTilesOfARootWithoutAPixmap) {
    const PixelImage ground = backdrop::text(rootArea.width, rootArea.height);
    const xcb_pixmap_t tile = makePixmap(ground);
    xcb_change_window_attributes(connection().xcb(), connection().root(), XCB_CW_BACK_PIXMAP, &tile);
    const PixelRect area{.x = 101, .y = 83, .width = 150, .height = 97};

    const PixelImage glass = frosted(area, 20);

    const std::vector<double> expected = backdrop::trueGaussian(ground, 20);
    EXPECT_LE(backdrop::deviation(glass, expected, ground.width, area.x, area.y).largest, 3.0);
}

TEST_F(GlassTest, LiesOverTheGreyThatACompositingManagerPaintsWithoutAGround) {
    layers().setCompositing(true);

    const PixelImage glass = frosted({.x = 160, .y = 120, .width = 64, .height = 64}, 20);

    EXPECT_NEAR(static_cast<int>(glass.row(32)[32] & 0xFF), 0x80, 1);
}

TEST_F(GlassTest, LiesOverAClientThatWasRaisedAndIsAboutToBeCoveredAgain) {
    openAbove(0x3366CC, false);

    const PixelImage glass = frosted({.x = 160, .y = 120, .width = 64, .height = 64}, 20);

    EXPECT_EQ(glass.row(32)[32] & 0xFFFFFFU, 0x3366CCU);
}

TEST_F(GlassTest, DoesNotLieOverAMenuAboveIt) {
    openAbove(0x3366CC, false);
    openAbove(0xCC6633, true);

    const PixelImage glass = frosted({.x = 160, .y = 120, .width = 64, .height = 64}, 20);

    EXPECT_EQ(glass.row(32)[32] & 0xFFFFFFU, 0x3366CCU);
}

/// Whoever draws it learns only afterwards that it was gone.
TEST_F(GlassTest, LosesNoMoreThanAPictureToAWindowThatWasClosedBeforeItCouldBeDrawn) {
    const PixelRect area{.x = 160, .y = 120, .width = 64, .height = 64};
    setGround(backdrop::picture(rootArea.width, rootArea.height, [](int, int) { return backdrop::grey(90); }));
    const xcb_window_t window = openAbove(0xFFFFFF, false);
    ASSERT_EQ(layers().layers().size(), 2U);
    close(window);

    const PixelImage meanwhile = frosted(area, 20);

    EXPECT_FALSE(connection().isBroken());
    EXPECT_LE(meanwhile.row(32)[32] & 0xFFU, 1U);

    handleEvents();
    const PixelImage afterwards = frosted(area, 20);
    EXPECT_NEAR(static_cast<int>(afterwards.row(32)[32] & 0xFF), 90, 1);
}

TEST_F(GlassTest, DoesNotLieOverAHigherPanelThatAClientWasRaisedAbove) {
    setGround(backdrop::picture(rootArea.width, rootArea.height, [](int, int) { return backdrop::grey(255); }));
    SurfaceWindow higher(connection());
    const PixelRect area{.x = 160, .y = 120, .width = 64, .height = 64};
    higher.place(area);
    connection().flush();
    openAbove(0x3366CC, false, {.x = 0, .y = 0, .width = 10, .height = 10});

    const PixelImage glass = frosted(area, 20);

    EXPECT_EQ(glass.row(32)[32] & 0xFFFFFFU, 0xFFFFFFU);
}

TEST_F(GlassTest, IsTheSameWhereverThePanelLies) {
    setGround(backdrop::text(rootArea.width, rootArea.height));

    const PixelImage before = frosted({.x = 120, .y = 100, .width = 120, .height = 80}, 20);
    const PixelImage after = frosted({.x = 123, .y = 105, .width = 120, .height = 80}, 20);

    int largest = 0;
    for (int y = 0; y < 70; ++y) {
        for (int x = 0; x < 110; ++x) {
            largest = std::max(largest, std::abs(static_cast<int>(before.row(y + 5)[x + 3] & 0xFF) -
                                                 static_cast<int>(after.row(y)[x] & 0xFF)));
        }
    }
    EXPECT_LE(largest, 1);
}

}  // namespace

}  // namespace pallwick::x11
