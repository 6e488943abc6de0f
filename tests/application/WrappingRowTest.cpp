#include "ViewTestSupport.h"

#include <PallwickMac/Views/WrappingRow.h>

#include <memory>

namespace pallwick {
namespace {

/// Three widgets of 100 by 20, 50 by 30 and 80 by 10 points.
class WrappingRowTest : public ::testing::Test {
protected:
    WrappingRowTest() {
        for (const QSize& size : {QSize(100, 20), QSize(50, 30), QSize(80, 10)}) {
            auto* widget = new QWidget(&host_);
            widget->setFixedSize(size);
            row_->addWidget(widget);
        }
        host_.setLayout(row_);
    }

    QRect place(int index) { return row_->itemAt(index)->geometry(); }

    QWidget host_;
    WrappingRow* row_ = new WrappingRow(10, 4);
};

TEST_F(WrappingRowTest, PutsItsItemsSideBySideWhereThereIsRoom) {
    row_->setGeometry({0, 0, 250, 30});

    EXPECT_EQ(row_->sizeHint(), QSize(250, 30));
    EXPECT_EQ(row_->heightForWidth(250), 30);
    EXPECT_EQ(place(0), QRect(0, 5, 100, 20));
    EXPECT_EQ(place(1), QRect(110, 0, 50, 30));
    EXPECT_EQ(place(2), QRect(170, 10, 80, 10));
}

TEST_F(WrappingRowTest, GoesOnInAFurtherLine) {
    row_->setGeometry({0, 0, 249, 44});

    EXPECT_EQ(row_->heightForWidth(249), 44);
    EXPECT_EQ(place(1), QRect(110, 0, 50, 30));
    EXPECT_EQ(place(2), QRect(0, 34, 80, 10));
}

TEST_F(WrappingRowTest, GivesEachItemALineWhereThereIsRoomForOneOnly) {
    EXPECT_EQ(row_->minimumSize(), QSize(100, 30));
    EXPECT_EQ(row_->heightForWidth(100), 20 + 4 + 30 + 4 + 10);
}

TEST_F(WrappingRowTest, RunsFromTheRightWhereTheTextDoes) {
    host_.setLayoutDirection(Qt::RightToLeft);

    row_->setGeometry({0, 0, 300, 30});

    EXPECT_EQ(place(0), QRect(200, 5, 100, 20));
    EXPECT_EQ(place(1), QRect(140, 0, 50, 30));
}

TEST_F(WrappingRowTest, LetsGoOfAnItem) {
    const std::unique_ptr<QLayoutItem> taken(row_->takeAt(1));

    EXPECT_EQ(row_->count(), 2);
    EXPECT_EQ(row_->itemAt(2), nullptr);
    EXPECT_EQ(row_->takeAt(2), nullptr);
    EXPECT_EQ(row_->heightForWidth(190), 20);
}

}  // namespace
}  // namespace pallwick
