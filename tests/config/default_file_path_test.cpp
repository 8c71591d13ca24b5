#include "config/DefaultFilePath.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "log/Log.h"
#include "platform/osapi/Fault.h"
#include "support/LogCapture.h"

namespace
{

class DefaultFilePath : public testing::Test
{
protected:
    DefaultFilePath()
    {
        BRELLog_setUp();
        std::memset(path_, '#', sizeof(path_));
    }

    // What the parser's buffer holds, which is as long as the parts may be.
    char path_[BREL_DEFAULT_FILE_PATH_PARTS_SIZE];
};

TEST_F(DefaultFilePath, isPutTogetherAndNormalized)
{
    EXPECT_EQ(BRELUtils_getDefaultFileAbsolutePath(path_, "/opt/zuv/bin/x64/zuvbrelservice",
                                                   "../../../xml", "ZUV_BREL_SERVICE.xml"),
              path_);
    EXPECT_STREQ(path_, "/opt/zuv/xml/ZUV_BREL_SERVICE.xml");
    EXPECT_EQ(BRELUtils_getDefaultFileAbsolutePath(path_, "bin", "../../resource/xml", "F.xml"),
              path_);
    EXPECT_STREQ(path_, "../resource/xml/F.xml");
}

TEST_F(DefaultFilePath, mayHave512Characters)
{
    const std::string folder = "/" + std::string(512 - 1 - 4, 'd');
    EXPECT_EQ(BRELUtils_getDefaultFileAbsolutePath(path_, folder.c_str(), "m", "f"), path_);
    EXPECT_EQ(path_, folder + "/m/f");
    EXPECT_EQ(std::strlen(path_), 512U);
}

TEST_F(DefaultFilePath, thatIsTooLongIsEmpty)
{
    const zuv_test::LogCapture log;
    const std::string folder = "/" + std::string(513 - 1 - 4, 'd');
    EXPECT_EQ(BRELUtils_getDefaultFileAbsolutePath(path_, folder.c_str(), "m", "f"), path_);
    EXPECT_STREQ(path_, "");
    EXPECT_EQ(path_[1], '#');
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!defafult file path (path too long?)"}}));
}

TEST_F(DefaultFilePath, thatCannotBeFormedOrNormalizedIsEmpty)
{
    const std::pair<const char *, const char *> steps[] = {
        {"utility.snprintf", "!defafult file path (path too long?)"},
        {"utility.normalize_path", "!normalize default file path"},
    };
    for (const auto &[point, report] : steps) {
        const zuv_test::LogCapture log;
        ZUVOsapiFault_arm(point, 1, 0);
        EXPECT_EQ(BRELUtils_getDefaultFileAbsolutePath(path_, "/bin", "..", "f"), path_);
        EXPECT_STREQ(path_, "");
        EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, report}}));
    }
}

TEST_F(DefaultFilePath, needsAllItsParts)
{
    const zuv_test::LogCapture log;
    EXPECT_EQ(BRELUtils_getDefaultFileAbsolutePath(nullptr, "/bin", "..", "f"), nullptr);
    EXPECT_EQ(BRELUtils_getDefaultFileAbsolutePath(path_, nullptr, "..", "f"), nullptr);
    EXPECT_EQ(BRELUtils_getDefaultFileAbsolutePath(path_, "/bin", nullptr, "f"), nullptr);
    EXPECT_EQ(BRELUtils_getDefaultFileAbsolutePath(path_, "/bin", "..", nullptr), nullptr);
    EXPECT_EQ(path_[0], '#');
    const std::string start = "!meet precondition: ";
    const std::string end = " == ((void *)0)";
    EXPECT_EQ(log.texts(), (std::vector<std::string>{start + "normalizedDefaultPath" + end,
                                                     start + "executablePath" + end,
                                                     start + "intermidiatePath" + end,
                                                     start + "fileName" + end}));
}

} // namespace
