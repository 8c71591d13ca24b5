#include "platform/osapi/Path.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "platform/osapi/Fault.h"

namespace
{

std::string normalized(const std::string &path)
{
    char text[1024];
    std::memset(text, '#', sizeof(text));
    return ZUVOsapiUtility_normalizePath(text, sizeof(text), path.c_str()) != 0 ? text : "(failed)";
}

TEST(NormalizedPath, hasNoSuperfluousParts)
{
    EXPECT_EQ(normalized("/a/b"), "/a/b");
    EXPECT_EQ(normalized("a/b"), "a/b");
    EXPECT_EQ(normalized("//a///b//"), "/a/b");
    EXPECT_EQ(normalized("/./a/./b/."), "/a/b");
    EXPECT_EQ(normalized("./a"), "a");
    EXPECT_EQ(normalized(".hidden/..name/..."), ".hidden/..name/...");
}

TEST(NormalizedPath, takesAComponentAwayForEachStepUp)
{
    EXPECT_EQ(normalized("/opt/zuv/bin/../../../xml/FILE.xml"), "/xml/FILE.xml");
    EXPECT_EQ(normalized("/a/b/../c"), "/a/c");
    EXPECT_EQ(normalized("a/.."), ".");
    EXPECT_EQ(normalized("a/../b"), "b");
    EXPECT_EQ(normalized("/a/.."), "/");
}

TEST(NormalizedPath, cannotClimbAboveTheRoot)
{
    EXPECT_EQ(normalized("/.."), "/");
    EXPECT_EQ(normalized("/a/../../b"), "/b");
}

TEST(NormalizedPath, keepsTheStepsUpOfARelativePath)
{
    EXPECT_EQ(normalized(".."), "..");
    EXPECT_EQ(normalized("../../a"), "../../a");
    EXPECT_EQ(normalized("a/../../b"), "../b");
    EXPECT_EQ(normalized("../a/../../b"), "../../b");
}

TEST(NormalizedPath, ofNothingIsTheCurrentDirectory)
{
    EXPECT_EQ(normalized(""), ".");
    EXPECT_EQ(normalized("."), ".");
    EXPECT_EQ(normalized("./"), ".");
    EXPECT_EQ(normalized("/"), "/");
}

TEST(NormalizedPath, thatDoesNotFitIsEmpty)
{
    char text[] = "######";
    EXPECT_EQ(ZUVOsapiUtility_normalizePath(text, 5, "/abc"), 1);
    EXPECT_STREQ(text, "/abc");
    EXPECT_EQ(text[5], '#');
    EXPECT_EQ(ZUVOsapiUtility_normalizePath(text, 5, "/abcd"), 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(ZUVOsapiUtility_normalizePath(text, 1, ""), 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(ZUVOsapiUtility_normalizePath(text, 5, "a/bcd"), 0);
    EXPECT_EQ(text[5], '#');
}

TEST(NormalizedPath, isNeverLongerThanThePath)
{
    for (const char *const path : {"/", "a", "..", "/..", "../..", "a/..", "///", "a/b/../.."}) {
        EXPECT_LE(normalized(path).size(), std::strlen(path)) << path;
    }
}

TEST(NormalizedPath, failsAtItsFaultPoint)
{
    char text[8] = "before";
    ZUVOsapiFault_arm("utility.normalize_path", 1, 0);
    EXPECT_EQ(ZUVOsapiUtility_normalizePath(text, sizeof(text), "/a"), 0);
    EXPECT_STREQ(text, "");
}

} // namespace
