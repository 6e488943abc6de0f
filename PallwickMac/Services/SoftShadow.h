#pragma once

#include <QColor>
#include <QImage>
#include <QPainterPath>
#include <QPointF>

class QPainter;

namespace pallwick {

/// The blurred shadow of one small shape. The blur is worked out once for each device scale, not at every drawing.
class SoftShadow {
public:
    /// All in points, y down. `blurRadius` is twice the standard deviation of the Gaussian; `offset` is where the
    /// shadow lies from its shape.
    SoftShadow(const QPainterPath& shape, const QColor& color, double blurRadius, const QPointF& offset);

    /// Draws the shadow alone, beneath where the shape will be: `origin` is where the shape's (0, 0) goes.
    void draw(QPainter& painter, const QPointF& origin);

private:
    [[nodiscard]] QImage render(double scale) const;

    QPainterPath shape_;
    QColor color_;
    double sigma_;
    QPointF offset_;
    /// What the shadow can reach, in the shape's coordinates.
    QRectF reach_;
    /// Device pixels per point of `image_`; 0 before the first drawing.
    double scale_ = 0;
    QImage image_;
};

}  // namespace pallwick
