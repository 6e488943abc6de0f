#include <PallwickMac/App/PallwickMacApp.h>

#include <PallwickMac/Platform/DesktopPlatform.h>
#include <PallwickMac/Platform/ProgramIdentity.h>
#include <PallwickMac/Views/ContentView.h>
#include <PallwickMac/Views/ProgramStyle.h>
#include <PallwickMac/Views/SymbolIcon.h>

#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QSettings>

#include <utility>

namespace pallwick {

namespace {

constexpr QSize minimumContentSize(760, 460);

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
}

PallwickMacApp::PallwickMacApp(std::unique_ptr<DesktopPlatform> platform,
                               const AppModel::PresetStoreFactory& makePresetStore,
                               std::function<void(int status)> leave)
    : platform_(std::move(platform)),
      model_(std::make_unique<AppModel>(*platform_, makePresetStore)),
      mainWindow_(std::make_unique<QMainWindow>()),
      leave_(std::move(leave)) {
    auto* content = new ContentView(*model_);
    content->setMinimumSize(minimumContentSize);
    mainWindow_->setCentralWidget(content);
    mainWindow_->setWindowTitle(QStringLiteral("Pallwick"));
    mainWindow_->setWindowIcon(programIcon());
    mainWindow_->resize(minimumContentSize);
    mainWindow_->installEventFilter(this);

    connect(platform_.get(), &DesktopPlatform::disconnected, this, &PallwickMacApp::desktopLost);
}

PallwickMacApp::~PallwickMacApp() {
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

bool PallwickMacApp::eventFilter(QObject* watched, QEvent* event) {
    // Panels are windows to the toolkit too; waiting for the last window would wait for ever.
    if (watched == mainWindow_.get() && event->type() == QEvent::Close) {
        QCoreApplication::exit(isDesktopLost_ ? 1 : 0);
    }
    return QObject::eventFilter(watched, event);
}

void PallwickMacApp::desktopLost(const QString& reason) {
    isDesktopLost_ = true;
    reportLostDesktop(qUtf8Printable(reason));
    leave_(1);
}

}  // namespace pallwick
