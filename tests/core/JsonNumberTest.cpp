#include "DecodingFailure.h"

#include <gtest/gtest.h>

#include <optional>

namespace pallwick {
namespace {

/// A JSON number and what each integer field makes of it; none where it does not fit.
struct Fit {
    const char* json;
    std::optional<std::uint32_t> unsigned32;
    std::optional<std::int32_t> signed32;
    std::optional<std::int64_t> signed64;
};

template <typename Integer>
std::optional<Integer> fitted(std::string_view json) {
    try {
        return decode<Integer>(json, "test");
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.kind(), DecodingError::Kind::dataCorrupted);
        return std::nullopt;
    }
}

class JsonInteger : public testing::TestWithParam<Fit> {};

TEST_P(JsonInteger, FitsItsFieldOrIsRefused) {
    EXPECT_EQ(fitted<std::uint32_t>(GetParam().json), GetParam().unsigned32);
    EXPECT_EQ(fitted<std::int32_t>(GetParam().json), GetParam().signed32);
    EXPECT_EQ(fitted<std::int64_t>(GetParam().json), GetParam().signed64);
}

constexpr auto none = std::nullopt;

INSTANTIATE_TEST_SUITE_P(
    Whole, JsonInteger,
    testing::Values(Fit{"0", 0U, 0, 0}, Fit{"50", 50U, 50, 50}, Fit{"-1", none, -1, -1}, Fit{"-0", 0U, 0, 0},
                    Fit{"2147483647", 2147483647U, INT32_MAX, INT32_MAX},
                    Fit{"2147483648", 2147483648U, none, 2147483648}, Fit{"-2147483648", none, INT32_MIN, INT32_MIN},
                    Fit{"-2147483649", none, none, -2147483649}, Fit{"4294967295", UINT32_MAX, none, UINT32_MAX},
                    Fit{"4294967296", none, none, 4294967296}, Fit{"9007199254740993", none, none, 9007199254740993},
                    Fit{"9223372036854775807", none, none, INT64_MAX}, Fit{"9223372036854775808", none, none, none},
                    Fit{"-9223372036854775808", none, none, INT64_MIN}, Fit{"-9223372036854775809", none, none, none},
                    Fit{"18446744073709551615", none, none, none}, Fit{"18446744073709551616", none, none, none},
                    Fit{"100000000000000000000000", none, none, none}));

INSTANTIATE_TEST_SUITE_P(
    WithPointOrExponent, JsonInteger,
    testing::Values(Fit{"50.0", 50U, 50, 50}, Fit{"5e1", 50U, 50, 50}, Fit{"1e3", 1000U, 1000, 1000},
                    Fit{"-1.0", none, -1, -1}, Fit{"-0.0", 0U, 0, 0}, Fit{"4294967295.0", UINT32_MAX, none, UINT32_MAX},
                    Fit{"4294967296.0", none, none, 4294967296}, Fit{"1e18", none, none, 1000000000000000000},
                    Fit{"9.223372036854775808e18", none, none, none}, Fit{"9223372036854775808.0", none, none, none},
                    Fit{"-9223372036854775808.0", none, none, none},
                    Fit{"-9223372036854774784.0", none, none, -9223372036854774784}, Fit{"1e300", none, none, none},
                    Fit{"-1e300", none, none, none}));

INSTANTIATE_TEST_SUITE_P(Fractions, JsonInteger,
                         testing::Values(Fit{"50.5", none, none, none}, Fit{"-0.5", none, none, none},
                                         Fit{"1e-1", none, none, none}, Fit{"5e-324", none, none, none},
                                         Fit{"4294967295.5", none, none, none}));

struct Mismatch {
    const char* json;
    DecodingError::Kind kind;
};

class JsonNonNumber : public testing::TestWithParam<Mismatch> {};

TEST_P(JsonNonNumber, IsNoNumber) {
    const test::DecodingFailure expected{GetParam().kind, ""};

    EXPECT_EQ(test::decodingFailure<double>(GetParam().json), expected);
    EXPECT_EQ(test::decodingFailure<std::int64_t>(GetParam().json), expected);
    EXPECT_EQ(test::decodingFailure<std::uint32_t>(GetParam().json), expected);
}

INSTANTIATE_TEST_SUITE_P(Values, JsonNonNumber,
                         testing::Values(Mismatch{"true", DecodingError::Kind::typeMismatch},
                                         Mismatch{R"("1")", DecodingError::Kind::typeMismatch},
                                         Mismatch{"[1]", DecodingError::Kind::typeMismatch},
                                         Mismatch{"{}", DecodingError::Kind::typeMismatch},
                                         Mismatch{"null", DecodingError::Kind::valueNotFound}));

TEST(JsonNumber, IsReadAsADoubleFromAnInteger) {
    EXPECT_EQ(decode<double>("160", "test"), 160);
    EXPECT_EQ(decode<double>("9007199254740993", "test"), 9007199254740992);
    EXPECT_EQ(decode<double>("18446744073709551615", "test"), 0x1p64);
}

TEST(JsonNumber, IsNoBoolean) {
    EXPECT_EQ(test::decodingFailure<bool>("1"), (test::DecodingFailure{DecodingError::Kind::typeMismatch, ""}));
}

}  // namespace
}  // namespace pallwick
