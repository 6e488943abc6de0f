#pragma once

#include <QWidget>

#include <cstdint>

class QSlider;

namespace pallwick {

class TextLabel;

/// A title and a whole number with a slider beneath. It shows the number it is given, outside the slider's range too;
/// a person's choice is only reported.
class SliderRow final : public QWidget {
    Q_OBJECT

public:
    /// `lowerBound` must not exceed `upperBound`.
    SliderRow(const QString& title, int lowerBound, int upperBound, const QString& suffix, QWidget* parent = nullptr);

    void setValue(std::int64_t value);

Q_SIGNALS:
    /// A person moved the slider to another number than the one shown.
    void valueChosen(int value);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void reportChoice();
    void moveSliderToValue();

    QString suffix_;
    std::int64_t value_ = 0;
    /// The slider is being moved to the value, not by anybody.
    bool isShowing_ = false;
    TextLabel* valueLabel_;
    QSlider* slider_;
};

}  // namespace pallwick
