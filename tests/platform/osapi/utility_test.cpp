#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "platform/osapi/Fault.h"
#include "platform/osapi/Time.h"
#include "platform/osapi/Utility.h"

namespace
{

TEST(Snprintf, tellsTheWholeLengthAndAlwaysTerminates)
{
    char buffer[5] = "????";
    EXPECT_EQ(ZUVOsapiUtility_snprintf(buffer, 5, "%d", 1234), 4);
    EXPECT_STREQ(buffer, "1234");
    EXPECT_EQ(ZUVOsapiUtility_snprintf(buffer, 5, "%d", 123456), 6);
    EXPECT_STREQ(buffer, "1234");
}

TEST(Snprintf, measuresWithoutABuffer)
{
    EXPECT_EQ(ZUVOsapiUtility_snprintf(nullptr, 0, "<%s/>", "route"), 8);
}

TEST(Snprintf, leavesAnEmptyTextWhenItFails)
{
    char buffer[5] = "????";
    ZUVOsapiFault_arm("utility.snprintf", 1, 0);
    EXPECT_LT(ZUVOsapiUtility_snprintf(buffer, 5, "%d", 1), 0);
    ZUVOsapiFault_disarm();
    EXPECT_STREQ(buffer, "");
}

TEST(Strcpy, copiesWhatFitsWithItsTerminator)
{
    char buffer[5] = "????";
    EXPECT_EQ(ZUVOsapiUtility_strcpy(buffer, 5, "1234"), buffer);
    EXPECT_STREQ(buffer, "1234");
    EXPECT_EQ(ZUVOsapiUtility_strcpy(buffer, 5, ""), buffer);
    EXPECT_STREQ(buffer, "");
}

TEST(Strcpy, refusesWhatDoesNotFitAndTouchesNothing)
{
    char buffer[5] = "kept";
    EXPECT_EQ(ZUVOsapiUtility_strcpy(buffer, 5, "12345"), nullptr);
    EXPECT_EQ(ZUVOsapiUtility_strcpy(buffer, 5, "12345678"), nullptr);
    EXPECT_STREQ(buffer, "kept");
    EXPECT_EQ(ZUVOsapiUtility_strcpy(buffer, 0, ""), nullptr);
    EXPECT_STREQ(buffer, "kept");
    ZUVOsapiFault_arm("utility.strcpy", 1, 0);
    EXPECT_EQ(ZUVOsapiUtility_strcpy(buffer, 5, "1"), nullptr);
    ZUVOsapiFault_disarm();
    EXPECT_STREQ(buffer, "kept");
}

TEST(Strcpy, readsNoFurtherThanTheLimit)
{
    const char unterminated[3] = {'a', 'b', 'c'};
    char buffer[3];
    EXPECT_EQ(ZUVOsapiUtility_strcpy(buffer, sizeof(buffer), unterminated), nullptr);
}

TEST(Strcat, appendsWhatFits)
{
    char buffer[8] = "ab";
    EXPECT_EQ(ZUVOsapiUtility_strcat(buffer, 8, "cde"), buffer);
    EXPECT_STREQ(buffer, "abcde");
    EXPECT_EQ(ZUVOsapiUtility_strcat(buffer, 8, "fg"), buffer);
    EXPECT_STREQ(buffer, "abcdefg");
}

TEST(Strcat, cutsWhatDoesNotFit)
{
    char buffer[8] = "ab";
    EXPECT_EQ(ZUVOsapiUtility_strcat(buffer, 8, "cdefghij"), buffer);
    EXPECT_STREQ(buffer, "abcdefg");
    EXPECT_EQ(ZUVOsapiUtility_strcat(buffer, 8, "h"), buffer);
    EXPECT_STREQ(buffer, "abcdefg");
}

TEST(Strcat, cutsTheTailOfALongerText)
{
    char buffer[16] = "::b";
    EXPECT_EQ(ZUVOsapiUtility_strcat(buffer, strlen("::b::dr") + 1, "::dr::ses::r"), buffer);
    EXPECT_STREQ(buffer, "::b::dr");
}

TEST(Strcat, refusesATextThatDoesNotEndWithinTheLimit)
{
    char buffer[4] = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(ZUVOsapiUtility_strcat(buffer, 4, "e"), nullptr);
    EXPECT_EQ(std::string(buffer, 4), "abcd");
    char kept[8] = "ab";
    ZUVOsapiFault_arm("utility.strcat", 1, 0);
    EXPECT_EQ(ZUVOsapiUtility_strcat(kept, 8, "c"), nullptr);
    ZUVOsapiFault_disarm();
    EXPECT_STREQ(kept, "ab");
}

TEST(Duration, knowsTheInfiniteSpanByEitherMember)
{
    const DDS_Duration_t infinite[] = {
        DDS_DURATION_INFINITE, {DDS_DURATION_INFINITE_SEC, 0}, {0, DDS_DURATION_INFINITE_NSEC}};
    for (const DDS_Duration_t &duration : infinite) {
        EXPECT_TRUE(DDS_Duration_is_infinite(&duration));
        EXPECT_EQ(DDS_Duration_to_nanoseconds(&duration), INT64_MAX);
    }
    const DDS_Duration_t year = {31536000, 999999999};
    EXPECT_FALSE(DDS_Duration_is_infinite(&year));
    EXPECT_EQ(DDS_Duration_to_nanoseconds(&year), 31536000999999999);
}

TEST(Duration, aNegativeSpanIsNoTime)
{
    const DDS_Duration_t negative = {-5, 1};
    EXPECT_EQ(DDS_Duration_to_nanoseconds(&negative), 0);
    EXPECT_FALSE(DDS_Duration_is_zero(&negative));
    EXPECT_TRUE(DDS_Duration_is_zero(&DDS_DURATION_ZERO));
    EXPECT_EQ(DDS_Duration_to_nanoseconds(&DDS_DURATION_ZERO), 0);
}

} // namespace
