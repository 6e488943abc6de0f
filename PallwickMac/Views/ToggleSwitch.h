#pragma once

#include <QCheckBox>

namespace pallwick {

/// A check box that looks like a switch behind its text.
class ToggleSwitch final : public QCheckBox {
    Q_OBJECT

public:
    explicit ToggleSwitch(const QString& text, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace pallwick
