#include <PallwickMacCore/Models/RecordCoding.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <random>

namespace pallwick {
namespace {

/// Records of every kind and value that JSON can hold, the same ones for the same seed.
class RandomRecords {
public:
    explicit RandomRecords(std::uint64_t seed) : bits_(seed) {}

    std::vector<BlurOverlay> overlays() {
        std::vector<BlurOverlay> overlays;
        const std::uint64_t count = bits_() % 4;
        for (std::uint64_t i = 0; i < count; ++i) {
            overlays.push_back(overlay());
        }
        return overlays;
    }

private:
    BlurOverlay overlay() {
        BlurOverlay overlay({.id = uuid(),
                             .displayID = static_cast<std::uint32_t>(bits_()),
                             .style = style(),
                             .shape = bits_() % 2 == 0 ? OverlayShape::rectangle : OverlayShape::circle,
                             .anchor = std::array{OverlayAnchor::screen, OverlayAnchor::application,
                                                  OverlayAnchor::window}[bits_() % 3],
                             .createdAt = Date{number()},
                             .updatedAt = Date{number()}});
        overlay.frame = {.x = number(), .y = number(), .width = number(), .height = number()};
        if (bits_() % 2 == 0) {
            overlay.windowAttachment = attachment();
        }
        return overlay;
    }

    UUID uuid() {
        std::array<std::uint8_t, 16> bytes{};
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(bits_());
        }
        return UUID(bytes);
    }

    BlurStyle style() {
        BlurStyle style;
        style.intensity = integer();
        style.colorHex = text();
        style.opacity = integer();
        style.glassBlur = bits_() % 2 == 0;
        return style;
    }

    WindowAttachment attachment() {
        WindowAttachment attachment;
        attachment.windowID = static_cast<std::uint32_t>(bits_());
        attachment.ownerPID = static_cast<std::int32_t>(bits_());
        attachment.ownerName = text();
        attachment.title = text();
        attachment.offset = {.x = number(), .y = number()};
        return attachment;
    }

    std::int64_t integer() {
        const auto value = std::bit_cast<std::int64_t>(bits_());
        return bits_() % 2 == 0 ? value : value % 100;
    }

    /// Any finite bit pattern, or one of those a screen has, or a zero of either sign.
    double number() {
        switch (bits_() % 4) {
            case 0:
                return static_cast<double>(integer() % 4000);
            case 1:
                return static_cast<double>(integer() % 400000) / 100.0;
            case 2:
                return bits_() % 2 == 0 ? 0.0 : -0.0;
            default:
                break;
        }
        const auto value = std::bit_cast<double>(bits_());
        return std::isfinite(value) ? value : 0.5;
    }

    std::string text() {
        static const std::array<std::string, 12> pieces{
            "a",  "Z",    "/",    "\\",       "\"",           std::string("\0", 1),
            "\n", "\x1F", "\x7F", "\xC3\xA9", "\xE2\x80\xA8", "\xF0\x9F\x98\x80"};
        std::string text;
        const std::uint64_t count = bits_() % 12;
        for (std::uint64_t i = 0; i < count; ++i) {
            text += pieces[bits_() % pieces.size()];
        }
        return text;
    }

    std::mt19937_64 bits_;
};

/// Every double of the records as bits, because comparing them would take -0.0 for 0.0.
std::vector<std::uint64_t> bitPatterns(const std::vector<BlurOverlay>& overlays) {
    std::vector<std::uint64_t> patterns;
    for (const BlurOverlay& overlay : overlays) {
        const Point offset = overlay.windowAttachment ? overlay.windowAttachment->offset : Point();
        for (const double value :
             {overlay.frame.x, overlay.frame.y, overlay.frame.width, overlay.frame.height, offset.x, offset.y,
              overlay.createdAt().secondsSinceReferenceDate, overlay.updatedAt.secondsSinceReferenceDate}) {
            patterns.push_back(std::bit_cast<std::uint64_t>(value));
        }
    }
    return patterns;
}

struct NamedFormat {
    const char* name;
    JsonFormat format;
};

class RecordRoundTrip : public testing::TestWithParam<NamedFormat> {};

TEST_P(RecordRoundTrip, BringsTenThousandListsBackBitForBit) {
    RandomRecords records(20010101);

    for (int i = 0; i < 10'000; ++i) {
        const std::vector<BlurOverlay> overlays = records.overlays();

        const auto back = decode<std::vector<BlurOverlay>>(encode(overlays, GetParam().format), "test");

        ASSERT_EQ(back, overlays) << "list " << i;
        ASSERT_EQ(bitPatterns(back), bitPatterns(overlays)) << "list " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, RecordRoundTrip,
                         testing::Values(NamedFormat{"Compact", {}},
                                         NamedFormat{"PrettyAndSorted", {.prettyPrinted = true, .sortedKeys = true}}),
                         [](const auto& instance) { return instance.param.name; });

}  // namespace
}  // namespace pallwick
