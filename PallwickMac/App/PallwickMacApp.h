#pragma once

#include <PallwickMac/App/AppDelegate.h>
#include <PallwickMac/App/AppModel.h>
#include <PallwickMac/App/LostDesktop.h>
#include <PallwickMac/App/MenuBarExtra.h>

#include <QCoreApplication>
#include <QObject>

#include <functional>
#include <memory>

class QDialog;
class QMainWindow;

namespace pallwick {

class DesktopPlatform;

/// The program: owns the platform, the one model, the main window, the settings window and the menu-bar extra, and
/// knows them all. Needs the toolkit's application object.
///
/// It lives until it is told to quit. Its windows may all be closed meanwhile: overlays and the menu-bar extra stay,
/// and a click on the latter, or another start of the program, opens the main window again.
class PallwickMacApp final : public QObject {
    Q_OBJECT

public:
    /// Names, style and habits of the toolkit. Call it once, before the toolkit's application object is made.
    static void prepareToolkit();

    /// `makePresetStore` says where presets are kept; `leave` ends the program with a status after the desktop was
    /// lost.
    PallwickMacApp(std::unique_ptr<DesktopPlatform> platform, const AppModel::PresetStoreFactory& makePresetStore,
                   std::function<void(int status)> leave = QCoreApplication::exit);
    ~PallwickMacApp() override;

    [[nodiscard]] AppModel& model() { return *model_; }
    [[nodiscard]] QMainWindow& mainWindow() { return *mainWindow_; }
    [[nodiscard]] QDialog& settingsWindow() { return *settingsWindow_; }

    [[nodiscard]] MenuBarExtra& menuBarExtra() { return *menuBarExtra_; }

    /// Shows the main window and runs until the program ends. The exit code: 0 after it was told to quit, 1 after the
    /// desktop was lost.
    [[nodiscard]] int run();

private:
    void makeMainWindow();
    void makeSettingsWindow();
    void makeMenus();
    void makeMenuBarExtra();
    void showSettings();
    void showMainWindow(const ActivationToken& token);
    void desktopLost(const QString& reason);

    AppDelegate appDelegate_;
    // Surfaces go before the platform that made them, and views before the model they show.
    std::unique_ptr<DesktopPlatform> platform_;
    std::unique_ptr<AppModel> model_;
    std::unique_ptr<QMainWindow> mainWindow_;
    std::unique_ptr<QDialog> settingsWindow_;
    std::unique_ptr<MenuBarExtra> menuBarExtra_;
    std::function<void(int status)> leave_;
    bool isDesktopLost_ = false;
};

}  // namespace pallwick
