#include "platform/typesys/Sequence.h"

#include <gtest/gtest.h>

#include "TestTypes.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/PrimitiveSequences.h"
#include "support/SequenceSuite.h"

// Of each kind of element one.
std::span<const zuv_test::SequenceType> zuv_test::sequenceTypes()
{
    static const SequenceType types[] = {
        ZUV_TEST_SEQUENCE(DDS_BooleanSeq, DDS_Boolean, &DDS_g_tc_boolean),
        ZUV_TEST_SEQUENCE(DDS_OctetSeq, DDS_Octet, &DDS_g_tc_octet),
        ZUV_TEST_SEQUENCE(DDS_LongSeq, DDS_Long, &DDS_g_tc_long),
        ZUV_TEST_SEQUENCE(DDS_UnsignedLongSeq, DDS_UnsignedLong, &DDS_g_tc_ulong),
        ZUV_TEST_SEQUENCE(DDS_StringSeq, char *, &DDS_g_tc_string),
        ZUV_TEST_SEQUENCE(TestNameSeq, TestName, &TestName_g_typecode),
        ZUV_TEST_SEQUENCE(TestPointSeq, TestPoint, &TestPoint_g_typecode),
        ZUV_TEST_SEQUENCE(TestColorSeq, TestColor, &TestColor_g_typecode),
        ZUV_TEST_SEQUENCE(TestMutableSeq, TestMutable, &TestMutable_g_typecode),
        ZUV_TEST_SEQUENCE(TestEverythingSeq, TestEverything, &TestEverything_g_typecode),
    };
    return types;
}

TEST(StringSequence, StartsItsElementsAsNull)
{
    DDS_StringSeq sequence = DDS_SEQUENCE_INITIALIZER;
    const zuv_test::HeapCheck heap;
    ASSERT_TRUE(DDS_StringSeq_ensure_length(&sequence, 2, 2));
    EXPECT_EQ(DDS_StringSeq_get(&sequence, 0), nullptr);
    *DDS_StringSeq_get_reference(&sequence, 1) = DDS_String_dup("mine");
    DDS_StringSeq copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_NE(DDS_StringSeq_copy(&copy, &sequence), nullptr);
    EXPECT_EQ(DDS_StringSeq_get(&copy, 0), nullptr);
    EXPECT_STREQ(DDS_StringSeq_get(&copy, 1), "mine");
    EXPECT_TRUE(DDS_StringSeq_finalize(&sequence));
    EXPECT_TRUE(DDS_StringSeq_finalize(&copy));
    EXPECT_TRUE(heap.isBalanced());
}

TEST(TextSequence, GivesItsElementsRoomForTheirBound)
{
    TestNameSeq sequence = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(TestNameSeq_ensure_length(&sequence, 1, 1));
    EXPECT_STREQ(TestNameSeq_get(&sequence, 0), "");
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(TestNameSeq_get(&sequence, 0)), 9u);
    EXPECT_TRUE(TestNameSeq_finalize(&sequence));
}

TEST(TextSequence, RefusesToCopyATextBeyondItsBound)
{
    const zuv_test::LogCapture log;
    TestNameSeq sequence = DDS_SEQUENCE_INITIALIZER;
    TestNameSeq copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(TestNameSeq_ensure_length(&sequence, 1, 1));
    DDS_String_replace(TestNameSeq_get_reference(&sequence, 0), "nine chars");
    EXPECT_EQ(TestNameSeq_copy(&copy, &sequence), nullptr);
    EXPECT_FALSE(log.lines().empty());
    EXPECT_TRUE(TestNameSeq_finalize(&sequence));
    EXPECT_TRUE(TestNameSeq_finalize(&copy));
}
