#include <PallwickMacCore/Models/OverlayShape.h>
#include <gmock/gmock.h>

#include <unordered_set>

namespace pallwick {
namespace {

TEST(OverlayShape, ListsTheRectangleBeforeTheCircle) {
    EXPECT_THAT(allCases<OverlayShape>(), testing::ElementsAre(OverlayShape::rectangle, OverlayShape::circle));
}

TEST(OverlayShape, HasARawValueAndATitleForEachCase) {
    EXPECT_EQ(rawValue(OverlayShape::rectangle), "rectangle");
    EXPECT_EQ(rawValue(OverlayShape::circle), "circle");
    EXPECT_EQ(title(OverlayShape::rectangle), "Rectangle");
    EXPECT_EQ(title(OverlayShape::circle), "Circle");
}

TEST(OverlayShape, IsFoundByItsExactRawValue) {
    EXPECT_EQ(fromRawValue<OverlayShape>("rectangle"), OverlayShape::rectangle);
    EXPECT_EQ(fromRawValue<OverlayShape>("circle"), OverlayShape::circle);
}

class OverlayShapeRefusal : public testing::TestWithParam<std::string_view> {};

TEST_P(OverlayShapeRefusal, GivesNone) {
    EXPECT_EQ(fromRawValue<OverlayShape>(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Texts, OverlayShapeRefusal, testing::Values("", "Circle", " circle", "circle ", "square"));

TEST(OverlayShape, CanBeHashed) {
    const std::unordered_set<OverlayShape> shapes{OverlayShape::rectangle, OverlayShape::circle, OverlayShape::circle};

    EXPECT_EQ(shapes.size(), 2U);
}

}  // namespace
}  // namespace pallwick
