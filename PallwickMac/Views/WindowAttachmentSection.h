#pragma once

#include <QWidget>

namespace pallwick {

class AppModel;
class SymbolButton;
class TextLabel;
class WindowPicker;

/// The inspector's section that ties the selected overlay to another application's window. It shows what the model
/// published and only calls its commands; what is unchanged is left alone, for the model publishes several times a
/// second while an overlay follows a window.
class WindowAttachmentSection final : public QWidget {
    Q_OBJECT

public:
    /// `model` is not owned and must outlive the view.
    explicit WindowAttachmentSection(AppModel& model, QWidget* parent = nullptr);

private:
    void showWindows();
    void showAttachment();

    AppModel& model_;
    WindowPicker* picker_;
    SymbolButton* attachButton_;
    SymbolButton* detachButton_;
    TextLabel* attachedLine_;
};

}  // namespace pallwick
