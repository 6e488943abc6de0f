#include "SampleRecords.h"

#include <PallwickMacCore/Models/EncodingError.h>
#include <PallwickMacCore/Models/RecordCoding.h>
#include <gtest/gtest.h>

#include <limits>

namespace pallwick {
namespace {

using Presets = std::map<std::string, std::vector<BlurOverlay>>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

struct Refusal {
    const char* name;
    void (*spoil)(BlurOverlay&);
    const char* what;
};

class EncodingErrorPlace : public testing::TestWithParam<Refusal> {
protected:
    /// The sentence that saving `presets` ends with.
    static std::string refusal(const Presets& presets, const JsonFormat& format) {
        try {
            static_cast<void>(encode(presets, format));
        } catch (const EncodingError& error) {
            return error.what();
        }
        return "nothing was refused";
    }
};

TEST_P(EncodingErrorPlace, IsThatOfTheNumberWhichIsNotFinite) {
    BlurOverlay spoilt = test::attachedOverlay();
    GetParam().spoil(spoilt);
    const Presets presets{{"screen:1", {test::attachedOverlay(), spoilt}}};

    EXPECT_EQ(refusal(presets, {}), GetParam().what);
    EXPECT_EQ(refusal(presets, {.prettyPrinted = true, .sortedKeys = true}), GetParam().what);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, EncodingErrorPlace,
    testing::Values(Refusal{"X", [](BlurOverlay& overlay) { overlay.frame.x = infinity; },
                            "screen:1[1].frame[0][0]: expected a finite number"},
                    Refusal{"Height", [](BlurOverlay& overlay) { overlay.frame.height = notANumber; },
                            "screen:1[1].frame[1][1]: expected a finite number"},
                    Refusal{"Offset", [](BlurOverlay& overlay) { overlay.windowAttachment->offset.y = -infinity; },
                            "screen:1[1].windowAttachment.offset[1]: expected a finite number"},
                    Refusal{"Date", [](BlurOverlay& overlay) { overlay.updatedAt = Date{notANumber}; },
                            "screen:1[1].updatedAt: expected a finite number"}),
    [](const auto& instance) { return instance.param.name; });

TEST(EncodingError, IsACoreErrorThatKeepsItsParts) {
    const EncodingError error({std::string("offset"), std::size_t{1}}, "expected less");

    const CoreError& base = error;

    EXPECT_STREQ(base.what(), "offset[1]: expected less");
    EXPECT_EQ(error.codingPath(), (CodingPath{std::string("offset"), std::size_t{1}}));
    EXPECT_EQ(error.description(), "expected less");
}

TEST(EncodingError, HasNoPathAtTheRoot) {
    EXPECT_STREQ(EncodingError({}, "expected less").what(), "expected less");
}

TEST(EncodingError, RefusesANonFiniteNumberAlone) {
    EXPECT_THROW(static_cast<void>(encode(infinity)), EncodingError);
}

}  // namespace
}  // namespace pallwick
