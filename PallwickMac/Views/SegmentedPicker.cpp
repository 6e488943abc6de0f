#include <PallwickMac/Views/SegmentedPicker.h>

#include <PallwickMac/Views/Appearance.h>
#include <PallwickMac/Views/ControlPainting.h>

#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QStyleOption>

namespace pallwick {

namespace {

constexpr double outerRadius = 6;
constexpr double innerRadius = 4.5;

QColor groundColor(const QPalette& palette) {
    return blended(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.08);
}

/// A radio button in all but its looks, for the keyboard's and the screen reader's sake.
class Segment final : public QRadioButton {
public:
    using QRadioButton::QRadioButton;

    [[nodiscard]] QSize sizeHint() const override {
        return {fontMetrics().horizontalAdvance(text()) + 20, fontMetrics().height() + 10};
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }

    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        QStyleOptionButton option;
        initStyleOption(&option);
        const QRectF area = QRectF(rect()).adjusted(2, 2, -2, -2);
        if (isChecked()) {
            option.state.setFlag(QStyle::State_MouseOver, false);
            drawControlSurface(painter, area, innerRadius, option);
        }
        if (showsFocus(option)) {
            drawFocusRing(painter, area, innerRadius, option.palette);
        }
        const QColor full = textColor(TextColor::primary, option.palette);
        painter.setPen(isChecked() || underMouse() ? full
                                                   : legibleOn(groundColor(option.palette),
                                                               textColor(TextColor::secondary, option.palette), full));
        painter.drawText(rect(), Qt::AlignCenter, text());
    }
};

}  // namespace

SegmentedPicker::SegmentedPicker(const QStringList& titles, QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (const QString& title : titles) {
        auto* segment = new Segment(title, this);
        segment->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        segment->setFocusPolicy(Qt::StrongFocus);
        segment->setAccessibleName(title);
        segment->setAttribute(Qt::WA_Hover);
        const int index = static_cast<int>(segments_.size());
        // Not `clicked`: a screen reader checks a segment without a click.
        connect(segment, &QAbstractButton::toggled, this, [this, index](bool checked) {
            if (checked) {
                choose(index);
            }
        });
        row->addWidget(segment);
        segments_.push_back(segment);
    }
    showCurrentIndex();
}

void SegmentedPicker::setCurrentIndex(int index) {
    currentIndex_ = index;
    showCurrentIndex();
}

void SegmentedPicker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(separatorColor(palette()));
    painter.setBrush(groundColor(palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), outerRadius, outerRadius);
}

void SegmentedPicker::choose(int index) {
    if (index != currentIndex_) {
        Q_EMIT indexChosen(index);
    }
    // The segment is checked already; what stays checked is what was published.
    showCurrentIndex();
}

void SegmentedPicker::showCurrentIndex() {
    for (std::size_t index = 0; index < segments_.size(); ++index) {
        if (static_cast<int>(index) == currentIndex_) {
            const QSignalBlocker nobodyChose(segments_[index]);
            segments_[index]->setChecked(true);
        }
    }
}

}  // namespace pallwick
