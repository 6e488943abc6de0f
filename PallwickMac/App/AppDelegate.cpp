#include <PallwickMac/App/AppDelegate.h>

#include <QWidget>

namespace pallwick {

void AppDelegate::applicationDidFinishLaunching(QWidget& mainWindow) const {
    mainWindow.show();
    mainWindow.raise();
    mainWindow.activateWindow();
}

}  // namespace pallwick
