#include <PallwickMacCore/Models/StatusText.h>
#include <gtest/gtest.h>

#include <string>

namespace pallwick {
namespace {

struct Shown {
    const char* name;
    std::string text;
    std::string shown;
};

class StatusText : public testing::TestWithParam<Shown> {};

TEST_P(StatusText, StaysWithinOneLine) {
    EXPECT_EQ(shownText(GetParam().text), GetParam().shown);
}

const std::string replaced = "\xEF\xBF\xBD";

INSTANTIATE_TEST_SUITE_P(
    Texts, StatusText,
    testing::Values(Shown{"Empty", "", ""},
                    Shown{"Ordinary", "Caf\xC3\xA9 \xF0\x9F\x98\x80.json", "Caf\xC3\xA9 \xF0\x9F\x98\x80.json"},
                    Shown{"LineBreak", "a\r\nb", "a" + replaced + replaced + "b"},
                    Shown{"Nul", std::string("a\0b", 3), "a" + replaced + "b"}, Shown{"Delete", "\x7F", replaced},
                    Shown{"NextLine", "\xC2\x85", replaced}, Shown{"NoBreakSpace", "\xC2\xA0", "\xC2\xA0"},
                    Shown{"LineSeparator", "\xE2\x80\xA8", replaced},
                    Shown{"DirectionOverride",
                          "a\xE2\x80\xAE"
                          "b",
                          "a" + replaced + "b"},
                    Shown{"Isolate", "\xE2\x81\xA6", replaced}, Shown{"Latin1", "caf\xE9!", "caf" + replaced + "!"},
                    Shown{"CutSequence", "\xE2\x82", replaced + replaced},
                    Shown{"AsLongAsIsShown", std::string(80, 'a'), std::string(80, 'a')},
                    Shown{"OneLonger", std::string(81, 'a'), std::string(80, 'a') + "\xE2\x80\xA6"},
                    Shown{"Megabytes", std::string(5'000'000, '\n'),
                          [] {
                              std::string text;
                              for (int i = 0; i < 80; ++i) {
                                  text += replaced;
                              }
                              return text + "\xE2\x80\xA6";
                          }()}),
    [](const auto& instance) { return instance.param.name; });

}  // namespace
}  // namespace pallwick
