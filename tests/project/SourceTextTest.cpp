#include "SourceText.h"

#include <gmock/gmock.h>

namespace pallwick::test {
namespace {

struct Blanking {
    const char* name;
    const char* source;
    std::vector<std::string> lines;
};

class CodeLines : public testing::TestWithParam<Blanking> {};

TEST_P(CodeLines, HoldCodeAlone) {
    EXPECT_EQ(codeLines(GetParam().source), GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(Sources, CodeLines,
                         testing::Values(Blanking{"LineComment", "a; // b\nc;", {"a;     ", "c;"}},
                                         Blanking{"BlockComment", "a /* b\nc */ d", {"a     ", "     d"}},
                                         Blanking{"String", R"(f("a // b", 1);)", {"f(        , 1);"}},
                                         Blanking{"EscapedQuote", R"(f("a\"b");)", {"f(      );"}},
                                         Blanking{"Character", R"(f('"', '\'', 2);)", {"f(   ,     , 2);"}},
                                         Blanking{"DigitSeparator", "int i = 1'000; // x", {"int i = 1'000;     "}},
                                         Blanking{"RawString", "f(R\"(#if\n\")\", 3);", {"f(      ", "   , 3);"}},
                                         Blanking{
                                             "RawStringWithDelimiter", "f(R\"x()\")x\", 3);", {"f(         , 3);"}},
                                         Blanking{"Include", "#include \"a.moc\"", {"#include \"a.moc\""}}),
                         [](const auto& instance) { return instance.param.name; });

TEST(IncludedFile, IsReadFromEitherForm) {
    EXPECT_EQ(includedFile("#include <a/b.h>"), "a/b.h");
    EXPECT_EQ(includedFile("  #  include \"c.h\""), "c.h");
    EXPECT_EQ(includedFile("#pragma once"), std::nullopt);
    EXPECT_EQ(includedFile("// #include <a.h>"), std::nullopt);
}

}  // namespace
}  // namespace pallwick::test
