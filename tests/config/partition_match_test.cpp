#include "config/PartitionMatch.h"

#include <initializer_list>

#include <gtest/gtest.h>

#include "log/Log.h"
#include "support/LogCapture.h"

namespace
{

struct Partitions : DDS_StringSeq {
    Partitions(std::initializer_list<const char *> names = {})
        : DDS_StringSeq(DDS_SEQUENCE_INITIALIZER)
    {
        const auto count = static_cast<DDS_Long>(names.size());
        EXPECT_TRUE(
            DDS_StringSeq_from_array(this, const_cast<char *const *>(names.begin()), count));
    }
    Partitions(const Partitions &) = delete;
    Partitions &operator=(const Partitions &) = delete;
    ~Partitions() { DDS_StringSeq_finalize(this); }
};

bool isMatch(const Partitions &left, const Partitions &right)
{
    return BRELUtils_hasMatchingPartition(&left, &right) != 0;
}

bool isMatchBothWays(const Partitions &left, const Partitions &right)
{
    const bool result = isMatch(left, right);
    EXPECT_EQ(isMatch(right, left), result);
    return result;
}

TEST(PartitionDefault, isOneEmptyName)
{
    ASSERT_EQ(DDS_StringSeq_get_length(&BREL_XML_STREAM_PORT_PARTITION_DEFAULT), 1);
    EXPECT_STREQ(DDS_StringSeq_get(&BREL_XML_STREAM_PORT_PARTITION_DEFAULT, 0), "");
    Partitions copy;
    EXPECT_EQ(DDS_StringSeq_copy(&copy, &BREL_XML_STREAM_PORT_PARTITION_DEFAULT), &copy);
    EXPECT_STREQ(DDS_StringSeq_get(&copy, 0), "");
}

TEST(PartitionMatch, ofTwoEmptySequencesIsByTheirDefault)
{
    EXPECT_TRUE(isMatchBothWays({}, {}));
    EXPECT_TRUE(isMatchBothWays({}, {""}));
    EXPECT_TRUE(isMatchBothWays({""}, {""}));
}

TEST(PartitionMatch, needsOneCommonName)
{
    EXPECT_TRUE(isMatchBothWays({"A"}, {"A"}));
    EXPECT_TRUE(isMatchBothWays({"A", "B"}, {"C", "B"}));
    EXPECT_FALSE(isMatchBothWays({"A"}, {"B"}));
    EXPECT_FALSE(isMatchBothWays({"A"}, {"a"}));
    EXPECT_FALSE(isMatchBothWays({"A"}, {}));
    EXPECT_FALSE(isMatchBothWays({"A"}, {""}));
}

TEST(PartitionMatch, mayBeByAPatternOnEitherSide)
{
    EXPECT_TRUE(isMatchBothWays({"sensor*"}, {"sensor1"}));
    EXPECT_TRUE(isMatchBothWays({"X", "s?nsor"}, {"sensor"}));
    EXPECT_FALSE(isMatchBothWays({"sensor*"}, {"actuator"}));
}

TEST(PartitionMatch, ofPatternsAloneOnBothSidesIsTaken)
{
    EXPECT_TRUE(isMatchBothWays({"A*"}, {"B*"}));
    EXPECT_TRUE(isMatchBothWays({"A*", "C?"}, {"B*"}));
}

TEST(PartitionMatch, ofPatternsAloneCoversTheDefaultPartition)
{
    EXPECT_TRUE(isMatchBothWays({}, {"*"}));
    EXPECT_TRUE(isMatch({""}, {"A*"})) << "patterns alone on the right stand for the default too";
    EXPECT_TRUE(isMatch({}, {"A*"}));
    EXPECT_TRUE(isMatch({"*", "A"}, {"B*"}));
}

TEST(PartitionMatch, ofPatternsOnTheLeftLooksForTheDefaultAmongTheNamesOnTheRight)
{
    EXPECT_TRUE(isMatch({"A*"}, {""}));
    EXPECT_TRUE(isMatch({"A*"}, {"B", ""}));
    EXPECT_FALSE(isMatch({"A*"}, {"B"}));
    EXPECT_TRUE(isMatch({"A*"}, {"B", "*"}));
    EXPECT_FALSE(isMatch({"A*"}, {})) << "the default itself is not looked at there";
}

TEST(PartitionMatch, failsWithANameThatNobodyHas)
{
    EXPECT_FALSE(isMatch({"A*", "B"}, {"C", ""}));
    EXPECT_FALSE(isMatch({"A*", "B"}, {"C*"}));
}

TEST(PartitionMatch, takesAnElementForAList)
{
    EXPECT_TRUE(isMatchBothWays({"A,B"}, {"B,C"}));
    EXPECT_TRUE(isMatchBothWays({"A,B*"}, {"Bx"}));
    EXPECT_FALSE(isMatchBothWays({"A,B"}, {"C,D"}));
}

TEST(PartitionMatch, takesAMissingElementForAnEmptyOne)
{
    EXPECT_TRUE(isMatchBothWays({nullptr}, {""}));
    EXPECT_TRUE(isMatchBothWays({nullptr}, {nullptr}));
    EXPECT_FALSE(isMatchBothWays({nullptr}, {"A"}));
}

TEST(PartitionMatch, needsBothSequences)
{
    BRELLog_setUp();
    const zuv_test::LogCapture log;
    const Partitions partitions;
    EXPECT_EQ(BRELUtils_hasMatchingPartition(nullptr, &partitions), 0);
    EXPECT_EQ(BRELUtils_hasMatchingPartition(&partitions, nullptr), 0);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: partitionLeft == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: partitionRight == ((void *)0)"}}));
}

} // namespace
