#pragma once

class QWidget;

namespace pallwick {

/// What happens once the program has started.
class AppDelegate {
public:
    /// Shows `mainWindow` and brings it to the front.
    void applicationDidFinishLaunching(QWidget& mainWindow) const;
};

}  // namespace pallwick
