#include <PallwickMac/Views/WindowAttachmentSection.h>

#include <PallwickMac/App/AppModel.h>
#include <PallwickMac/Views/SymbolButton.h>
#include <PallwickMac/Views/TextLabel.h>
#include <PallwickMac/Views/WindowPicker.h>
#include <PallwickMac/Views/WrappingRow.h>

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace pallwick {

namespace {

QString attachedText(const WindowAttachment& attachment) {
    const QString owner = QStringLiteral("Attached to ") + QString::fromStdString(attachment.ownerName);
    return attachment.title.empty() ? owner : owner + QStringLiteral(" - ") + QString::fromStdString(attachment.title);
}

}  // namespace

WindowAttachmentSection::WindowAttachmentSection(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      picker_(new WindowPicker),
      attachButton_(new SymbolButton(QStringLiteral("Attach"), Symbol::link)),
      detachButton_(new SymbolButton(QStringLiteral("Detach"), Symbol::linkSlash)),
      attachedLine_(new TextLabel(TextStyle::caption, TextColor::secondary)) {
    auto* refreshButton =
        new SymbolOnlyButton(QStringLiteral("Refresh"), Symbol::arrowClockwise, QStringLiteral("Refresh windows"));
    picker_->setAccessibleName(QStringLiteral("Attach to"));
    // A screen reader takes a picker's name for its value here, and asks a label what it is for.
    auto* pickerLabel = new TextLabel(TextStyle::body, TextColor::primary, QStringLiteral("Attach to"), this);
    pickerLabel->setBuddy(picker_);
    pickerLabel->hide();
    attachedLine_->setOverflow(TextLabel::Overflow::twoLines);

    auto* header = new QHBoxLayout;
    header->addWidget(new TextLabel(TextStyle::headline, TextColor::primary, QStringLiteral("Window")));
    header->addStretch();
    header->addWidget(refreshButton);
    auto* controls = new WrappingRow(8, 8);
    controls->addWidget(picker_);
    controls->addWidget(attachButton_);
    controls->addWidget(detachButton_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addLayout(header);
    column->addLayout(controls);
    column->addWidget(attachedLine_);

    connect(refreshButton, &QAbstractButton::clicked, &model_, &AppModel::refreshWindows);
    connect(attachButton_, &QAbstractButton::clicked, &model_, &AppModel::attachSelectedOverlayToWindow);
    connect(detachButton_, &QAbstractButton::clicked, &model_, &AppModel::detachSelectedOverlayFromWindow);
    connect(picker_, &WindowPicker::windowChosen, &model_, &AppModel::setSelectedWindowID);
    connect(&model_, &AppModel::visibleWindowsChanged, this, &WindowAttachmentSection::showWindows);
    connect(&model_, &AppModel::selectedWindowIDChanged, this, &WindowAttachmentSection::showWindows);
    connect(&model_, &AppModel::overlaysChanged, this, &WindowAttachmentSection::showAttachment);
    connect(&model_, &AppModel::selectedOverlayIDChanged, this, &WindowAttachmentSection::showAttachment);
    showWindows();
    showAttachment();
}

void WindowAttachmentSection::showWindows() {
    picker_->setChoice(model_.visibleWindows(), model_.selectedWindowID());
    attachButton_->setEnabled(model_.selectedWindowID().has_value());
}

void WindowAttachmentSection::showAttachment() {
    const BlurOverlay* overlay = model_.selectedOverlay();
    const bool attached = overlay && overlay->windowAttachment;
    detachButton_->setEnabled(attached);
    attachedLine_->setVisible(attached);
    if (attached) {
        attachedLine_->setText(attachedText(*overlay->windowAttachment));
    }
}

}  // namespace pallwick
