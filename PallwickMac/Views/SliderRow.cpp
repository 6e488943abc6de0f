#include <PallwickMac/Views/SliderRow.h>

#include <PallwickMac/Views/TextLabel.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QScopedValueRollback>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>

namespace pallwick {

SliderRow::SliderRow(const QString& title, int lowerBound, int upperBound, const QString& suffix, QWidget* parent)
    : QWidget(parent),
      suffix_(suffix),
      valueLabel_(new TextLabel(TextStyle::body, TextColor::secondary, {}, this)),
      slider_(new QSlider(Qt::Horizontal, this)) {
    Q_ASSERT(lowerBound <= upperBound);
    valueLabel_->setMonospacedDigits(true);
    slider_->setRange(lowerBound, upperBound);
    slider_->setSingleStep(1);
    slider_->setPageStep(10);
    slider_->setFocusPolicy(Qt::StrongFocus);
    slider_->setAccessibleName(title);
    slider_->installEventFilter(this);

    auto* titleRow = new QHBoxLayout;
    titleRow->addWidget(new TextLabel(TextStyle::body, TextColor::primary, title, this));
    titleRow->addStretch();
    titleRow->addWidget(valueLabel_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addLayout(titleRow);
    column->addWidget(slider_);

    // A person's move is an action, even one to the number that stands in for a stored one out of range; a screen
    // reader just sets the value.
    connect(slider_, &QSlider::actionTriggered, this, &SliderRow::reportChoice);
    connect(slider_, &QSlider::valueChanged, this, [this] {
        if (!isShowing_) {
            reportChoice();
        }
    });
    connect(slider_, &QSlider::sliderReleased, this, &SliderRow::moveSliderToValue);
    setValue(lowerBound);
}

void SliderRow::setValue(std::int64_t value) {
    value_ = value;
    const QString text = QString::number(value) + suffix_;
    // A screen reader is told of every description that is set, the same one too.
    if (text != valueLabel_->text()) {
        valueLabel_->setText(text);
        slider_->setAccessibleDescription(text);
    }
    // Under the mouse the slider is the mouse's; it catches up when let go.
    if (!slider_->isSliderDown()) {
        moveSliderToValue();
    }
}

bool SliderRow::eventFilter(QObject* watched, QEvent* event) {
    // Scrolling the pane must not change what an overlay hides just because a slider passes beneath the pointer.
    if (watched == slider_ && event->type() == QEvent::Wheel && !slider_->hasFocus()) {
        event->ignore();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void SliderRow::reportChoice() {
    const int position = slider_->sliderPosition();
    if (position != value_) {
        Q_EMIT valueChosen(position);
    }
}

void SliderRow::moveSliderToValue() {
    const QScopedValueRollback<bool> showing(isShowing_, true);
    slider_->setValue(static_cast<int>(std::clamp<std::int64_t>(value_, slider_->minimum(), slider_->maximum())));
}

}  // namespace pallwick
