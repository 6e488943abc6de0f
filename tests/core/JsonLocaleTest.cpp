#include "SampleRecords.h"

#include <PallwickMacCore/Models/RecordCoding.h>
#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <sstream>

namespace pallwick {
namespace {

constexpr double amount = -1234567.25;
constexpr const char* amountText = "-1234567.25";

/// A number's text as the C library writes it under the current locale.
std::string printed(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

struct NumericLocale {
    const char* name;
    /// One half, as that locale writes it.
    const char* half;
};

/// Runs under a locale of the C library, which the build makes from the library's own sources where it can.
class JsonUnderLocale : public testing::TestWithParam<NumericLocale> {
protected:
    void SetUp() override {
        ::setenv("LOCPATH", PALLWICK_TEST_LOCALES, 1);
        if (std::setlocale(LC_ALL, GetParam().name) == nullptr) {
            GTEST_SKIP() << "no locale " << GetParam().name << " on this machine";
        }
        ASSERT_EQ(printed(0.5), GetParam().half);
    }

    void TearDown() override {
        std::setlocale(LC_ALL, "C");
        ::unsetenv("LOCPATH");
    }
};

TEST_P(JsonUnderLocale, ReadsAndWritesNumbersWithAPoint) {
    EXPECT_EQ(encode(amount), amountText);
    EXPECT_EQ(decode<double>(amountText, "test"), amount);
    EXPECT_EQ(decode<double>("1.5e-3", "test"), 0.0015);
}

TEST_P(JsonUnderLocale, RefusesItsOwnDecimalSeparator) {
    EXPECT_THROW(static_cast<void>(decode<double>(printed(0.5), "test")), DecodingError);
}

TEST_P(JsonUnderLocale, ReadsAndWritesARecord) {
    EXPECT_EQ(encode(test::attachedOverlay()), test::attachedOverlayText);
    EXPECT_EQ(decode<BlurOverlay>(test::attachedOverlayText, "test"), test::attachedOverlay());
}

TEST_P(JsonUnderLocale, LeavesTheLocaleAsItWas) {
    EXPECT_EQ(decode<double>(amountText, "test"), amount);
    EXPECT_THROW(static_cast<void>(decode<double>("1.5]", "test")), DecodingError);

    EXPECT_EQ(printed(0.5), GetParam().half);
}

INSTANTIATE_TEST_SUITE_P(Separators, JsonUnderLocale,
                         testing::Values(NumericLocale{"de_DE.UTF-8", "0,5"},
                                         // U+066B: more than one byte.
                                         NumericLocale{"ps_AF.UTF-8",
                                                       "0\xD9\xAB"
                                                       "5"}),
                         [](const auto& instance) { return std::string(instance.param.name, 2); });

class CommaPunctuation : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// Runs under a global C++ locale that needs nothing from the machine.
class JsonUnderStreamLocale : public testing::Test {
protected:
    void SetUp() override {
        std::ostringstream stream;
        stream << 1234.5;
        ASSERT_EQ(stream.str(), "1.234,5");
    }

    void TearDown() override { std::locale::global(previous_); }

private:
    std::locale previous_ = std::locale::global(std::locale(std::locale::classic(), new CommaPunctuation));
};

TEST_F(JsonUnderStreamLocale, ReadsAndWritesNumbersWithAPointAndWithoutGroups) {
    EXPECT_EQ(encode(amount), amountText);
    EXPECT_EQ(encode(std::int64_t{1234567}), "1234567");
    EXPECT_EQ(decode<double>(amountText, "test"), amount);
    EXPECT_EQ(encode(test::attachedOverlay()), test::attachedOverlayText);
}

}  // namespace
}  // namespace pallwick
