#include <PallwickMacCore/Models/OverlayAppearance.h>
#include <gtest/gtest.h>

namespace pallwick {
namespace {

TEST(OverlayAppearance, FadesTheEffectWithTheTint) {
    const OverlayAppearance appearance(BlurStyle(50, "#000000", 80));

    EXPECT_DOUBLE_EQ(appearance.tintAlpha, 0.8);
    EXPECT_DOUBLE_EQ(appearance.effectAlpha, 0.4);
    EXPECT_TRUE(appearance.showsGlassEffect);
}

TEST(OverlayAppearance, HasATintThatIntensityDoesNotTouch) {
    EXPECT_EQ(OverlayAppearance(BlurStyle(0, "#000000", 80)).tintAlpha,
              OverlayAppearance(BlurStyle(100, "#000000", 80)).tintAlpha);
}

TEST(OverlayAppearance, IsNothingAtAllWithoutOpacity) {
    const OverlayAppearance appearance(BlurStyle(100, "#FFFFFF", 0));

    EXPECT_EQ(appearance.tintAlpha, 0);
    EXPECT_EQ(appearance.effectAlpha, 0);
}

TEST(OverlayAppearance, HasNoEffectWithGlassOffWhateverTheNumbers) {
    const OverlayAppearance appearance(BlurStyle(100, "#000000", 100, false));

    EXPECT_FALSE(appearance.showsGlassEffect);
    EXPECT_EQ(appearance.effectAlpha, 1);
}

TEST(OverlayAppearance, LetsNumbersOutOfRangeThrough) {
    BlurStyle style;
    style.intensity = 400;
    style.opacity = -50;

    const OverlayAppearance appearance(style);

    EXPECT_DOUBLE_EQ(appearance.tintAlpha, -0.5);
    EXPECT_DOUBLE_EQ(appearance.effectAlpha, -2);
}

TEST(OverlayAppearance, ComparesAllThreeNumbers) {
    const OverlayAppearance appearance(BlurStyle(50, "#000000", 80));

    EXPECT_EQ(appearance, OverlayAppearance(BlurStyle(50, "#FFFFFF", 80)));
    EXPECT_NE(appearance, OverlayAppearance(BlurStyle(51, "#000000", 80)));
    EXPECT_NE(appearance, OverlayAppearance(BlurStyle(50, "#000000", 81)));
    EXPECT_NE(appearance, OverlayAppearance(BlurStyle(50, "#000000", 80, false)));
}

}  // namespace
}  // namespace pallwick
