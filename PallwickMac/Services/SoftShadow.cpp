#include <PallwickMac/Services/SoftShadow.h>

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace pallwick {

namespace {

/// Weights from the centre outward; the whole kernel, mirrored, sums to 1.
std::vector<double> gaussianKernel(double sigma, int radius) {
    std::vector<double> weights(static_cast<std::size_t>(radius) + 1);
    double sum = 0;
    for (std::size_t distance = 0; distance < weights.size(); ++distance) {
        const double deviations = static_cast<double>(distance) / sigma;
        weights[distance] = std::exp(-deviations * deviations / 2);
        sum += distance == 0 ? weights[distance] : 2 * weights[distance];
    }
    for (double& weight : weights) {
        weight /= sum;
    }
    return weights;
}

/// One direction of the separable blur: `count` values from `first`, `stride` apart. Beyond both ends lies nothing.
void blurLine(std::vector<double>& values, std::size_t first, std::size_t stride, int count,
              const std::vector<double>& kernel) {
    const int radius = static_cast<int>(kernel.size()) - 1;
    std::vector<double> line(static_cast<std::size_t>(count));
    for (std::size_t index = 0; index < line.size(); ++index) {
        line[index] = values[first + index * stride];
    }
    for (int index = 0; index < count; ++index) {
        double blurred = 0;
        const int end = std::min(count - 1, index + radius);
        for (int source = std::max(0, index - radius); source <= end; ++source) {
            blurred +=
                line[static_cast<std::size_t>(source)] * kernel[static_cast<std::size_t>(std::abs(source - index))];
        }
        values[first + static_cast<std::size_t>(index) * stride] = blurred;
    }
}

double deviceScale(const QPainter& painter) {
    return std::sqrt(std::abs(painter.deviceTransform().determinant()));
}

}  // namespace

SoftShadow::SoftShadow(const QPainterPath& shape, const QColor& color, double blurRadius, const QPointF& offset)
    : shape_(shape), color_(color), sigma_(blurRadius / 2), offset_(offset) {
    // Three standard deviations hold all of a Gaussian that eight bits can show.
    const double margin = std::ceil(3 * sigma_);
    reach_ = shape_.boundingRect().adjusted(-margin, -margin, margin, margin);
}

void SoftShadow::draw(QPainter& painter, const QPointF& origin) {
    const double scale = deviceScale(painter);
    if (scale <= 0) {
        return;
    }
    if (scale != scale_) {
        image_ = render(scale);
        scale_ = scale;
    }
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QSizeF size = QSizeF(image_.size()) / scale_;
    painter.drawImage(QRectF(reach_.topLeft() + origin + offset_, size), image_);
    painter.restore();
}

QImage SoftShadow::render(double scale) const {
    const int width = static_cast<int>(std::ceil(reach_.width() * scale));
    const int height = static_cast<int>(std::ceil(reach_.height() * scale));
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(scale, scale);
        painter.translate(-reach_.topLeft());
        painter.fillPath(shape_, Qt::black);
    }

    const auto columns = static_cast<std::size_t>(width);
    const auto rows = static_cast<std::size_t>(height);
    std::vector<double> coverage(columns * rows);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            coverage[static_cast<std::size_t>(y) * columns + static_cast<std::size_t>(x)] =
                qAlpha(image.pixel(x, y)) / 255.0;
        }
    }
    const double sigma = sigma_ * scale;
    const std::vector<double> kernel = gaussianKernel(sigma, static_cast<int>(std::ceil(3 * sigma)));
    for (std::size_t row = 0; row < rows; ++row) {
        blurLine(coverage, row * columns, 1, width, kernel);
    }
    for (std::size_t column = 0; column < columns; ++column) {
        blurLine(coverage, column, columns, height, kernel);
    }

    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            QColor pixel = color_;
            pixel.setAlphaF(static_cast<float>(
                color_.alphaF() * coverage[static_cast<std::size_t>(y) * columns + static_cast<std::size_t>(x)]));
            image.setPixelColor(x, y, pixel);
        }
    }
    return image;
}

}  // namespace pallwick
