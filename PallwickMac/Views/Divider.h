#pragma once

#include <QWidget>

namespace pallwick {

/// A horizontal hairline in the palette's separator colour.
class Divider final : public QWidget {
    Q_OBJECT

public:
    explicit Divider(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace pallwick
