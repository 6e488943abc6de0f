#pragma once

#include <QStringList>
#include <QWidget>

#include <vector>

class QAbstractButton;

namespace pallwick {

/// One choice of a few, all of them in view. It shows the choice it is given; a person's choice is only reported.
class SegmentedPicker final : public QWidget {
    Q_OBJECT

public:
    explicit SegmentedPicker(const QStringList& titles, QWidget* parent = nullptr);

    void setCurrentIndex(int index);
    [[nodiscard]] int currentIndex() const { return currentIndex_; }

Q_SIGNALS:
    /// A person chose another segment than the one shown.
    void indexChosen(int index);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void choose(int index);
    void showCurrentIndex();

    std::vector<QAbstractButton*> segments_;
    int currentIndex_ = 0;
};

}  // namespace pallwick
