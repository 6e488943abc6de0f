#include "ViewTestSupport.h"

#include <PallwickMac/App/PallwickMacApp.h>
#include <PallwickMac/Views/ProgramStyle.h>

#include <QApplication>
#include <QCloseEvent>
#include <QColorDialog>
#include <QDialog>
#include <QFile>
#include <QMainWindow>
#include <QMenuBar>
#include <QMetaObject>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <QWindow>

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

class EmptyStatusItem final : public StatusItem {
public:
    explicit EmptyStatusItem(int& count) : count_(count) { ++count_; }
    ~EmptyStatusItem() override { --count_; }

    void setIcon(const QIcon&) override {}
    void setMenu(const std::vector<StatusItemEntry>&) override {}
    [[nodiscard]] bool isShown() const override { return false; }

private:
    int& count_;
};

/// Says at its end how many of its surfaces and status items are left.
class CountingPlatform final : public DesktopPlatform {
public:
    explicit CountingPlatform(int& left) : left_(left) {}
    ~CountingPlatform() override { left_ = surfaces_ + statusItems_; }

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
    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem(const StatusItemDescription&) override {
        return std::make_unique<EmptyStatusItem>(statusItems_);
    }
    [[nodiscard]] bool claimInstance(const ActivationToken&) override { return true; }
    void activate(QWindow&, const ActivationToken&) override {}

private:
    int& left_;
    int surfaces_ = 0;
    int statusItems_ = 0;
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

TEST_F(PallwickMacAppTest, ShowsItsWindowInFront) {
    bool wasInFront = false;
    whileRunning([&] {
        wasInFront = QTest::qWaitForWindowActive(&app->mainWindow());
        QCoreApplication::quit();
    });

    EXPECT_EQ(app->run(), 0);
    EXPECT_TRUE(wasInFront);
}

TEST_F(PallwickMacAppTest, GoesOnWithoutAnyWindow) {
    bool wentOn = false;
    whileRunning([&] {
        app->mainWindow().close();
        // The toolkit would end the program by an event of its own.
        whileRunning([&] {
            whileRunning([&] {
                wentOn = true;
                QCoreApplication::quit();
            });
        });
    });

    EXPECT_EQ(app->run(), 0);
    EXPECT_TRUE(wentOn);
}

TEST_F(PallwickMacAppTest, LetsEveryoneCloseItsWindow) {
    showNow(app->mainWindow());
    QCloseEvent close;

    QCoreApplication::sendEvent(&app->mainWindow(), &close);

    EXPECT_TRUE(close.isAccepted());
}

TEST_F(PallwickMacAppTest, KeepsItsOverlaysWhenItsWindowIsClosed) {
    showNow(app->mainWindow());
    app->model().addOverlay();

    app->mainWindow().close();
    app->model().addOverlay();

    ASSERT_THAT(platform->surfaces(), ::testing::SizeIs(2));
    EXPECT_TRUE(platform->surfaces().front()->isVisible());
    EXPECT_TRUE(platform->surfaces().back()->isVisible());
}

TEST_F(PallwickMacAppTest, QuitsFromItsMenuWhateverElseIsOpen) {
    QWidget panel;
    panel.show();
    const QList<QAction*> program = app->mainWindow().menuBar()->actions().front()->menu()->actions();
    whileRunning([&] { program.back()->trigger(); });

    EXPECT_EQ(program.back()->text(), QStringLiteral("Quit"));
    EXPECT_EQ(program.back()->shortcut(), QKeySequence(QStringLiteral("Ctrl+Q")));
    EXPECT_EQ(app->run(), 0);
}

TEST_F(PallwickMacAppTest, QuitsFromItsMenuBarExtraWithoutAnyWindow) {
    whileRunning([&] {
        app->mainWindow().close();
        platform->statusItem()->choose(7);
    });

    EXPECT_EQ(app->run(), 0);
}

TEST_F(PallwickMacAppTest, QuitsWhileADialogIsInFront) {
    QDialog dialog;
    whileRunning([&] { QTimer::singleShot(0, &dialog, [] { QCoreApplication::quit(); }); });
    whileRunning([&] { dialog.exec(); });

    EXPECT_EQ(app->run(), 0);
}

TEST_F(PallwickMacAppTest, TakesItsKeysInTheSettingsToo) {
    showNow(app->settingsWindow());
    for (const bool isMainWindowOpen : {true, false}) {
        app->mainWindow().setVisible(isMainWindowOpen);
        app->settingsWindow().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&app->settingsWindow()));
        const std::size_t before = app->model().overlays().size();

        QTest::keyClick(&app->settingsWindow(), Qt::Key_N, Qt::ControlModifier);

        EXPECT_EQ(app->model().overlays().size(), before + 1) << "main window open: " << isMainWindowOpen;
    }
}

/// How the main window may be when it is wanted in front.
class Reopening : public PallwickMacAppTest {
protected:
    Reopening() {
        app->mainWindow().resize(800, 600);
        showNow(app->mainWindow());
    }

    void expectOpen() {
        EXPECT_TRUE(app->mainWindow().isVisible());
        EXPECT_FALSE(app->mainWindow().isMinimized());
        EXPECT_EQ(app->mainWindow().size(), QSize(800, 600));
        ASSERT_THAT(platform->activations(), ::testing::SizeIs(1));
        EXPECT_EQ(platform->activations().front().window, app->mainWindow().windowHandle());
        EXPECT_EQ(platform->activations().front().token, token);
    }

    ActivationToken token{.id = "launcher_TIME42", .time = 42};
};

TEST_F(Reopening, BringsAClosedWindowBackAsItWas) {
    app->mainWindow().close();

    platform->startAgain(token);

    expectOpen();
}

TEST_F(Reopening, LeavesAMinimizedWindowToTheDesktop) {
    app->mainWindow().showMinimized();

    platform->startAgain(token);

    ASSERT_THAT(platform->activations(), ::testing::SizeIs(1));
    EXPECT_EQ(platform->activations().front().window, app->mainWindow().windowHandle());
}

TEST_F(Reopening, BringsAWindowBackThatWasClosedWhileMinimized) {
    app->mainWindow().showMinimized();
    app->mainWindow().close();

    platform->startAgain(token);

    expectOpen();
}

TEST_F(Reopening, BringsAnOpenWindowToTheFront) {
    platform->startAgain(token);

    expectOpen();
}

TEST_F(Reopening, FollowsAClickOnTheMenuBarExtra) {
    app->mainWindow().close();

    platform->statusItem()->click(token);

    expectOpen();
}

TEST_F(Reopening, KeepsAMaximizedWindowMaximized) {
    app->mainWindow().showMaximized();
    app->mainWindow().close();

    platform->startAgain(token);

    EXPECT_TRUE(app->mainWindow().isVisible());
    EXPECT_TRUE(app->mainWindow().isMaximized());
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

TEST(PallwickMacApp, LetsGoOfAllThatIsItsPlatformsBeforeThat) {
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
