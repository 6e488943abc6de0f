#include "DecodingFailure.h"

#include <PallwickMacCore/Models/PresetScopeCoding.h>
#include <gtest/gtest.h>

#include <set>
#include <unordered_set>

namespace pallwick {
namespace {

using Kind = DecodingError::Kind;

TEST(PresetScope, NamesADisplayByItsNumberInDecimal) {
    EXPECT_EQ(PresetScope::screen(1).storageKey(), "screen:1");
    EXPECT_EQ(PresetScope::screen(0).storageKey(), "screen:0");
    EXPECT_EQ(PresetScope::screen(4294967295).storageKey(), "screen:4294967295");
}

TEST(PresetScope, NamesAnApplicationByItsIdentifierUnchanged) {
    EXPECT_EQ(PresetScope::application("org.example.Mail").storageKey(), "application:org.example.Mail");
    EXPECT_EQ(PresetScope::application(" Org ").storageKey(), "application: Org ");
    EXPECT_EQ(PresetScope::application("").storageKey(), "application:");
}

TEST(PresetScope, IsEqualToOneOfTheSameCaseAndPayload) {
    EXPECT_EQ(PresetScope::screen(1), PresetScope::screen(1));
    EXPECT_NE(PresetScope::screen(1), PresetScope::screen(2));
    EXPECT_EQ(PresetScope::application("a"), PresetScope::application("a"));
    EXPECT_NE(PresetScope::application("a"), PresetScope::application("A"));
    EXPECT_NE(PresetScope::application("caf\xC3\xA9"), PresetScope::application("cafe\xCC\x81"));
    EXPECT_NE(PresetScope::screen(1), PresetScope::application("1"));
}

TEST(PresetScope, HashesAsItCompares) {
    const std::unordered_set<PresetScope> scopes{PresetScope::screen(1), PresetScope::screen(1), PresetScope::screen(2),
                                                 PresetScope::application("a"), PresetScope::application("a")};

    EXPECT_EQ(scopes.size(), 3U);
    EXPECT_TRUE(scopes.contains(PresetScope::application("a")));
}

TEST(PresetScope, HashesItsCaseBesideItsPayload) {
    // The number that hashes as the text does, for the hash of a number is the number.
    const auto number = static_cast<std::uint32_t>(std::hash<std::string>()("a"));
    const std::size_t payload = std::hash<std::uint32_t>()(number);
    const std::hash<PresetScope> hash;

    EXPECT_NE(hash(PresetScope::screen(number)), payload);
    EXPECT_NE(hash(PresetScope::application("a")), std::hash<std::string>()("a"));
    EXPECT_NE(hash(PresetScope::screen(number)) ^ payload,
              hash(PresetScope::application("a")) ^ std::hash<std::string>()("a"));
}

TEST(PresetScopeCoding, WritesOneMemberNamedAfterTheCase) {
    EXPECT_EQ(encode(PresetScope::screen(1)), R"({"screen":{"displayID":1}})");
    EXPECT_EQ(encode(PresetScope::application("org.example/Mail")),
              R"({"application":{"bundleID":"org.example\/Mail"}})");
}

TEST(PresetScopeCoding, ReadsWhatItWrites) {
    for (const PresetScope& scope : {PresetScope::screen(0), PresetScope::screen(4294967295),
                                     PresetScope::application(""), PresetScope::application("a \"b\"\n")}) {
        EXPECT_EQ(decode<PresetScope>(encode(scope), "test"), scope);
    }
}

TEST(PresetScopeCoding, IgnoresFurtherMembersOfThePayload) {
    EXPECT_EQ(decode<PresetScope>(R"({"screen":{"name":"left","displayID":7}})", "test"), PresetScope::screen(7));
}

struct Refusal {
    const char* name;
    const char* text;
    Kind kind;
    const char* path;
};

class PresetScopeRefusal : public testing::TestWithParam<Refusal> {};

TEST_P(PresetScopeRefusal, NamesTheKindAndThePlace) {
    EXPECT_EQ(test::decodingFailure<PresetScope>(GetParam().text),
              (test::DecodingFailure{GetParam().kind, GetParam().path}));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, PresetScopeRefusal,
    testing::Values(
        Refusal{"NoObject", R"("screen")", Kind::typeMismatch, ""}, Refusal{"Null", "null", Kind::valueNotFound, ""},
        Refusal{"NullPayload", R"({"screen":null})", Kind::valueNotFound, "screen"},
        Refusal{"PayloadWithoutItsName", R"({"screen":1})", Kind::typeMismatch, "screen"},
        Refusal{"EmptyPayload", R"({"screen":{}})", Kind::keyNotFound, "screen.displayID"},
        Refusal{"PayloadOfTheOtherCase", R"({"application":{"displayID":1}})", Kind::keyNotFound,
                "application.bundleID"},
        Refusal{"TextForANumber", R"({"screen":{"displayID":"1"}})", Kind::typeMismatch, "screen.displayID"},
        Refusal{"NegativeNumber", R"({"screen":{"displayID":-1}})", Kind::dataCorrupted, "screen.displayID"},
        Refusal{"NumberTooLarge", R"({"screen":{"displayID":4294967296}})", Kind::dataCorrupted, "screen.displayID"},
        Refusal{"NullIdentifier", R"({"application":{"bundleID":null}})", Kind::valueNotFound, "application.bundleID"}),
    [](const auto& instance) { return instance.param.name; });

class PresetScopeMemberCount : public testing::TestWithParam<const char*> {};

TEST_P(PresetScopeMemberCount, MustBeOne) {
    const DecodingError error = test::decodingError<PresetScope>(GetParam());

    EXPECT_EQ(error.kind(), Kind::typeMismatch);
    EXPECT_TRUE(error.codingPath().empty());
    EXPECT_EQ(error.description(), "Invalid number of keys found, expected one.");
}

INSTANTIATE_TEST_SUITE_P(Texts, PresetScopeMemberCount,
                         testing::Values("{}", R"({"screen":{"displayID":1},"application":{"bundleID":"a"}})",
                                         R"({"screen":{"displayID":1},"screen":{"displayID":1}})",
                                         R"({"screen":{"displayID":1},"window":{}})", R"({"window":{}})",
                                         R"({"Screen":{"displayID":1}})"));

}  // namespace
}  // namespace pallwick
