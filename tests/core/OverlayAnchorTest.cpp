#include <PallwickMacCore/Models/OverlayAnchor.h>
#include <gtest/gtest.h>

#include <unordered_set>

namespace pallwick {
namespace {

struct Case {
    OverlayAnchor anchor;
    std::string_view text;
};

class OverlayAnchorCase : public testing::TestWithParam<Case> {};

TEST_P(OverlayAnchorCase, IsItsRawValue) {
    EXPECT_EQ(rawValue(GetParam().anchor), GetParam().text);
    EXPECT_EQ(fromRawValue<OverlayAnchor>(GetParam().text), GetParam().anchor);
}

INSTANTIATE_TEST_SUITE_P(All, OverlayAnchorCase,
                         testing::Values(Case{OverlayAnchor::screen, "screen"},
                                         Case{OverlayAnchor::application, "application"},
                                         Case{OverlayAnchor::window, "window"}));

class OverlayAnchorRefusal : public testing::TestWithParam<std::string_view> {};

TEST_P(OverlayAnchorRefusal, GivesNone) {
    EXPECT_EQ(fromRawValue<OverlayAnchor>(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Texts, OverlayAnchorRefusal, testing::Values("", "Window", "window\n", " screen", "display"));

TEST(OverlayAnchor, CanBeHashed) {
    const std::unordered_set<OverlayAnchor> anchors{OverlayAnchor::screen, OverlayAnchor::window,
                                                    OverlayAnchor::window};

    EXPECT_EQ(anchors.size(), 2U);
}

}  // namespace
}  // namespace pallwick
