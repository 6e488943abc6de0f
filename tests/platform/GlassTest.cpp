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
#include <QPainter>

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
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
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
    xcb_pixmap_t makePixmap(const PixelImage& image, std::uint8_t depth = 24) {
        xcb_connection_t* xcb = connection_->xcb();
        const xcb_pixmap_t pixmap = xcb_generate_id(xcb);
        xcb_create_pixmap(xcb, depth, pixmap, connection_->root(), static_cast<std::uint16_t>(image.width),
                          static_cast<std::uint16_t>(image.height));
        putImage(xcb, pixmap, depth, image.width, image.height,
                 reinterpret_cast<const std::uint8_t*>(image.pixels.data()), 4 * image.width);
        return pixmap;
    }

    void setGround(const PixelImage& image) {
        const xcb_pixmap_t ground = makePixmap(image);
        xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, connection_->root(),
                            connection_->atom(Atom::rootPixmap), XCB_ATOM_PIXMAP, 32, 1, &ground);
    }

    /// A plain window of another program above everything. It lives as long as the server, or until it is closed.
    xcb_window_t openAbove(std::uint32_t colour, bool overrideRedirect, const PixelRect& area = rootArea) {
        xcb_create_window_value_list_t attributes{};
        attributes.background_pixel = colour;
        attributes.override_redirect = overrideRedirect ? 1U : 0U;
        return open(area, XCB_COPY_FROM_PARENT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT,
                    attributes);
    }

    /// A window of another program, as large as the root and above everything, whose pixels have an alpha channel.
    xcb_window_t openWithAlpha() {
        xcb_create_window_value_list_t attributes{};
        attributes.colormap = stranger().argbColormap();
        return open(rootArea, 32, stranger().argbVisual(), XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_COLORMAP,
                    attributes);
    }

    void close(xcb_window_t window) {
        xcb_destroy_window(stranger_->xcb(), window);
        awaitStranger();
    }

    [[nodiscard]] Glass& glass() { return *glass_; }

    void capture(const PixelRect& area, double sigma, bool sharp = true) {
        panel_->place(area);
        EXPECT_TRUE(glass_->capture({.panel = panel_->id(),
                                     .area = area,
                                     .root = rootArea,
                                     .sigma = sigma,
                                     .material = clearGlass,
                                     .sharp = sharp,
                                     .topmost = std::nullopt}));
    }

    /// What a panel over `area` shows: all of it frosted at that opacity, nothing drawn on top.
    PixelImage frosted(const PixelRect& area, double sigma, double opacity = 1) {
        capture(area, sigma);
        QImage mask(area.width, area.height, QImage::Format_Alpha8);
        mask.fill(static_cast<uint>(std::lround(255 * opacity)));
        glass_->setMask(mask);
        QImage nothing(area.width, area.height, QImage::Format_ARGB32_Premultiplied);
        nothing.fill(Qt::transparent);
        glass_->setDrawing(nothing);
        return read(glass_->compose(), area.width, area.height);
    }

    /// What the server has told of the windows so far. Whether a panel may look different for it.
    bool handleEvents() {
        bool structure = false;
        const auto done =
            own(xcb_get_input_focus_reply(connection_->xcb(), xcb_get_input_focus(connection_->xcb()), nullptr));
        while (const auto event = own(xcb_poll_for_event(connection_->xcb()))) {
            structure = layers_->handle(*event).structure || structure;
        }
        return structure;
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
    Connection& stranger() {
        if (!stranger_) {
            stranger_ = std::make_unique<Connection>();
        }
        return *stranger_;
    }

    xcb_window_t open(const PixelRect& area, std::uint8_t depth, xcb_visualid_t visual, std::uint32_t mask,
                      const xcb_create_window_value_list_t& attributes) {
        xcb_connection_t* xcb = stranger().xcb();
        const xcb_window_t window = xcb_generate_id(xcb);
        xcb_create_window_aux(xcb, depth, window, stranger().root(), static_cast<std::int16_t>(area.x),
                              static_cast<std::int16_t>(area.y), static_cast<std::uint16_t>(area.width),
                              static_cast<std::uint16_t>(area.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual, mask,
                              &attributes);
        xcb_map_window(xcb, window);
        awaitStranger();
        return window;
    }

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

TEST_F(GlassTest, MayBeOlderThanWhatTheLayersKnowWhenTheyAreToldAgain) {
    static_cast<void>(layers().layers());
    handleEvents();
    const xcb_window_t window = openAbove(0, false);
    static_cast<void>(layers().layersWith(window));

    EXPECT_TRUE(handleEvents());
}

enum class Beneath { ground, window, windowWithAlpha };

/// A panel with rounded corners, a border and a control, as a person edits it.
class DrawnGlass : public GlassTest, public testing::WithParamInterface<Beneath> {
protected:
    static constexpr PixelRect area{.x = 101, .y = 83, .width = 150, .height = 97};

    DrawnGlass()
        : mask_(area.width, area.height, QImage::Format_Alpha8),
          drawing_(area.width, area.height, QImage::Format_ARGB32_Premultiplied) {
        mask_.fill(0);
        QPainter mask(&mask_);
        mask.setRenderHint(QPainter::Antialiasing);
        mask.setPen(Qt::NoPen);
        mask.setBrush(QColor(0, 0, 0, 150));
        mask.drawRoundedRect(QRectF(0, 0, area.width, area.height), 12, 12);
        draw(QColor(20, 60, 120, 100));
    }

    void draw(const QColor& tint) {
        drawing_.fill(Qt::transparent);
        QPainter drawing(&drawing_);
        drawing.setRenderHint(QPainter::Antialiasing);
        drawing.setPen(QPen(QColor(255, 0, 0, 200), 2));
        drawing.setBrush(tint);
        drawing.drawRoundedRect(QRectF(1, 1, area.width - 2, area.height - 2), 12, 12);
        drawing.setPen(Qt::NoPen);
        drawing.setBrush(Qt::green);
        drawing.drawEllipse(QPointF(30, 30), 13, 13);
    }

    void layDown(const PixelImage& image) {
        if (GetParam() == Beneath::ground) {
            setGround(image);
            return;
        }
        const bool alpha = GetParam() == Beneath::windowWithAlpha;
        PixelImage pixels = image;
        // As a program leaves it that draws without a thought of it.
        for (std::uint32_t& pixel : pixels.pixels) {
            pixel &= 0x00FFFFFFU;
        }
        const xcb_pixmap_t picture = makePixmap(pixels, alpha ? 32 : 24);
        const xcb_window_t window = alpha ? openWithAlpha() : openAbove(0, false);
        xcb_change_window_attributes(connection().xcb(), window, XCB_CW_BACK_PIXMAP, &picture);
        xcb_clear_area(connection().xcb(), 0, window, 0, 0, 0, 0);
        connection().flush();
    }

    PixelImage composed() { return read(glass().compose(), area.width, area.height); }

    /// Each channel worked out from the sharp picture, the frosted one, the mask and the drawing.
    void expectComposed(const PixelImage& actual, const PixelImage& beneath, const PixelImage& frost, bool sharp) {
        int worst = 0;
        for (int y = 0; y < area.height; ++y) {
            for (int x = 0; x < area.width; ++x) {
                const std::uint32_t drawn = reinterpret_cast<const QRgb*>(drawing_.constScanLine(y))[x];
                const double coverage = mask_.constScanLine(y)[x] / 255.0;
                const double shown = 1 - qAlpha(drawn) / 255.0;
                for (const int shift : {0, 8, 16, 24}) {
                    const auto channel = [shift](std::uint32_t pixel) {
                        return static_cast<double>((pixel >> shift) & 0xFF);
                    };
                    const double under = sharp ? channel(0xFF000000U | beneath.row(area.y + y)[area.x + x]) : 0;
                    const double glass = channel(frost.row(y)[x]) * coverage + under * (1 - coverage);
                    const double expected = channel(drawn) + glass * shown;
                    const auto error = static_cast<int>(std::abs(channel(actual.row(y)[x]) - expected) + 0.5);
                    worst = std::max(worst, error);
                }
            }
        }
        EXPECT_LE(worst, 2);
    }

    QImage mask_;
    QImage drawing_;
};

TEST_P(DrawnGlass, IsTheDrawingOverTheFrostOverTheSharpPicture) {
    const PixelImage beneath = backdrop::text(rootArea.width, rootArea.height);
    layDown(beneath);
    const PixelImage frost = frosted(area, 20);

    glass().setMask(mask_);
    glass().setDrawing(drawing_);
    const PixelImage first = composed();

    expectComposed(first, beneath, frost, true);
    EXPECT_TRUE(std::ranges::all_of(first.pixels, [](std::uint32_t pixel) { return pixel >> 24 == 0xFF; }));
    // Two pictures are made in turns.
    EXPECT_EQ(composed(), first);
    EXPECT_EQ(composed(), first);
}

TEST_P(DrawnGlass, IsTheDrawingOverTheFrostAloneWhereACompositingManagerShowsTheRest) {
    const PixelImage beneath = backdrop::text(rootArea.width, rootArea.height);
    layDown(beneath);
    const PixelImage frost = frosted(area, 20);

    capture(area, 20, false);
    glass().setMask(mask_);
    glass().setDrawing(drawing_);
    const PixelImage first = composed();

    expectComposed(first, beneath, frost, false);
    EXPECT_EQ(composed(), first);
    EXPECT_EQ(composed(), first);
}

TEST_P(DrawnGlass, KeepsNothingOfTheDrawingBefore) {
    const PixelImage beneath = backdrop::text(rootArea.width, rootArea.height);
    layDown(beneath);
    const PixelImage frost = frosted(area, 20);
    glass().setMask(mask_);
    draw(Qt::black);
    glass().setDrawing(drawing_);
    static_cast<void>(composed());
    static_cast<void>(composed());

    draw(QColor(200, 60, 120, 40));
    glass().setDrawing(drawing_);

    expectComposed(composed(), beneath, frost, true);
    expectComposed(composed(), beneath, frost, true);
}

TEST_P(DrawnGlass, FollowsAnotherPictureBeneath) {
    layDown(backdrop::noise(rootArea.width, rootArea.height));
    static_cast<void>(frosted(area, 20));
    glass().setMask(mask_);
    glass().setDrawing(drawing_);
    static_cast<void>(composed());
    const PixelImage beneath = backdrop::text(rootArea.width, rootArea.height);
    layDown(beneath);
    handleEvents();

    capture(area, 20);
    const PixelImage now = composed();

    expectComposed(now, beneath, frosted(area, 20), true);
}

INSTANTIATE_TEST_SUITE_P(Over, DrawnGlass, testing::Values(Beneath::ground, Beneath::window, Beneath::windowWithAlpha),
                         [](const testing::TestParamInfo<Beneath>& instance) {
                             switch (instance.param) {
                                 case Beneath::ground:
                                     return "theGround";
                                 case Beneath::window:
                                     return "oneWindow";
                                 default:
                                     return "oneWindowWithAlpha";
                             }
                         });

class HiddenBeneath : public GlassTest {
protected:
    static constexpr PixelRect area{.x = 20, .y = 20, .width = 360, .height = 264};
    static constexpr PixelRect middle{.x = 190, .y = 140, .width = 10, .height = 10};

    void showTint(const QColor& tint) {
        capture(area, 20);
        QImage mask(area.width, area.height, QImage::Format_Alpha8);
        mask.fill(128);
        glass().setMask(mask);
        QImage drawing(area.width, area.height, QImage::Format_ARGB32_Premultiplied);
        drawing.fill(Qt::transparent);
        QPainter(&drawing).fillRect(QRect(1, 1, area.width - 2, area.height - 2), tint);
        glass().setDrawing(drawing);
        static_cast<void>(glass().compose());
    }
};

TEST_F(HiddenBeneath, IsNoChangeFartherFromTheEdgeThanTheBlurReaches) {
    const xcb_window_t window = openAbove(0x3366CC, false);
    showTint(Qt::black);

    EXPECT_FALSE(glass().noteChange(window, middle));
    EXPECT_TRUE(glass().hasHiddenChanges());
    // The blur of the rim reaches sixty pixels far.
    EXPECT_TRUE(glass().noteChange(window, {.x = 70, .y = 140, .width = 2, .height = 2}));
    EXPECT_TRUE(glass().noteChange(window, {.x = 70, .y = 140, .width = 200, .height = 2}));
}

TEST_F(HiddenBeneath, IsForgottenAtTheNextCapture) {
    const xcb_window_t window = openAbove(0x3366CC, false);
    showTint(Qt::black);
    EXPECT_FALSE(glass().noteChange(window, middle));

    showTint(Qt::black);

    EXPECT_FALSE(glass().hasHiddenChanges());
}

TEST_F(HiddenBeneath, IsNothingOnceTheTintIsTranslucent) {
    const xcb_window_t window = openAbove(0x3366CC, false);
    showTint(Qt::black);

    showTint(QColor(0, 0, 0, 200));

    EXPECT_TRUE(glass().noteChange(window, middle));
    EXPECT_FALSE(glass().hasHiddenChanges());
}

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
