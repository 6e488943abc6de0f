#include "ViewTestSupport.h"

#include <PallwickMac/Views/Appearance.h>

#include <QImage>
#include <QMenu>

namespace pallwick {
namespace {

class MenuLook : public ::testing::TestWithParam<Scheme> {};

TEST_P(MenuLook, HasAFrameAndASeparatorToBeSeen) {
    const ApplicationPalette palette(GetParam().palette);
    QMenu menu;
    menu.addAction(QStringLiteral("Save Display Preset"));
    QAction* separator = menu.addSeparator();
    menu.addAction(QStringLiteral("Save App Preset"));
    menu.resize(menu.sizeHint());
    const QImage image = menu.grab().toImage();

    const auto colourAt = [&](int x, int y) { return image.pixelColor(x, y); };
    const int middle = image.width() / 2;
    const QColor ground = colourAt(3, 3);
    for (int x = 0; x < image.width(); ++x) {
        EXPECT_GE(contrastRatio(colourAt(x, 0), ground), 1.3) << x;
        EXPECT_GE(contrastRatio(colourAt(x, image.height() - 1), ground), 1.3) << x;
    }
    for (int y = 0; y < image.height(); ++y) {
        EXPECT_GE(contrastRatio(colourAt(0, y), ground), 1.3) << y;
        EXPECT_GE(contrastRatio(colourAt(image.width() - 1, y), ground), 1.3) << y;
    }
    EXPECT_GE(contrastRatio(colourAt(middle, menu.actionGeometry(separator).center().y()), ground), 1.15);
}

INSTANTIATE_TEST_SUITE_P(Schemes, MenuLook,
                         ::testing::Values(Scheme{"Light", QPalette(QColor(0xef, 0xef, 0xef))},
                                           Scheme{"Dark", darkPalette()},
                                           Scheme{"Black", QPalette(QColor(0x10, 0x10, 0x10))}),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace pallwick
