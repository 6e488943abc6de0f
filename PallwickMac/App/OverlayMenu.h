#pragma once

#include <QMenu>

namespace pallwick {

class AppModel;

/// The menu "Overlay": what can be done to all overlays, with its shortcuts, from whichever of the program's windows
/// has the keyboard.
class OverlayMenu final : public QMenu {
    Q_OBJECT

public:
    /// `model` is not owned and must outlive the menu.
    explicit OverlayMenu(AppModel& model, QWidget* parent = nullptr);
};

/// An action that switches between the modes and always names the one that it leads to. The parent owns it; `model`
/// must outlive it.
[[nodiscard]] QAction* makeEditModeAction(AppModel& model, QObject* parent);

}  // namespace pallwick
