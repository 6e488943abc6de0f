// What a Gaussian of 20 pixels costs beside copying the same picture, which is the least that anything with its pixels
// can cost: ours on the client alone, ours where the X server scales, and the peers'. All in one thread.

#include <PallwickMac/Backdrop/Frost.h>
#include <PallwickMac/Backdrop/GaussianBlur.h>
#include <PallwickMac/Backdrop/Rescaling.h>

#include <opencv2/imgproc.hpp>

#include <QApplication>
#include <QGraphicsBlurEffect>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QImage>
#include <QPainter>

#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace pallwick {

namespace {

using backdrop::PixelImage;

constexpr int turns = 25;
constexpr double sigma = 20;
// Of all radii, the one whose blur spreads an edge as far as a Gaussian of 20 pixels does.
constexpr double qtRadiusOfSigma = 65;

/// Something like a page of text: neither a flat colour nor noise of single pixels.
PixelImage page(int width, int height) {
    PixelImage image(width, height);
    std::mt19937 random(1);
    constexpr int letter = 6;
    for (int y = 0; y < height; y += 2 * letter) {
        for (int x = 0; x < width; x += letter) {
            const std::uint32_t colour = 0xFF000000U | (random() & 0xFFFFFFU);
            for (int row = y; row < std::min(y + letter, height); ++row) {
                std::fill_n(image.row(row) + x, std::min(letter, width - x), colour);
            }
        }
    }
    return image;
}

/// The picture as the X server hands it over where it scales: with the margin, and as small as it is blurred.
PixelImage scaledByServer(const PixelImage& image) {
    const int factor = backdrop::downscaling(sigma);
    PixelImage small = backdrop::mirrored(image, backdrop::blurMargin(sigma), factor);
    for (int scale = 1; scale < factor; scale *= 2) {
        small = backdrop::halved(small);
    }
    return small;
}

class QtBlur {
public:
    explicit QtBlur(const PixelImage& image) : target_(image.width, image.height, QImage::Format_ARGB32_Premultiplied) {
        const QImage picture(reinterpret_cast<const uchar*>(image.pixels.data()), image.width, image.height,
                             QImage::Format_ARGB32_Premultiplied);
        auto* item = scene_.addPixmap(QPixmap::fromImage(picture));
        auto* effect = new QGraphicsBlurEffect;
        effect->setBlurRadius(qtRadiusOfSigma);
        item->setGraphicsEffect(effect);
    }

    void draw() {
        QPainter painter(&target_);
        scene_.render(&painter, target_.rect(), target_.rect());
    }

private:
    QGraphicsScene scene_;
    QImage target_;
};

struct Candidate {
    std::string name;
    std::function<void()> blur;
    std::string aim;
    double milliseconds = std::numeric_limits<double>::max();
};

/// What this thread has had of a processor, in milliseconds: what else the machine does counts as little as can be.
double processorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

void measure(Candidate& candidate) {
    const double start = processorTime();
    candidate.blur();
    candidate.milliseconds = std::min(candidate.milliseconds, processorTime() - start);
}

void printTable(int width, int height) {
    const PixelImage image = page(width, height);
    const PixelImage small = scaledByServer(image);
    const backdrop::Material material = backdrop::materialFor(false);
    const std::size_t bytes = image.pixels.size() * sizeof(std::uint32_t);
    PixelImage copy = image;
    PixelImage arrived = small;
    QtBlur qt(image);
    std::uint32_t sink = 0;

    std::vector<Candidate> candidates;
    candidates.push_back({.name = "memcpy",
                          .blur =
                              [&] {
                                  std::memcpy(copy.pixels.data(), image.pixels.data(), bytes);
                                  sink += copy.pixels.back();
                              },
                          .aim = ""});
    candidates.push_back({.name = "Pallwick, all of it on the client",
                          .blur = [&] { sink += backdrop::frosted(image, sigma, material).pixels.back(); },
                          .aim = "at most 5x"});
    candidates.push_back(
        {.name = "Pallwick, its part where the server scales",
         .blur =
             [&] {
                 std::memcpy(arrived.pixels.data(), small.pixels.data(), small.pixels.size() * sizeof(std::uint32_t));
                 PixelImage blurred = backdrop::gaussianBlurred(
                     arrived, backdrop::sigmaAtScale(sigma, backdrop::downscaling(sigma)), backdrop::Rounding::up);
                 backdrop::apply(material, blurred);
                 sink += blurred.pixels.back();
             },
         .aim = "under 1x"});
    const cv::Mat whole(height, width, CV_8UC4, copy.pixels.data());
    cv::Mat result;
    candidates.push_back({.name = "OpenCV's GaussianBlur",
                          .blur =
                              [&] {
                                  cv::GaussianBlur(whole, result, cv::Size(), sigma);
                                  sink += result.data[0];
                              },
                          .aim = ""});
    candidates.push_back({.name = "Qt's QGraphicsBlurEffect", .blur = [&] { qt.draw(); }, .aim = ""});

    for (Candidate& candidate : candidates) {
        candidate.blur();
    }
    for (int turn = 0; turn < turns; ++turn) {
        for (Candidate& candidate : candidates) {
            measure(candidate);
        }
    }
    std::printf("| %dx%d | least of %d turns | in copies | aim |\n|---|---|---|---|\n", width, height, turns);
    for (const Candidate& candidate : candidates) {
        std::printf("| %s | %.3f ms | %.2fx | %s |\n", candidate.name.c_str(), candidate.milliseconds,
                    candidate.milliseconds / candidates.front().milliseconds, candidate.aim.c_str());
    }
    if (sink == 0) {
        throw std::runtime_error("nothing was measured");
    }
}

}  // namespace

}  // namespace pallwick

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    cv::setNumThreads(1);
    try {
        pallwick::printTable(720, 400);
        std::printf("\n");
        pallwick::printTable(1920, 1080);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
