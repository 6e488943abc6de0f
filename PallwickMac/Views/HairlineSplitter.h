#pragma once

#include <QSplitter>

namespace pallwick {

/// Columns divided by hairlines in the palette's separator colour; the area that can be dragged is wider.
class HairlineSplitter final : public QSplitter {
    Q_OBJECT

public:
    explicit HairlineSplitter(QWidget* parent = nullptr);

protected:
    [[nodiscard]] QSplitterHandle* createHandle() override;
};

}  // namespace pallwick
