#include <PallwickMacCore/Models/CodingPath.h>
#include <gtest/gtest.h>

namespace pallwick {
namespace {

CodingKey key(const std::string& text) {
    return text;
}

CodingKey index(std::size_t number) {
    return number;
}

TEST(CodingPath, PrintsKeysWithDotsAndIndexesInBrackets) {
    const CodingPath path{key("screen:1"), index(0), key("frame"), index(1), index(12)};

    EXPECT_EQ(printedForm(path), "screen:1[0].frame[1][12]");
}

TEST(CodingPath, PrintsNothingForTheRoot) {
    EXPECT_EQ(printedForm({}), "");
}

TEST(CodingPath, PrintsALeadingIndex) {
    EXPECT_EQ(printedForm({index(3), key("id")}), "[3].id");
}

TEST(CodingPath, StaysOnOneLineWhateverTheKey) {
    EXPECT_EQ(printedForm({key(std::string("a\nb\0c\x7F", 6))}),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD"
              "c\xEF\xBF\xBD");
}

TEST(CodingPath, PrintsAKeyOfMegabytesInPart) {
    EXPECT_EQ(printedForm({key(std::string(2'000'000, 'k')), index(0)}), std::string(80, 'k') + "\xE2\x80\xA6[0]");
}

TEST(CodingPath, PrintsAKeyThatIsNoUtf8) {
    EXPECT_EQ(printedForm({key("application:caf\xE9")}), "application:caf\xEF\xBF\xBD");
}

}  // namespace
}  // namespace pallwick
