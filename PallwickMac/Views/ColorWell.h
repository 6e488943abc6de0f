#pragma once

#include <QPointer>
#include <QPushButton>

class QColorDialog;

namespace pallwick {

/// A text and a swatch of one opaque colour; pressing it opens a chooser. It shows the colour it is given; a person's
/// choice is only reported.
class ColorWell final : public QPushButton {
    Q_OBJECT

public:
    explicit ColorWell(const QString& text, QWidget* parent = nullptr);

    void setColor(const QColor& color);
    [[nodiscard]] const QColor& color() const { return color_; }

    /// Closes an open chooser without a choice.
    void dismissChooser();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void colorPicked(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void openChooser();

    QColor color_ = Qt::black;
    QPointer<QColorDialog> chooser_;
};

}  // namespace pallwick
