#include "platform/osapi/EnvironmentVariable.h"

#include <cstdlib>

#include <gtest/gtest.h>

namespace
{

constexpr const char *kName = "ZUV_TEST_VARIABLE";

class EnvironmentVariable : public testing::Test
{
protected:
    ~EnvironmentVariable() override { unsetenv(kName); }

    char value_[8] = "before";
};

TEST_F(EnvironmentVariable, givesItsValue)
{
    setenv(kName, "1234567", 1);
    EXPECT_EQ(ZUVOsapi_envVarOrFileGet(value_, sizeof(value_), kName), value_);
    EXPECT_STREQ(value_, "1234567");
    setenv(kName, "", 1);
    EXPECT_EQ(ZUVOsapi_envVarOrFileGet(value_, sizeof(value_), kName), value_);
    EXPECT_STREQ(value_, "");
}

TEST_F(EnvironmentVariable, thatIsNotSetLeavesTheTextAlone)
{
    EXPECT_EQ(ZUVOsapi_envVarOrFileGet(value_, sizeof(value_), kName), nullptr);
    EXPECT_STREQ(value_, "before");
}

TEST_F(EnvironmentVariable, thatDoesNotFitLeavesTheTextAlone)
{
    setenv(kName, "12345678", 1);
    EXPECT_EQ(ZUVOsapi_envVarOrFileGet(value_, sizeof(value_), kName), nullptr);
    EXPECT_STREQ(value_, "before");
}

} // namespace
