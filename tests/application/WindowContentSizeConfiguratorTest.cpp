#include "ViewTestSupport.h"

#include <PallwickMac/Views/WindowContentSizeConfigurator.h>

#include <QMainWindow>
#include <QMenuBar>

#include <memory>

namespace pallwick {
namespace {

constexpr QSize minimumSize(760, 460);

class WindowContentSizeConfiguratorTest : public ::testing::Test {
protected:
    WindowContentSizeConfiguratorTest() {
        window.setCentralWidget(content);
        window.menuBar()->addMenu(QStringLiteral("Menu"));
    }

    QMainWindow window;
    QWidget* content = new QWidget;
};

TEST_F(WindowContentSizeConfiguratorTest, GrowsASmallWindowInBothDirections) {
    window.resize(600, 400);
    new WindowContentSizeConfigurator(minimumSize, content);

    showNow(window);

    EXPECT_EQ(content->size(), minimumSize);
    EXPECT_GT(window.height(), content->height());
}

TEST_F(WindowContentSizeConfiguratorTest, KeepsADimensionThatIsLargeEnough) {
    window.resize(900, 400);
    new WindowContentSizeConfigurator(minimumSize, content);

    showNow(window);

    EXPECT_EQ(content->size(), QSize(900, 460));
}

TEST_F(WindowContentSizeConfiguratorTest, NeverShrinksAWindow) {
    window.resize(1000, 800);
    showNow(window);
    const QSize before = window.size();

    new WindowContentSizeConfigurator(minimumSize, content);
    showNow(window);

    EXPECT_EQ(window.size(), before);
}

TEST_F(WindowContentSizeConfiguratorTest, LetsNobodyMakeTheWindowSmaller) {
    new WindowContentSizeConfigurator(minimumSize, content);
    showNow(window);

    window.resize(300, 200);

    EXPECT_EQ(content->size(), minimumSize);
}

TEST_F(WindowContentSizeConfiguratorTest, WaitsForAWindow) {
    auto lone = std::make_unique<QWidget>();
    auto* configurator = new WindowContentSizeConfigurator(minimumSize, lone.get());
    showNow(*lone);
    EXPECT_LT(lone->width(), minimumSize.width());

    configurator->setParent(content);
    configurator->show();
    showNow(window);

    EXPECT_EQ(content->size(), minimumSize);
}

TEST_F(WindowContentSizeConfiguratorTest, MayBeGoneBeforeItIsInAWindow) {
    delete new WindowContentSizeConfigurator(minimumSize, nullptr);
    window.resize(600, 400);

    showNow(window);

    EXPECT_EQ(window.size(), QSize(600, 400));
}

}  // namespace
}  // namespace pallwick
