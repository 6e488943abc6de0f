#include <PallwickMac/Views/SettingsView.h>

#include <PallwickMac/Views/Appearance.h>
#include <PallwickMac/Views/Divider.h>
#include <PallwickMac/Views/TextLabel.h>

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace pallwick {

namespace {

constexpr int formWidth = 460;
constexpr int padding = 20;
constexpr double groupRadius = 6;

/// The surface that the rows of one section share.
class FormGroup final : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(separatorColor(palette()));
        painter.setBrush(sidebarBackground(palette()));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), groupRadius, groupRadius);
    }
};

QLayout* row(const QString& label, const QString& value) {
    auto* name = new TextLabel(TextStyle::body, TextColor::primary, label);
    auto* text = new TextLabel(TextStyle::body, TextColor::secondary, value);
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    name->setBuddy(text);

    auto* row = new QHBoxLayout;
    row->setContentsMargins(12, 10, 12, 10);
    row->setSpacing(16);
    row->addWidget(name);
    row->addWidget(text, 1);
    return row;
}

}  // namespace

SettingsView::SettingsView(QWidget* parent) : QWidget(parent) {
    setFixedWidth(formWidth);

    auto* group = new FormGroup;
    auto* rows = new QVBoxLayout(group);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addLayout(row(QStringLiteral("Locked mode"), QStringLiteral("Overlays pass clicks through to apps below")));
    rows->addWidget(new Divider);
    rows->addLayout(
        row(QStringLiteral("Edit mode"), QStringLiteral("Drag panels or resize from the bottom-right handle")));

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(8);
    column->addWidget(new TextLabel(TextStyle::headline, TextColor::primary, QStringLiteral("Overlay Behavior")));
    column->addWidget(group);
}

QSize SettingsView::sizeHint() const {
    return {formWidth, layout()->totalHeightForWidth(formWidth)};
}

QSize SettingsView::minimumSizeHint() const {
    return sizeHint();
}

}  // namespace pallwick
