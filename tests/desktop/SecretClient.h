#pragma once

#include <support/TestClient.h>

#include <string>
#include <vector>

namespace pallwick::desktop {

/// Two strong greens. Nothing that the program draws is greener than it is red and blue, so that even a trace of
/// them, however thin the layer over it, gives what is beneath away.
inline constexpr support::Colour secretGround{.red = 0, .green = 255, .blue = 0};
inline constexpr support::Colour secretMark{.red = 0, .green = 150, .blue = 0};

/// Whether a pixel shows any of what must be hidden.
[[nodiscard]] bool isSecret(support::Colour colour);

/// What a secret window is made with: green stripes on green.
[[nodiscard]] support::TestClient::Options secretOptions(const std::string& title, const support::PixelRect& rect);

enum class Shape { rectangle, circle };

/// Where an overlay of that frame must hide everything: its shape less a rim of two points.
[[nodiscard]] support::PixelArea inside(const support::PixelRect& overlay, Shape shape = Shape::rectangle,
                                        double scale = 1);

/// The first pixel that lies in every one of `areas` and shows the secret, in words; empty when there is none.
[[nodiscard]] std::string leak(const support::Screenshot& screen, const std::vector<support::PixelArea>& areas);

}  // namespace pallwick::desktop
