#include <PallwickMac/Backdrop/Rescaling.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

namespace pallwick::backdrop {

namespace {

constexpr std::uint32_t evenChannels = 0x00FF00FF;

// The mean, two of a pixel's four channels at a time, each with eight free bits above it. Halves are rounded up in even
// columns and down in odd ones, or three halvings would brighten the picture by a third of a level.
std::uint32_t meanOfFour(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d, int column) {
    const std::uint32_t rounding = (column & 1) == 0 ? 0x00020002 : 0x00010001;
    const auto mean = [rounding](std::uint32_t p, std::uint32_t q, std::uint32_t r, std::uint32_t s) {
        return (((p & evenChannels) + (q & evenChannels) + (r & evenChannels) + (s & evenChannels) + rounding) >> 2) &
               evenChannels;
    };
    return mean(a, b, c, d) | (mean(a >> 8, b >> 8, c >> 8, d >> 8) << 8);
}

// Weights are in 16ths: exact for enlarging by 8, 4 and 2, and small enough that a channel with four fractional bits
// times its weights stays within sixteen bits.
constexpr int fullWeight = 16;

// Where an enlarged pixel's centre falls between two of the original's.
struct Sample {
    int first;
    int second;
    int weightOfSecond;
};

Sample sampleAt(int position, int factor, int size) {
    // The centre of the enlarged pixel in units of 1 / (2 * factor) of an original pixel, counted from a centre.
    const int units = 2 * position + 1 - factor;
    const int step = 2 * factor;
    const int index = units >= 0 ? units / step : -((-units + step - 1) / step);
    return {.first = std::clamp(index, 0, size - 1),
            .second = std::clamp(index + 1, 0, size - 1),
            .weightOfSecond = (units - index * step) * fullWeight / step};
}

using Channel = std::uint16_t;

// A pixel's four channels in sixteen bits each, so that one multiplication weighs all of them.
std::uint64_t spread(std::uint32_t pixel) {
    const std::uint64_t halves = (std::uint64_t{pixel} | std::uint64_t{pixel} << 16) & 0x0000FFFF0000FFFF;
    return (halves | halves << 8) & 0x00FF00FF00FF00FF;
}

// One row of the original enlarged to the side; channels with four fractional bits, in a pixel's own order.
void enlargeRow(const std::uint32_t* source, const std::vector<Sample>& columns, Channel* target) {
    for (const Sample& column : columns) {
        const auto weight = static_cast<std::uint64_t>(column.weightOfSecond);
        const std::uint64_t mixed =
            spread(source[column.first]) * (fullWeight - weight) + spread(source[column.second]) * weight;
        std::memcpy(target, &mixed, sizeof(mixed));
        target += 4;
    }
}

// A row between two enlarged ones. All channels are weighed alike, so their order in memory does not matter.
void mixRows(const Channel* upper, const Channel* lower, int weightOfLower, std::uint32_t* target, std::size_t width) {
    const auto weight = static_cast<Channel>(weightOfLower);
    const auto rest = static_cast<Channel>(fullWeight - weightOfLower);
    auto* channels = reinterpret_cast<std::uint8_t*>(target);
    for (std::size_t i = 0; i < width * 4; ++i) {
        const auto sum = static_cast<Channel>(upper[i] * rest + lower[i] * weight + 128);
        channels[i] = static_cast<std::uint8_t>(sum >> 8);
    }
}

// The position within 0 to size - 1 that `position` shows when the image is mirrored at its edges without end.
int mirroredPosition(int position, int size) {
    const int period = 2 * size;
    const int phase = ((position % period) + period) % period;
    return phase < size ? phase : period - 1 - phase;
}

int roundedUp(int value, int multiple) {
    return (value + multiple - 1) / multiple * multiple;
}

/// A picture continued by its mirror image beyond its edges, which is nowhere kept.
class Mirror {
public:
    Mirror(const PixelImage& image, int margin, int multiple)
        : image_(image),
          margin_(margin),
          width_(roundedUp(image.width + 2 * margin, multiple)),
          height_(roundedUp(image.height + 2 * margin, multiple)),
          left_(static_cast<std::size_t>(margin)),
          right_(static_cast<std::size_t>(width_ - margin - image.width)) {
        std::ranges::generate(left_, [&, x = -margin]() mutable { return mirroredPosition(x++, image.width); });
        std::ranges::generate(right_, [&, x = image.width]() mutable { return mirroredPosition(x++, image.width); });
    }

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }

    void copyRow(int y, std::uint32_t* target) const {
        const std::uint32_t* source = image_.row(mirroredPosition(y - margin_, image_.height));
        const auto pixelAt = [source](int x) { return source[x]; };
        target = std::ranges::transform(left_, target, pixelAt).out;
        target = std::copy_n(source, image_.width, target);
        std::ranges::transform(right_, target, pixelAt);
    }

private:
    const PixelImage& image_;
    int margin_;
    int width_;
    int height_;
    /// Where the pixels of the margins are found.
    std::vector<int> left_;
    std::vector<int> right_;
};

void halveRows(const std::uint32_t* upper, const std::uint32_t* lower, int width, std::uint32_t* target) {
    const int pairs = width / 2;
    for (int x = 0; x < pairs; ++x) {
        target[x] = meanOfFour(upper[2 * x], upper[2 * x + 1], lower[2 * x], lower[2 * x + 1], x);
    }
    if (width % 2 != 0) {
        const std::uint32_t above = upper[width - 1];
        const std::uint32_t below = lower[width - 1];
        target[pairs] = meanOfFour(above, above, below, below, pairs);
    }
}

}  // namespace

PixelImage mirrored(const PixelImage& image, int margin, int multiple) {
    const Mirror mirror(image, margin, multiple);
    PixelImage large(mirror.width(), mirror.height());
    for (int y = 0; y < large.height; ++y) {
        mirror.copyRow(y, large.row(y));
    }
    return large;
}

PixelImage halved(const PixelImage& image) {
    PixelImage half((image.width + 1) / 2, (image.height + 1) / 2);
    for (int y = 0; y < half.height; ++y) {
        halveRows(image.row(2 * y), image.row(std::min(2 * y + 1, image.height - 1)), image.width, half.row(y));
    }
    return half;
}

PixelImage mirroredAndHalved(const PixelImage& image, int margin, int multiple) {
    const Mirror mirror(image, margin, multiple);
    PixelImage half(mirror.width() / 2, mirror.height() / 2);
    // Two rows at a time stay in the nearest cache; the whole larger picture would not.
    std::vector<std::uint32_t> upper(static_cast<std::size_t>(mirror.width()));
    std::vector<std::uint32_t> lower(upper.size());
    for (int y = 0; y < half.height; ++y) {
        mirror.copyRow(2 * y, upper.data());
        mirror.copyRow(2 * y + 1, lower.data());
        halveRows(upper.data(), lower.data(), mirror.width(), half.row(y));
    }
    return half;
}

PixelImage enlarged(const PixelImage& image, int factor, int x, int y, int width, int height) {
    std::vector<Sample> columns;
    columns.reserve(static_cast<std::size_t>(width));
    for (int column = 0; column < width; ++column) {
        columns.push_back(sampleAt(x + column, factor, image.width));
    }
    const std::size_t rowChannels = static_cast<std::size_t>(width) * 4;
    std::vector<Channel> upper(rowChannels);
    std::vector<Channel> lower(rowChannels);
    int upperRow = -1;
    int lowerRow = -1;

    PixelImage large(width, height);
    for (int row = 0; row < height; ++row) {
        const Sample lines = sampleAt(y + row, factor, image.height);
        if (lines.first != upperRow) {
            if (lines.first == lowerRow) {
                std::swap(upper, lower);
                lowerRow = -1;
            } else {
                enlargeRow(image.row(lines.first), columns, upper.data());
            }
            upperRow = lines.first;
        }
        if (lines.second != lowerRow) {
            enlargeRow(image.row(lines.second), columns, lower.data());
            lowerRow = lines.second;
        }
        mixRows(upper.data(), lower.data(), lines.weightOfSecond, large.row(row), static_cast<std::size_t>(width));
    }
    return large;
}

}  // namespace pallwick::backdrop
