#include "ViewTestSupport.h"

#include <PallwickMac/Views/SettingsView.h>

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>
#include <utility>

namespace pallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> textsFromTopToBottom(const QWidget& view) {
    QList<QLabel*> labels = view.findChildren<QLabel*>();
    const auto place = [&](const QLabel* label) { return label->mapTo(&view, QPoint(0, label->height() / 2)); };
    std::ranges::sort(labels, [&](const QLabel* one, const QLabel* other) {
        return std::pair(place(one).y(), place(one).x()) < std::pair(place(other).y(), place(other).x());
    });
    std::vector<std::string> texts;
    for (const QLabel* label : labels) {
        texts.push_back(label->text().toStdString());
    }
    return texts;
}

TEST(SettingsView, ExplainsBothModesInOneSection) {
    SettingsView view;
    showNow(view);

    EXPECT_THAT(textsFromTopToBottom(view),
                ElementsAre("Overlay Behavior", "Locked mode", "Overlays pass clicks through to apps below",
                            "Edit mode", "Drag panels or resize from the bottom-right handle"));
    EXPECT_EQ(view.width(), 460);
}

TEST(SettingsView, HasNoControls) {
    SettingsView view;

    EXPECT_THAT(view.findChildren<QAbstractButton*>(), IsEmpty());
    EXPECT_THAT(view.findChildren<QAbstractSlider*>(), IsEmpty());
    EXPECT_THAT(view.findChildren<QLineEdit*>(), IsEmpty());
    EXPECT_THAT(view.findChildren<QComboBox*>(), IsEmpty());
}

TEST(SettingsView, ShowsAllOfItsTextTwiceAsLarge) {
    SettingsView view;
    QFont large = view.font();
    large.setPointSizeF(large.pointSizeF() * 2);
    for (QLabel* label : view.findChildren<QLabel*>()) {
        label->setFont(large);
    }
    showNow(view);
    view.adjustSize();

    for (const QLabel* label : view.findChildren<QLabel*>()) {
        const QRect needed =
            label->fontMetrics().boundingRect(QRect(0, 0, label->width(), 10'000),
                                              label->wordWrap() ? Qt::TextWordWrap : Qt::TextSingleLine, label->text());
        EXPECT_LE(needed.width(), label->width()) << label->text().toStdString();
        EXPECT_LE(needed.height(), label->height()) << label->text().toStdString();
    }
}

}  // namespace
}  // namespace pallwick
