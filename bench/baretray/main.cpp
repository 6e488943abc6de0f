#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication application(argc, argv);

    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::gray);
    QMenu menu;
    menu.addAction(QStringLiteral("Quit"), &application, &QApplication::quit);
    QSystemTrayIcon tray{QIcon(pixmap)};
    tray.setContextMenu(&menu);
    tray.show();

    QWidget window;
    window.setWindowTitle(QStringLiteral("Bare tray"));
    window.resize(760, 460);
    window.show();

    // With the argument "--timer" it also wakes up as often as a program must that looks after windows.
    QTimer timer;
    if (QApplication::arguments().contains(QStringLiteral("--timer"))) {
        timer.start(300);
    }
    return QApplication::exec();
}
