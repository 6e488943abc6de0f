#include <PallwickMac/Views/WindowPicker.h>

#include <PallwickMac/Views/Appearance.h>

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cstddef>

namespace pallwick {

namespace {

constexpr int fixedWidth = 190;

}  // namespace

WindowPicker::WindowPicker(QWidget* parent) : QComboBox(parent) {
    setFixedWidth(fixedWidth);
    // A title of four thousand letters must not widen the list beyond the screen.
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    view()->setTextElideMode(Qt::ElideMiddle);
    addItem(QStringLiteral("Choose window"));
    connect(this, &QComboBox::currentIndexChanged, this, [this](int index) {
        Q_EMIT windowChosen(index > 0 ? std::optional(windows_[static_cast<std::size_t>(index) - 1].id) : std::nullopt);
    });
}

void WindowPicker::setChoice(const std::vector<TrackedWindow>& windows, std::optional<std::uint32_t> chosen) {
    const QSignalBlocker onlyShown(this);
    if (windows_ != windows) {
        windows_ = windows;
        while (count() > 1) {
            removeItem(count() - 1);
        }
        for (const TrackedWindow& window : windows_) {
            addItem(QString::fromStdString(window.displayName()));
        }
    }
    const auto window = chosen ? std::ranges::find(windows_, *chosen, &TrackedWindow::id) : windows_.end();
    setCurrentIndex(window == windows_.end() ? 0 : static_cast<int>(window - windows_.begin()) + 1);
    update();
}

QSize WindowPicker::sizeHint() const {
    return {fixedWidth, QComboBox::sizeHint().height()};
}

QRect WindowPicker::textField() const {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    return style()
        ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this)
        .adjusted(0, 0, -2, 0);
}

bool WindowPicker::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && fontMetrics().horizontalAdvance(currentText()) > textField().width()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), plainToolTip(currentText()), this);
        return true;
    }
    return QComboBox::event(event);
}

void WindowPicker::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideRight, textField().width());
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void WindowPicker::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

}  // namespace pallwick
