#pragma once

#include <gmock/gmock.h>
#include <support/Screenshot.h>

#include <algorithm>
#include <vector>

#include "PlatformTest.h"
#include "Printing.h"
#include "RecordingContent.h"

namespace pallwick::x11 {

inline constexpr support::Colour white{.red = 255, .green = 255, .blue = 255};
inline constexpr support::Colour blue{.red = 0, .green = 128, .blue = 255};

/// Surfaces over a white root.
class SurfaceTest : public PlatformTest {
protected:
    void whitenRoot() {
        const std::uint32_t pixel = 0xFFFFFF;
        xcb_change_window_attributes(x().get(), x().root(), XCB_CW_BACK_PIXEL, &pixel);
        xcb_clear_area(x().get(), 0, x().root(), 0, 0, 0, 0);
        x().roundTrip();
    }

    /// How many pixels of a part of the screen show a colour now.
    [[nodiscard]] int pixelsOf(support::Colour colour, const PixelRect& area) {
        return desktop().screenshot().count(support::PixelArea::rectangle({area.x, area.y, area.width, area.height}),
                                            [colour](support::Colour seen) { return seen == colour; });
    }

    /// On the whole screen.
    [[nodiscard]] int pixelsOf(support::Colour colour) {
        const support::PixelRect root = x().rootRect();
        return pixelsOf(colour, {.x = 0, .y = 0, .width = root.width, .height = root.height});
    }

    RecordingContent content_;
};

}  // namespace pallwick::x11
