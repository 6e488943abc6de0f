#pragma once

#include <PallwickMac/Platform/StatusItem.h>

#include <QMenu>
#include <QObject>

#include <memory>
#include <vector>

namespace pallwick {

class AppModel;
class DesktopPlatform;

/// The program's icon in the desktop's panel, with a menu of what can be done without the main window.
class MenuBarExtra final : public QObject {
    Q_OBJECT

public:
    /// `model` and `platform` are not owned and must outlive the object. `icon` takes its colours from the palette.
    MenuBarExtra(AppModel& model, DesktopPlatform& platform, const QIcon& icon);
    ~MenuBarExtra() override;

    /// Pops up where the desktop does not show the menu itself.
    [[nodiscard]] QMenu& menu() { return menu_; }

Q_SIGNALS:
    /// The icon was clicked.
    void activated(const pallwick::ActivationToken& token);

protected:
    /// Watches the application object for a change of the palette.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeEntries(AppModel& model);
    [[nodiscard]] std::vector<StatusItemEntry> entries() const;
    void choose(int index);

    QIcon icon_;
    QMenu menu_;
    std::unique_ptr<StatusItem> item_;
};

}  // namespace pallwick
