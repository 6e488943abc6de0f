#include <PallwickMac/App/PallwickMacApp.h>

#include <PallwickMac/App/OverlayMenu.h>
#include <PallwickMac/Platform/DesktopPlatform.h>
#include <PallwickMac/Platform/ProgramIdentity.h>
#include <PallwickMac/Views/ContentView.h>
#include <PallwickMac/Views/ProgramStyle.h>
#include <PallwickMac/Views/SettingsView.h>
#include <PallwickMac/Views/SymbolIcon.h>
#include <PallwickMac/Views/WindowContentSizeConfigurator.h>

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QMainWindow>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QVBoxLayout>
#include <QWindow>

#include <utility>

namespace pallwick {

namespace {

constexpr QSize minimumContentSize(760, 460);
// Shows all of the inspector without a scroll bar, the line about an attached window too.
constexpr QSize firstContentSize(760, 516);
// Nobody tells before a window is shown how high its title bar will be.
constexpr int titleBarAllowance = 40;

}  // namespace

void PallwickMacApp::prepareToolkit() {
    adoptToolkitReportOfLostDesktop();
    QCoreApplication::setApplicationName(QStringLiteral("Pallwick"));
    QGuiApplication::setDesktopFileName(
        QString::fromUtf8(programBundleID.data(), static_cast<qsizetype>(programBundleID.size())));
    // The colour chooser keeps its custom colours in a file of the toolkit's. No directory can be made beneath a file,
    // so nothing is ever written.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
    QApplication::setStyle(new ProgramStyle);
    // Overlays and the menu-bar extra go on without any window.
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

PallwickMacApp::PallwickMacApp(std::unique_ptr<DesktopPlatform> platform,
                               const AppModel::PresetStoreFactory& makePresetStore,
                               std::function<void(int status)> leave)
    : platform_(std::move(platform)),
      model_(std::make_unique<AppModel>(*platform_, makePresetStore)),
      mainWindow_(std::make_unique<QMainWindow>()),
      settingsWindow_(std::make_unique<QDialog>()),
      leave_(std::move(leave)) {
    makeMainWindow();
    makeSettingsWindow();
    makeMenus();
    makeMenuBarExtra();
    connect(platform_.get(), &DesktopPlatform::activationRequested, this, &PallwickMacApp::showMainWindow);
    connect(platform_.get(), &DesktopPlatform::disconnected, this, &PallwickMacApp::desktopLost);
}

void PallwickMacApp::makeMainWindow() {
    auto* content = new ContentView(*model_);
    mainWindow_->setCentralWidget(content);
    mainWindow_->setWindowTitle(QStringLiteral("Pallwick"));
    mainWindow_->setWindowIcon(programIcon());
}

void PallwickMacApp::makeSettingsWindow() {
    settingsWindow_->setWindowTitle(QStringLiteral("Pallwick Settings"));
    settingsWindow_->setWindowIcon(programIcon());
    auto* layout = new QVBoxLayout(settingsWindow_.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(new SettingsView);
}

void PallwickMacApp::makeMenus() {
    QMenu* program = mainWindow_->menuBar()->addMenu(QStringLiteral("Pallwick"));
    // Not every desktop names keys for these; they are what most programs use.
    QAction* settings = program->addAction(QStringLiteral("Settings…"), this, &PallwickMacApp::showSettings);
    settings->setShortcut(Qt::CTRL | Qt::Key_Comma);
    program->addSeparator();
    QAction* quit = program->addAction(QStringLiteral("Quit"), qApp, &QCoreApplication::quit);
    quit->setShortcut(Qt::CTRL | Qt::Key_Q);
    for (QAction* action : {settings, quit}) {
        action->setShortcutContext(Qt::ApplicationShortcut);
    }
    auto* overlay = new OverlayMenu(*model_, mainWindow_.get());
    mainWindow_->menuBar()->addMenu(overlay);
    // Keys of a menu count only while its window is open, and the settings may outlive that one on the screen.
    settingsWindow_->addActions({settings, quit});
    settingsWindow_->addActions(overlay->actions());
    // With the menus in place, for they are no part of the content.
    const QSize firstSize = firstContentSize + QSize(0, mainWindow_->menuBar()->sizeHint().height());
    const int room = mainWindow_->screen()->availableGeometry().height() - titleBarAllowance;
    mainWindow_->resize(firstSize.boundedTo({firstSize.width(), room}));
    new WindowContentSizeConfigurator(minimumContentSize, mainWindow_->centralWidget());
}

void PallwickMacApp::makeMenuBarExtra() {
    menuBarExtra_ = std::make_unique<MenuBarExtra>(*model_, *platform_, statusIcon());
    connect(menuBarExtra_.get(), &MenuBarExtra::activated, this, &PallwickMacApp::showMainWindow);
}

void PallwickMacApp::showMainWindow(const ActivationToken& token) {
    if (!mainWindow_->isVisible()) {
        // It may have been closed while it was minimised.
        mainWindow_->setWindowState(mainWindow_->windowState() & ~Qt::WindowMinimized);
        mainWindow_->show();
    }
    platform_->activate(*mainWindow_->windowHandle(), token);
}

void PallwickMacApp::showSettings() {
    settingsWindow_->show();
    settingsWindow_->raise();
    settingsWindow_->activateWindow();
}

PallwickMacApp::~PallwickMacApp() {
    menuBarExtra_.reset();
    settingsWindow_.reset();
    mainWindow_.reset();
    model_.reset();
    // Closed panels let go of their surfaces in the next turn of the event loop; this is the last one that the platform
    // is there for.
    QCoreApplication::sendPostedEvents(qApp, QEvent::MetaCall);
}

int PallwickMacApp::run() {
    if (isDesktopLost_) {
        return 1;
    }
    appDelegate_.applicationDidFinishLaunching(*mainWindow_);
    return QApplication::exec();
}

void PallwickMacApp::desktopLost(const QString& reason) {
    isDesktopLost_ = true;
    reportLostDesktop(qUtf8Printable(reason));
    leave_(1);
}

}  // namespace pallwick
