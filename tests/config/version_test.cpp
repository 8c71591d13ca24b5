#include "config/Version.h"

#include <climits>

#include <gtest/gtest.h>

#include "config/ProductInfo.h"
#include "log/Log.h"
#include "support/LogCapture.h"

namespace
{

int compare(const ZUV_BrelServiceVersion &left, const ZUV_BrelServiceVersion &right)
{
    const int forth = ZUV_BrelServiceVersion_compare(&left, &right);
    EXPECT_EQ(ZUV_BrelServiceVersion_compare(&right, &left), -forth);
    return forth;
}

TEST(VersionCompare, goesByMajorThenMinorThenRelease)
{
    EXPECT_EQ(compare({7, 7, 0, 0}, {7, 7, 0, 0}), 0);
    EXPECT_EQ(compare({6, 9, 9, 9}, {7, 0, 0, 0}), -1);
    EXPECT_EQ(compare({7, 6, 9, 9}, {7, 7, 0, 0}), -1);
    EXPECT_EQ(compare({7, 7, 0, 9}, {7, 7, 1, 0}), -1);
    EXPECT_EQ(compare({10, 0, 0, 0}, {9, 0, 0, 0}), 1);
}

TEST(VersionCompare, leavesTheRevisionOut)
{
    EXPECT_EQ(compare({7, 7, 0, 1}, {7, 7, 0, 2}), 0);
}

TEST(VersionCompare, takesTheNumbersAsSigned)
{
    EXPECT_EQ(compare({-1, 0, 0, 0}, {1, 0, 0, 0}), -1);
    EXPECT_EQ(compare({0, INT_MIN, 0, 0}, {0, INT_MAX, 0, 0}), -1);
    EXPECT_EQ(compare({0, 0, -5, 0}, {0, 0, -4, 0}), -1);
}

TEST(VersionCompare, reportsAMissingVersion)
{
    BRELLog_setUp();
    const zuv_test::LogCapture log;
    const ZUV_BrelServiceVersion version = {1, 0, 0, 0};
    EXPECT_EQ(ZUV_BrelServiceVersion_compare(nullptr, &version), 0);
    EXPECT_EQ(ZUV_BrelServiceVersion_compare(&version, nullptr), 0);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: left == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: right == ((void *)0)"}}));
}

std::string printed(void (*print)())
{
    testing::internal::CaptureStdout();
    print();
    return testing::internal::GetCapturedStdout();
}

TEST(PrintedVersion, isNothingWithoutAVersion)
{
    BRELLog_setUp();
    const zuv_test::LogCapture log;
    testing::internal::CaptureStdout();
    BRELParameterManager_printVersionI(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: version == ((void *)0)"}}));
}

TEST(PrintedVersion, hasTheProductAndThreeNumbers)
{
    EXPECT_EQ(printed(BRELParameterManager_printVersion), "ZUV Brel Service 7.7.0\n");
}

TEST(PrintedVersion, hasTheRevisionIfThereIsOne)
{
    EXPECT_EQ(printed([] {
                  const DDS_ProductVersion_t version = {7, 7, 1, 3};
                  BRELParameterManager_printVersionI(&version);
              }),
              "ZUV Brel Service 7.7.1 (rev 3)\n");
}

TEST(PrintedVersion, hasTheNameThatTheProgramSet)
{
    const ZUV_BrelServiceProductInfo info = {"a", "b", "My Product", "c", "d"};
    BRELProductInfo_set(&info);
    EXPECT_EQ(printed(BRELParameterManager_printVersion), "My Product 7.7.0\n");
    BRELProductInfo_reset();
}

} // namespace
