#pragma once

#include <support/Screenshot.h>
#include <support/TestClient.h>

#include <functional>
#include <string>

#include "SecretClient.h"

namespace pallwick::desktop {

/// What a style in hundredths makes of grey light that comes through an overlay with a black tint.
struct GlassStyle {
    int blur = 50;
    int opacity = 100;
    bool dark = false;

    /// Opacity of the blurred picture over the sharp one.
    [[nodiscard]] double effect() const { return opacity / 100.0 * blur / 100.0; }
    /// How much of the contrast beneath is left sharp.
    [[nodiscard]] double sharpness() const { return (1 - effect()) * (1 - opacity / 100.0); }
    /// A level 0 to 255 on the screen where the picture beneath is `sharp` and its blur `blurred`.
    [[nodiscard]] double level(double sharp, double blurred) const;
};

/// A picture of greys as two functions of a place on the root: as it is, and as a Gaussian leaves it.
struct GreyPicture {
    std::function<double(support::PixelPoint)> sharp;
    std::function<double(support::PixelPoint)> blurred;
};

[[nodiscard]] support::Colour grey(int level);

/// A test client's stripes, of greys, wherever its edges are further away than the blur reaches.
[[nodiscard]] GreyPicture stripes(const support::PixelRect& client, int ground, int mark);
[[nodiscard]] GreyPicture plain(int level);
/// `left` up to x = `edge`, `right` from there on.
[[nodiscard]] GreyPicture halves(int edge, int left, int right, double scale = 1);

/// The first pixel of the area that differs from what the picture looks like through the glass, in words; empty when
/// there is none.
[[nodiscard]] std::string deviation(const support::Screenshot& screen, const support::PixelArea& area,
                                    const GreyPicture& beneath, const GlassStyle& style);

/// The first two pixels of the area, eight apart in a row as stripe and ground are, whose contrast exceeds what the
/// style leaves of that between black and white, in words; empty when there are none.
[[nodiscard]] std::string sharperThan(const support::Screenshot& screen, const support::PixelArea& area,
                                      const GlassStyle& style);

}  // namespace pallwick::desktop
