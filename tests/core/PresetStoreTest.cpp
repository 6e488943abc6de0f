#include "ChildProcess.h"
#include "DecodingFailure.h"
#include "JsonEditing.h"
#include "PresetDirectory.h"
#include "SampleRecords.h"

#include <PallwickMacCore/Models/EncodingError.h>
#include <PallwickMacCore/Models/RecordCoding.h>
#include <PallwickMacCore/Stores/FileError.h>
#include <PallwickMacCore/Stores/PresetStore.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <limits>

namespace pallwick {
namespace {

using test::overlayOf;
using testing::ElementsAre;
using testing::IsEmpty;

const PresetScope screen = PresetScope::screen(1);
const PresetScope application = PresetScope::application("org.example.Mail");

class PresetStoreTest : public testing::Test {
protected:
    test::PresetDirectory directory_;
    PresetStore store_{directory_.path()};
};

TEST_F(PresetStoreTest, LoadsNothingWithoutAFileAndMakesNone) {
    EXPECT_THAT(store_.load(screen), IsEmpty());

    EXPECT_THAT(directory_.names(), IsEmpty());
}

TEST_F(PresetStoreTest, LoadsWhatWasSavedInItsOrder) {
    const std::vector<BlurOverlay> overlays{overlayOf('C'), overlayOf('A'), test::attachedOverlay()};

    store_.save(overlays, screen);

    EXPECT_EQ(store_.load(screen), overlays);
    EXPECT_EQ(PresetStore(directory_.path()).load(screen), overlays);
}

TEST_F(PresetStoreTest, KeepsDisplaysAndApplicationsInOneFile) {
    store_.save({overlayOf('A'), overlayOf('B')}, screen);
    store_.save({overlayOf('C')}, application);

    EXPECT_THAT(directory_.names(), ElementsAre("presets.json"));
    EXPECT_THAT(store_.load(screen), ElementsAre(overlayOf('A'), overlayOf('B')));
    EXPECT_THAT(store_.load(application), ElementsAre(overlayOf('C')));
    EXPECT_THAT(store_.load(PresetScope::screen(2)), IsEmpty());
}

TEST_F(PresetStoreTest, WritesTheAgreedForm) {
    store_.save({test::attachedOverlay()}, application);
    store_.save({}, screen);

    EXPECT_EQ(directory_.text(), R"({
  "application:org.example.Mail": [
    {
      "anchor": "window",
      "createdAt": 1.5,
      "displayID": 1,
      "frame": [
        [
          160,
          160
        ],
        [
          320,
          180
        ]
      ],
      "id": "AAAAAAAA-AAAA-AAAA-AAAA-AAAAAAAAAAAA",
      "shape": "circle",
      "style": {
        "colorHex": "#000000",
        "glassBlur": true,
        "intensity": 50,
        "opacity": 100
      },
      "updatedAt": 2.25,
      "windowAttachment": {
        "offset": [
          12,
          40
        ],
        "ownerName": "Mail",
        "ownerPID": 512,
        "title": "Inbox",
        "windowID": 77
      }
    }
  ],
  "screen:1": []
})");
}

TEST_F(PresetStoreTest, StoresAnEmptyListUnderItsKey) {
    store_.save({overlayOf('A')}, screen);

    store_.save({}, screen);

    EXPECT_THAT(store_.load(screen), IsEmpty());
    EXPECT_EQ(directory_.text(), "{\n  \"screen:1\": []\n}");
}

TEST_F(PresetStoreTest, KeepsOnlyTheSecondListOfAScope) {
    store_.save({overlayOf('A'), overlayOf('B')}, screen);

    store_.save({overlayOf('C')}, screen);

    EXPECT_THAT(store_.load(screen), ElementsAre(overlayOf('C')));
}

TEST_F(PresetStoreTest, LoadsStoredValuesUnchanged) {
    BlurOverlay odd = overlayOf('A');
    odd.style.intensity = 400;
    odd.style.colorHex = "blue";
    odd.frame = {.x = 1, .y = 2, .width = -3, .height = -4};

    store_.save({odd}, screen);

    EXPECT_THAT(store_.load(screen), ElementsAre(odd));
}

TEST_F(PresetStoreTest, KeepsListsUnderKeysThatItNeverWrites) {
    directory_.write(R"({"made by hand":[)" + std::string(test::attachedOverlayText) +
                     R"(],"screen:01":[],"":[],"screen:1":[]})");

    store_.save({overlayOf('A')}, screen);

    const auto presets = decode<std::map<std::string, std::vector<BlurOverlay>>>(directory_.text(), "test");
    EXPECT_THAT(
        presets,
        ElementsAre(testing::Pair("", IsEmpty()), testing::Pair("made by hand", ElementsAre(test::attachedOverlay())),
                    testing::Pair("screen:01", IsEmpty()), testing::Pair("screen:1", ElementsAre(overlayOf('A')))));
}

TEST_F(PresetStoreTest, ReadsOverlaysWithFurtherMembersAndInAnyLayout) {
    std::string text(test::attachedOverlayText);
    text.replace(text.find('{'), 1, "{ \n\t\"made\\/by\" : {\"b\":[null]},");
    directory_.write("\n{\"screen:1\" :\t[" + text + "]}\n");

    EXPECT_THAT(store_.load(screen), ElementsAre(test::attachedOverlay()));
}

TEST_F(PresetStoreTest, LoadsAnOverlayWithoutAnAttachment) {
    directory_.write("{\"screen:1\":[" + test::withoutMember(test::attachedOverlayText, {"windowAttachment"}) + "]}");

    EXPECT_EQ(store_.load(screen).at(0).windowAttachment, std::nullopt);
}

struct BadFile {
    const char* name;
    std::string text;
    DecodingError::Kind kind;
    const char* what;
};

class PresetStoreBadFile : public testing::TestWithParam<BadFile> {
protected:
    test::PresetDirectory directory_;
    PresetStore store_{directory_.path()};
};

TEST_P(PresetStoreBadFile, FailsEveryCallAndStaysAsItIs) {
    directory_.write(GetParam().text);
    const auto expectRefusal = [](const auto& call) {
        try {
            call();
            ADD_FAILURE() << "accepted";
        } catch (const DecodingError& error) {
            EXPECT_EQ(error.kind(), GetParam().kind);
            EXPECT_STREQ(error.what(), GetParam().what);
        }
    };

    expectRefusal([this] { static_cast<void>(store_.load(screen)); });
    expectRefusal([this] { store_.save({overlayOf('A')}, application); });

    EXPECT_EQ(directory_.text(), GetParam().text);
    EXPECT_THAT(directory_.names(), ElementsAre("presets.json"));
}

INSTANTIATE_TEST_SUITE_P(
    Files, PresetStoreBadFile,
    testing::Values(BadFile{"Garbage", "garbage", DecodingError::Kind::dataCorrupted,
                            "presets.json: not valid JSON at line 1, byte 1"},
                    BadFile{"Empty", "", DecodingError::Kind::dataCorrupted,
                            "presets.json: not valid JSON at line 1, byte 1"},
                    BadFile{"OverlayWithoutAnId",
                            R"({"screen:2":[)" + test::withoutMember(test::attachedOverlayText, {"id"}) + "]}",
                            DecodingError::Kind::keyNotFound, "presets.json: screen:2[0].id: this key is required"},
                    BadFile{"RepeatedKey", R"({"screen:1":[],"screen:1":[]})", DecodingError::Kind::dataCorrupted,
                            "presets.json: screen:1: this key is given twice"},
                    BadFile{"MemberThatIsNoList", R"({"version":1})", DecodingError::Kind::typeMismatch,
                            "presets.json: version: expected an array but found a number"},
                    BadFile{"KeyOfSeveralLines", R"({"a\nb":1})", DecodingError::Kind::typeMismatch,
                            "presets.json: a\xEF\xBF\xBD"
                            "b: expected an array but found a number"},
                    BadFile{"PaddedWithNulBytes", std::string("{}\0\0\0\0", 6), DecodingError::Kind::dataCorrupted,
                            "presets.json: not valid JSON: the text has a NUL byte in it"},
                    BadFile{"OnlyNulBytes", std::string(4096, '\0'), DecodingError::Kind::dataCorrupted,
                            "presets.json: not valid JSON: the text has a NUL byte in it"}),
    [](const auto& instance) { return instance.param.name; });

TEST_F(PresetStoreTest, RefusesAFileCutShortAnywhere) {
    store_.save({test::attachedOverlay()}, screen);
    const std::string whole = directory_.text();

    for (std::size_t length = 0; length < whole.size(); ++length) {
        directory_.write(whole.substr(0, length));

        EXPECT_THROW(store_.save({}, screen), DecodingError) << length << " bytes";
        EXPECT_EQ(directory_.text().size(), length);
    }
}

TEST_F(PresetStoreTest, WritesNothingForAFrameThatIsNotFinite) {
    store_.save({overlayOf('A')}, screen);
    const std::string before = directory_.text();
    BlurOverlay infinite = overlayOf('B');
    infinite.frame.x = std::numeric_limits<double>::infinity();

    EXPECT_THROW(store_.save({infinite}, application), EncodingError);

    EXPECT_EQ(directory_.text(), before);
    EXPECT_THAT(directory_.names(), ElementsAre("presets.json"));
}

TEST_F(PresetStoreTest, WritesNothingForAnIdentifierThatIsNoUtf8) {
    EXPECT_THROW(store_.save({}, PresetScope::application("caf\xE9")), EncodingError);

    EXPECT_THAT(directory_.names(), IsEmpty());
}

TEST_F(PresetStoreTest, TakesADirectoryInTheFilesPlaceForAnError) {
    std::filesystem::create_directory(directory_.file());

    EXPECT_THROW(static_cast<void>(store_.load(screen)), FileError);
    EXPECT_THROW(store_.save({}, screen), FileError);

    EXPECT_TRUE(std::filesystem::is_directory(directory_.file()));
}

TEST_F(PresetStoreTest, TakesALinkThatLeadsNowhereForNoFile) {
    std::filesystem::create_symlink("elsewhere.json", directory_.file());

    EXPECT_THAT(store_.load(screen), IsEmpty());
    store_.save({overlayOf('A')}, screen);

    EXPECT_THAT(store_.load(screen), ElementsAre(overlayOf('A')));
    EXPECT_THAT(directory_.names(), ElementsAre("elsewhere.json", "presets.json"));
    EXPECT_TRUE(std::filesystem::is_symlink(directory_.file()));
}

TEST(PresetStoreDirectory, IsMadeWithItsParentsForItsOwnerAlone) {
    const support::TemporaryDirectory home;

    const PresetStore store(home.path() / "a" / "b" / "Pallwick");

    for (const char* made : {"a", "a/b", "a/b/Pallwick"}) {
        EXPECT_EQ(std::filesystem::status(home.path() / made).permissions(), std::filesystem::perms::owner_all);
    }
    EXPECT_TRUE(std::filesystem::is_empty(home.path() / "a/b/Pallwick"));
}

TEST(PresetStoreDirectory, StaysAsItIsWhereItExists) {
    const test::PresetDirectory directory;
    directory.write("garbage");
    std::filesystem::permissions(directory.path(), std::filesystem::perms(0755));

    const PresetStore store(directory.path());

    EXPECT_EQ(directory.text(), "garbage");
    EXPECT_EQ(std::filesystem::status(directory.path()).permissions(), std::filesystem::perms(0755));
}

TEST(PresetStoreDirectory, MayBeALinkAndHaveASlashAtItsEnd) {
    const support::TemporaryDirectory home;
    std::filesystem::create_directory(home.path() / "real");
    std::filesystem::create_directory_symlink("real", home.path() / "link");

    PresetStore store(home.path() / "link" / "");
    store.save({}, screen);

    EXPECT_TRUE(std::filesystem::exists(home.path() / "real/presets.json"));
}

TEST(PresetStoreDirectory, IsRefusedWhereAFileIsInTheWay) {
    const test::PresetDirectory directory;
    directory.write("{}");

    for (const std::filesystem::path& path : {directory.file(), directory.file() / "Pallwick"}) {
        try {
            const PresetStore store(path);
            ADD_FAILURE() << "made in " << path;
        } catch (const FileError& error) {
            EXPECT_EQ(error.operation(), FileError::Operation::create);
            EXPECT_EQ(error.path(), directory.file());
            EXPECT_STREQ(error.what(), "presets.json could not be created: File exists");
        }
    }
    EXPECT_EQ(directory.text(), "{}");
}

TEST(PresetStoreDirectory, IsPallwickInTheUsersDataDirectory) {
    const support::TemporaryDirectory home;

    // Another test may read the environment; a child has one of its own.
    const std::string outcome = test::outcomeInChild([&] {
        ::setenv("XDG_DATA_HOME", (home.path() / "data").c_str(), 1);
        PresetStore().save({overlayOf('A')}, screen);
        return std::string("saved");
    });

    EXPECT_EQ(outcome, "saved");
    EXPECT_THAT(PresetStore(home.path() / "data/Pallwick").load(screen), ElementsAre(overlayOf('A')));
}

TEST(PresetStoreDirectory, StaysTheSameWhenTheWorkingDirectoryChanges) {
    const support::TemporaryDirectory home;

    const std::string outcome = test::outcomeInChild([&] {
        std::filesystem::current_path(home.path());
        PresetStore store("presets");
        std::filesystem::current_path("/");
        store.save({}, screen);
        return std::string("saved");
    });

    EXPECT_EQ(outcome, "saved");
    EXPECT_TRUE(std::filesystem::exists(home.path() / "presets/presets.json"));
}

}  // namespace
}  // namespace pallwick
