#pragma once

#include <QWidget>

namespace pallwick {

/// What the settings window shows: what the two modes of the overlays mean. The mode itself is switched by the menus
/// and the main window.
class SettingsView final : public QWidget {
    Q_OBJECT

public:
    explicit SettingsView(QWidget* parent = nullptr);

    /// As high as its texts are at its width, however large their font.
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
};

}  // namespace pallwick
