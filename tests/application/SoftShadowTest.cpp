#include <PallwickMac/Services/SoftShadow.h>

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>

namespace pallwick {
namespace {

constexpr double blurRadius = 5;
constexpr double sigma = blurRadius / 2;

/// The share of a Gaussian that lies below `deviations`.
double normalDistribution(double deviations) {
    return std::erfc(-deviations / std::sqrt(2.0)) / 2;
}

QPainterPath square(double size) {
    QPainterPath path;
    path.addRect(0, 0, size, size);
    return path;
}

/// A shadow of a square of 60 points at (20, 20) on 100 by 100 points, `scale` pixels to the point.
QImage rendered(SoftShadow& shadow, double scale) {
    const int size = static_cast<int>(std::ceil(100 * scale));
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(scale, scale);
    shadow.draw(painter, QPointF(20, 20));
    return image;
}

class SoftShadowAtScale : public ::testing::TestWithParam<double> {};

TEST_P(SoftShadowAtScale, FallsOffAcrossAnEdgeAsTheGaussianDoes) {
    const double scale = GetParam();
    SoftShadow shadow(square(60), Qt::black, blurRadius, QPointF(0, 0));

    const QImage image = rendered(shadow, scale);

    const int middle = static_cast<int>(50 * scale);
    for (const double fromEdge : {-5.0, -2.5, 0.0, 2.5, 5.0}) {
        const int column = static_cast<int>((80 + fromEdge) * scale);
        const double pixelCentre = (column + 0.5) / scale;
        EXPECT_NEAR(image.pixelColor(column, middle).alphaF(), normalDistribution((80 - pixelCentre) / sigma), 0.02)
            << fromEdge << " points beyond the edge";
    }
}

TEST_P(SoftShadowAtScale, EndsThreeStandardDeviationsFromItsShape) {
    const double scale = GetParam();
    SoftShadow shadow(square(60), Qt::black, blurRadius, QPointF(0, 0));

    const QImage image = rendered(shadow, scale);

    const int middle = static_cast<int>(50 * scale);
    EXPECT_EQ(image.pixelColor(static_cast<int>(89 * scale), middle).alpha(), 0);
    EXPECT_EQ(image.pixelColor(static_cast<int>(10 * scale), middle).alpha(), 0);
}

INSTANTIATE_TEST_SUITE_P(, SoftShadowAtScale, ::testing::Values(1.0, 1.25, 1.5, 2.0),
                         [](const ::testing::TestParamInfo<double>& test) {
                             return "Percent" + std::to_string(static_cast<int>(test.param * 100));
                         });

TEST(SoftShadow, IsAsStrongAsItsColour) {
    SoftShadow shadow(square(60), QColor(0, 0, 0, 90), blurRadius, QPointF(0, 0));

    EXPECT_EQ(rendered(shadow, 1).pixelColor(50, 50), QColor(0, 0, 0, 90));
}

TEST(SoftShadow, LiesAtItsOffset) {
    SoftShadow centred(square(60), Qt::black, blurRadius, QPointF(0, 0));
    SoftShadow lowered(square(60), Qt::black, blurRadius, QPointF(0, 3));

    const QImage expected = rendered(centred, 1).copy(0, 0, 100, 97);

    EXPECT_EQ(rendered(lowered, 1).copy(0, 3, 100, 97), expected);
}

TEST(SoftShadow, IsMadeAnewForAnotherScale) {
    SoftShadow shadow(square(60), Qt::black, blurRadius, QPointF(0, 0));
    SoftShadow fresh(square(60), Qt::black, blurRadius, QPointF(0, 0));
    const QImage first = rendered(shadow, 1);

    const QImage second = rendered(shadow, 2);

    EXPECT_EQ(second, rendered(fresh, 2));
    EXPECT_EQ(rendered(shadow, 1), first);
}

}  // namespace
}  // namespace pallwick
