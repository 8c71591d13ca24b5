#include "FloorRules.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using zuv_test::brokenFloorRules;

std::string contentOf(const std::filesystem::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(FloorRules, everyFileOfTheTreeKeepsThem)
{
    const std::filesystem::path root = ZUV_SOURCE_ROOT;
    std::size_t count = 0;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(root)) {
        if (!entry.is_regular_file() || entry.path().filename() == "CMakeLists.txt") {
            continue;
        }
        ++count;
        const std::string path = std::filesystem::relative(entry.path(), root).generic_string();
        EXPECT_THAT(brokenFloorRules(path, contentOf(entry.path())), IsEmpty());
    }
    EXPECT_GT(count, 0U);
}

TEST(FloorRules, aFileMayIncludeItsOwnFloorAndThoseBelow)
{
    EXPECT_THAT(brokenFloorRules("platform/dds/Topic.cpp", "#include \"Topic.h\"\n"
                                                           "#include \"platform/dds/Entity.h\"\n"
                                                           "#include \"platform/osapi/Heap.h\"\n"),
                IsEmpty());
}

TEST(FloorRules, anArrowUpwardsIsReported)
{
    EXPECT_THAT(
        brokenFloorRules("platform/log/Log.cpp", "# include  \"remoteShell/Shell.h\"\n"),
        ElementsAre("platform/log/Log.cpp includes remoteShell/Shell.h, and that arrow does "
                    "not run downwards"));
}

TEST(FloorRules, roomsOnTheSameFloorDoNotSeeEachOther)
{
    EXPECT_THAT(
        brokenFloorRules("platform/kolm/Config.cpp", "#include \"platform/mavo/String.h\"\n"),
        Not(IsEmpty()));
}

TEST(FloorRules, aHeaderOutsideTheRoomsIsReported)
{
    EXPECT_THAT(brokenFloorRules("config/Utils.cpp", "#include \"../tests/support/Heap.h\"\n"),
                Not(IsEmpty()));
    EXPECT_THAT(brokenFloorRules("gadgets/Utils.cpp", ""), Not(IsEmpty()));
}

TEST(FloorRules, anIncludeThatHidesWhatItIncludesIsReported)
{
    for (const char *text : {"/* text */ #include <fastdds/dds/topic/Topic.hpp>\n",
                             "/* text\n text */ #include <fastdds/dds/topic/Topic.hpp>\n",
                             "#define HEADER <fastdds/dds/topic/Topic.hpp>\n#include HEADER\n",
                             "#include_next <stdint.h>\n", "#import <libxml/tree.h>\n"}) {
        EXPECT_THAT(brokenFloorRules("config/Utils.cpp", text), testing::SizeIs(1)) << text;
    }
    EXPECT_THAT(brokenFloorRules("config/Utils.cpp", "// as #include \"a.h\" does\n"), IsEmpty());
}

TEST(FloorRules, onlyHeadersAndSourcesMayInclude)
{
    EXPECT_THAT(brokenFloorRules("config/Utils.inl", "#include <string>\n"), Not(IsEmpty()));
    EXPECT_THAT(brokenFloorRules("config/texts/page.txt", "no C\n"), IsEmpty());
}

TEST(FloorRules, aThirdPartyHeaderBelongsIntoAPlatformImplementation)
{
    const char *const text = "#include <fastdds/dds/topic/Topic.hpp>\n";
    EXPECT_THAT(brokenFloorRules("platform/dds/Topic.cpp", text), IsEmpty());
    EXPECT_THAT(brokenFloorRules("platform/dds/Topic.h", text), Not(IsEmpty()));
    EXPECT_THAT(brokenFloorRules("platform/dds/Topic.hpp", text), Not(IsEmpty()));
    EXPECT_THAT(brokenFloorRules("remoteShell/Shell.cpp", text), Not(IsEmpty()));
}

TEST(FloorRules, aPublicHeaderUsesNoCppLibrary)
{
    EXPECT_THAT(brokenFloorRules("config/Utils.h", "#include <string>\n"), Not(IsEmpty()));
    EXPECT_THAT(brokenFloorRules("config/Utils.h", "#include <stdint.h>\n"), IsEmpty());
    EXPECT_THAT(brokenFloorRules("config/Utils.cpp", "#include <string>\n"), IsEmpty());
}

} // namespace
