#pragma once

#include <QWidget>

class QLayout;

namespace pallwick {

class AppModel;
class SymbolButton;
class TextLabel;

/// The main window's content: the overlay list beside a button bar, the style inspector and a status line.
class ContentView final : public QWidget {
    Q_OBJECT

public:
    /// `model` is not owned and must outlive the view.
    explicit ContentView(AppModel& model, QWidget* parent = nullptr);

private:
    [[nodiscard]] QWidget* makeDetailColumn();
    [[nodiscard]] QLayout* makeButtonBar();
    [[nodiscard]] QWidget* makePresetsButton();
    [[nodiscard]] QWidget* makeInspector();
    [[nodiscard]] QLayout* makeStatusRow();
    void showOverlays();
    void showEditMode();
    void showStatusText();

    AppModel& model_;
    SymbolButton* modeButton_ = nullptr;
    SymbolButton* clearButton_ = nullptr;
    TextLabel* statusLabel_ = nullptr;
    TextLabel* modeLabel_ = nullptr;
};

}  // namespace pallwick
