#include <PallwickMacCore/Models/UUID.h>
#include <gtest/gtest.h>

#include <unordered_set>

namespace pallwick {
namespace {

constexpr std::string_view canonical = "6F9619FF-8B86-D011-B42D-00C04FC964FF";

TEST(UUID, IsWrittenInUpperCase) {
    const auto uuid = UUID::fromString("6f9619ff-8b86-d011-b42d-00c04fc964ff");

    EXPECT_EQ(uuid.value().uuidString(), canonical);
}

TEST(UUID, IsReadInEitherCase) {
    const auto mixed = UUID::fromString("6F9619ff-8b86-D011-B42d-00c04fc964FF");

    EXPECT_EQ(mixed, UUID::fromString(canonical));
    EXPECT_TRUE(mixed.has_value());
}

TEST(UUID, KeepsItsBytesInTheOrderOfTheText) {
    const auto uuid = UUID::fromString("00010203-0405-0607-0809-0A0B0C0D0E0F");

    EXPECT_EQ(uuid.value().bytes(),
              (std::array<std::uint8_t, 16>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
}

class UUIDRefusal : public testing::TestWithParam<std::string_view> {};

TEST_P(UUIDRefusal, GivesNone) {
    const auto uuid = UUID::fromString(GetParam());

    EXPECT_EQ(uuid, std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Texts, UUIDRefusal,
                         testing::Values("", "6F9619FF", "6F9619FF8B86D011B42D00C04FC964FF",
                                         "6F9619FF-8B86-D011-B42D-00C04FC964F", "6F9619FF-8B86-D011-B42D-00C04FC964FFF",
                                         "6F9619FF-8B86-D011-B42D-00C04FC964FG", " 6F9619FF-8B86-D011-B42D-00C04FC964F",
                                         "6F9619FF 8B86 D011 B42D 00C04FC964FF", "6F9619F-F8B86-D011-B42D-00C04FC964FF",
                                         "{6F9619FF-8B86-D011-B42D-00C04FC964}"));

TEST(UUID, IsRandomOfVersionFour) {
    const UUID uuid = UUID::random();

    EXPECT_EQ(uuid.bytes()[6] >> 4, 4);
    EXPECT_EQ(uuid.bytes()[8] >> 6, 2);
}

TEST(UUID, IsADifferentRandomOneEveryTime) {
    std::unordered_set<UUID> made;

    for (int i = 0; i < 1000; ++i) {
        made.insert(UUID::random());
    }

    EXPECT_EQ(made.size(), 1000U);
}

TEST(UUID, OrdersAsItsTextDoes) {
    const UUID nine = UUID::fromString("90000000-0000-0000-0000-000000000000").value();
    const UUID letter = UUID::fromString("a0000000-0000-0000-0000-000000000000").value();

    EXPECT_LT(nine, letter);
    EXPECT_LT(nine.uuidString(), letter.uuidString());
}

}  // namespace
}  // namespace pallwick
