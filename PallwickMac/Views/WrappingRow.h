#pragma once

#include <QLayout>

#include <memory>
#include <vector>

namespace pallwick {

/// Items side by side, each as wide as it wants to be; what finds no room goes on in a further line. The items of a
/// line are centred on one another.
class WrappingRow final : public QLayout {
    Q_OBJECT

public:
    /// `spacing` is kept between items, `lineSpacing` between lines, both in points.
    WrappingRow(int spacing, int lineSpacing);
    ~WrappingRow() override;

    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;

    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    /// All in one line.
    [[nodiscard]] QSize sizeHint() const override;
    /// The widest item.
    [[nodiscard]] QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    /// A run of items that share a line.
    struct Line {
        std::size_t first = 0;
        std::size_t end = 0;
        int height = 0;
    };
    [[nodiscard]] std::vector<Line> lines(int width) const;

    std::vector<std::unique_ptr<QLayoutItem>> items_;
    int lineSpacing_;
};

}  // namespace pallwick
