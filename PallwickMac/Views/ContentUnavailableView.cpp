#include <PallwickMac/Views/ContentUnavailableView.h>

#include <PallwickMac/Views/TextLabel.h>

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace pallwick {

namespace {

constexpr int symbolSide = 40;

class SymbolView final : public QWidget {
public:
    SymbolView(Symbol symbol, QWidget* parent) : QWidget(parent), icon_(symbol, this, TextColor::secondary) {
        setFixedSize(symbolSide, symbolSide);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        icon_.paint(&painter, rect());
    }

private:
    SymbolIcon icon_;
};

}  // namespace

ContentUnavailableView::ContentUnavailableView(const QString& title, Symbol symbol, const QString& description,
                                               QWidget* parent)
    : QWidget(parent) {
    auto* descriptionLabel = new TextLabel(TextStyle::callout, TextColor::secondary, description, this);
    descriptionLabel->setWordWrap(true);
    descriptionLabel->setAlignment(Qt::AlignHCenter | Qt::AlignTop);

    // In a row of its own the label is asked for its height at the width that it gets: the one that it wants, at which
    // its lines are of about the same length.
    auto* descriptionRow = new QHBoxLayout;
    descriptionRow->addStretch();
    descriptionRow->addWidget(descriptionLabel);
    descriptionRow->addStretch();

    auto* column = new QVBoxLayout(this);
    column->setSpacing(0);
    column->addStretch(2);
    column->addWidget(new SymbolView(symbol, this), 0, Qt::AlignHCenter);
    column->addSpacing(12);
    column->addWidget(new TextLabel(TextStyle::title3, TextColor::primary, title, this), 0, Qt::AlignHCenter);
    column->addSpacing(6);
    column->addLayout(descriptionRow);
    column->addStretch(3);
}

}  // namespace pallwick
