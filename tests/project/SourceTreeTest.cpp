#include "SourceTree.h"

#include <gmock/gmock.h>

namespace pallwick::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Field;
using testing::HasSubstr;

TEST(SourceTree, HoldsSourcesAndHeadersOfEveryPart) {
    const std::vector<SourceFile> files = readSourceTree();

    const auto file = [](const char* path, const char* text) {
        return AllOf(Field(&SourceFile::path, path), Field(&SourceFile::text, HasSubstr(text)));
    };
    EXPECT_THAT(files, Contains(file("PallwickMacCore/Models/UUID.h", "class UUID")));
    EXPECT_THAT(files, Contains(file("PallwickMacCore/Stores/OverlayStore.cpp", "OverlayStore::clear")));
    EXPECT_THAT(files, Contains(file("PallwickMac/Platform/PlatformFactory.cpp", "makePlatform")));
    EXPECT_THAT(files, Contains(file("tests/project/SourceTreeTest.cpp", "HoldsSourcesAndHeadersOfEveryPart")));
}

}  // namespace
}  // namespace pallwick::test
