#pragma once

#include <PallwickMac/Views/Appearance.h>

#include <QLabel>

namespace pallwick {

/// A text in one of the views' styles and colours; it follows the font and the palette of the widget that it is in.
class TextLabel final : public QLabel {
    Q_OBJECT

public:
    enum class Overflow {
        /// Asks for the room of its whole text.
        none,
        /// Takes the room it is given and ends in an ellipsis where that is too little; the tooltip has all of it.
        elided,
        /// Breaks into a second line and ends that one in an ellipsis.
        twoLines,
    };

    TextLabel(TextStyle style, TextColor color, const QString& text = {}, QWidget* parent = nullptr);

    void setTextColor(TextColor color);
    [[nodiscard]] TextColor color() const { return color_; }

    void setOverflow(Overflow overflow);

    /// Gives every digit the same width, so that a changing number does not shake its neighbours.
    void setMonospacedDigits(bool monospaced);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Lines {
        QStringList shown;
        bool isCutShort = false;
    };
    /// The text as one or two lines of `width` pixels.
    [[nodiscard]] Lines lines(int width) const;
    [[nodiscard]] bool isCutShort() const;
    void followParent();
    [[nodiscard]] int digitWidth() const;
    [[nodiscard]] int advance(QChar character) const;
    [[nodiscard]] int monospacedWidth() const;

    TextStyle style_;
    TextColor color_;
    Overflow overflow_ = Overflow::none;
    bool monospacedDigits_ = false;
};

}  // namespace pallwick
