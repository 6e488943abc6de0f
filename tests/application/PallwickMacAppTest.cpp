#include "ViewTestSupport.h"

#include <PallwickMac/App/PallwickMacApp.h>
#include <PallwickMac/Views/ProgramStyle.h>

#include <QApplication>
#include <QColorDialog>
#include <QFile>
#include <QMainWindow>
#include <QMetaObject>
#include <QSettings>
#include <QTest>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace pallwick {
namespace {

using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

class EmptySurface final : public OverlaySurface {
public:
    explicit EmptySurface(int& count) : count_(count) { ++count_; }
    ~EmptySurface() override { --count_; }

    [[nodiscard]] Rect frame() const override { return {}; }
    void setFrame(const Rect&) override {}
    [[nodiscard]] bool isVisible() const override { return false; }
    void show() override {}
    void hide() override {}
    void setIgnoresMouseEvents(bool) override {}
    void setCursorRegions(std::vector<CursorRegion>) override {}
    void setEffectLayer(const EffectLayer&) override {}
    void setNeedsDisplay() override {}
    void setAccessibleName(const QString&) override {}

private:
    int& count_;
};

/// Says at its end how many of its surfaces are left.
class CountingPlatform final : public DesktopPlatform {
public:
    explicit CountingPlatform(int& left) : left_(left) {}
    ~CountingPlatform() override { left_ = surfaces_; }

    [[nodiscard]] std::vector<Screen> screens() const override { return {}; }
    [[nodiscard]] std::vector<Rect> screenFrames() const override { return {}; }
    [[nodiscard]] std::optional<std::vector<WindowRecord>> onScreenWindows() const override { return std::nullopt; }
    [[nodiscard]] std::optional<WindowRecord> onScreenWindow(std::uint32_t) const override { return std::nullopt; }
    [[nodiscard]] std::optional<std::int32_t> frontmostProcessID() const override { return std::nullopt; }
    [[nodiscard]] std::optional<std::string> frontmostBundleID() const override { return std::nullopt; }
    [[nodiscard]] Point pointerLocation() const override { return {}; }
    [[nodiscard]] PlatformCapabilities capabilities() const override { return {}; }
    [[nodiscard]] std::unique_ptr<OverlaySurface> makeOverlaySurface(OverlaySurfaceContent&) override {
        return std::make_unique<EmptySurface>(surfaces_);
    }

private:
    int& left_;
    int surfaces_ = 0;
};

class PallwickMacAppTest : public ::testing::Test {
protected:
    PallwickMacAppTest() {
        auto made = std::make_unique<FakePlatform>();
        platform = made.get();
        app = std::make_unique<PallwickMacApp>(std::move(made), withoutPresets);
    }

    /// Does it once the event loop runs.
    void whileRunning(std::function<void()> action) {
        QMetaObject::invokeMethod(app.get(), std::move(action), Qt::QueuedConnection);
    }

    FakePlatform* platform = nullptr;
    std::unique_ptr<PallwickMacApp> app;
};

TEST_F(PallwickMacAppTest, NamesItsWindowAndKeepsItLargeEnough) {
    QMainWindow& window = app->mainWindow();
    window.resize(100, 100);
    showNow(window);

    EXPECT_EQ(window.windowTitle(), QStringLiteral("Pallwick"));
    EXPECT_FALSE(window.windowIcon().isNull());
    EXPECT_GE(window.centralWidget()->width(), 760);
    EXPECT_GE(window.centralWidget()->height(), 460);
}

TEST_F(PallwickMacAppTest, NamesTheProgram) {
    EXPECT_EQ(QCoreApplication::applicationName(), QStringLiteral("Pallwick"));
    EXPECT_EQ(QGuiApplication::desktopFileName(), QStringLiteral("org.pallwick.Pallwick"));
}

TEST_F(PallwickMacAppTest, ShowsItsWindowInFrontAndEndsWhenItIsClosed) {
    bool wasInFront = false;
    whileRunning([&] {
        wasInFront = QTest::qWaitForWindowActive(&app->mainWindow());
        app->mainWindow().close();
    });

    EXPECT_EQ(app->run(), 0);
    EXPECT_TRUE(wasInFront);
}

TEST_F(PallwickMacAppTest, EndsWithItsWindowEvenWhileAnotherIsOpen) {
    QWidget panel;
    panel.show();
    whileRunning([&] { app->mainWindow().close(); });

    EXPECT_EQ(app->run(), 0);
}

TEST_F(PallwickMacAppTest, GoesOnWhenAnotherWindowIsClosed) {
    QWidget other;
    other.show();
    bool wentOn = false;
    whileRunning([&] {
        other.close();
        whileRunning([&] {
            wentOn = true;
            app->mainWindow().close();
        });
    });

    EXPECT_EQ(app->run(), 0);
    EXPECT_TRUE(wentOn);
}

TEST_F(PallwickMacAppTest, EndsWithOneLineWhenTheDesktopIsLost) {
    whileRunning([&] {
        CaptureStderr();
        platform->loseConnection(QStringLiteral("the X server has gone"));
    });

    const int code = app->run();

    EXPECT_EQ(code, 1);
    EXPECT_EQ(GetCapturedStderr(), "pallwick: the X server has gone\n");
}

TEST_F(PallwickMacAppTest, DoesNotStartOnALostDesktop) {
    CaptureStderr();
    platform->loseConnection(QStringLiteral("the X server has gone"));

    EXPECT_EQ(app->run(), 1);
    EXPECT_EQ(GetCapturedStderr(), "pallwick: the X server has gone\n");
    EXPECT_FALSE(app->mainWindow().isVisible());
}

TEST_F(PallwickMacAppTest, ShowsItsModelInItsWindow) {
    showNow(app->mainWindow());

    app->model().addOverlay();

    EXPECT_TRUE(showsText(app->mainWindow(), "Overlay added"));
    EXPECT_TRUE(showsText(app->mainWindow(), "Overlay Style"));
}

TEST(PallwickMacApp, LetsGoOfEverySurfaceBeforeItsPlatform) {
    int left = -1;
    auto app = std::make_unique<PallwickMacApp>(std::make_unique<CountingPlatform>(left), withoutPresets);
    app->model().addOverlay();
    app->model().addOverlay();

    app.reset();

    EXPECT_EQ(left, 0);
}

TEST(Toolkit, WritesNoSettings) {
    QSettings settings(QSettings::UserScope, QStringLiteral("QtProject"));

    settings.setValue(QStringLiteral("Qt/customColors/0"), 1);
    settings.sync();

    EXPECT_EQ(settings.status(), QSettings::AccessError);
    EXPECT_FALSE(QFile::exists(settings.fileName()));
}

TEST(Toolkit, KeepsCustomColoursInMemory) {
    auto chooser = std::make_unique<QColorDialog>();
    QColorDialog::setCustomColor(0, QColor(1, 2, 3));

    chooser.reset();

    const QSettings written(QSettings::UserScope, QStringLiteral("QtProject"));
    EXPECT_FALSE(written.contains(QStringLiteral("Qt/customColors/0")));
    EXPECT_FALSE(QFile::exists(written.fileName()));
}

}  // namespace
}  // namespace pallwick
