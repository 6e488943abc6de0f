#pragma once

#include <PallwickMacCore/Models/BlurOverlay.h>

#include <QWidget>

#include <optional>

class QStackedLayout;

namespace pallwick {

class AppModel;
class ColorWell;
class SegmentedPicker;
class SliderRow;
class TextLabel;
class ToggleSwitch;

/// Edits the selected overlay; a placeholder while there is none. Every control shows what the model published and
/// only calls its commands.
class StyleInspectorView final : public QWidget {
    Q_OBJECT

public:
    /// `model` is not owned and must outlive the view.
    explicit StyleInspectorView(AppModel& model, QWidget* parent = nullptr);

private:
    [[nodiscard]] QWidget* makePane();
    [[nodiscard]] QLayout* makeShapeRow();
    [[nodiscard]] QLayout* makeGlassAndColorRow();
    void showSelectedOverlay();

    AppModel& model_;
    SegmentedPicker* shapePicker_;
    SliderRow* blurRow_;
    SliderRow* opacityRow_;
    ToggleSwitch* glassSwitch_;
    ColorWell* colorWell_;
    TextLabel* colorText_;
    QWidget* placeholder_;
    QWidget* pane_;
    QStackedLayout* pages_;
    /// Whose values the controls show.
    std::optional<UUID> shownOverlayID_;
};

}  // namespace pallwick
