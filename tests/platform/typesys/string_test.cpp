#include "platform/typesys/String.h"

#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "support/HeapCheck.h"

TEST(String, AllocatesAnEmptyTextWithRoom)
{
    const zuv_test::HeapCheck heap;
    char *text = DDS_String_alloc(10);
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(text), 11u);
    DDS_String_free(text);
    EXPECT_TRUE(heap.isBalanced());
}

TEST(String, RefusesALengthThatOverflows)
{
    EXPECT_EQ(DDS_String_alloc(SIZE_MAX), nullptr);
}

TEST(String, DuplicatesATextAndNull)
{
    char *copy = DDS_String_dup("text");
    EXPECT_STREQ(copy, "text");
    DDS_String_free(copy);
    EXPECT_EQ(DDS_String_dup(nullptr), nullptr);
    DDS_String_free(nullptr);
}

TEST(String, ReplaceKeepsStorageThatIsLargeEnough)
{
    char *text = DDS_String_dup("a longer text");
    char *storage = text;
    EXPECT_EQ(DDS_String_replace(&text, "short"), storage);
    EXPECT_STREQ(text, "short");
    EXPECT_EQ(DDS_String_replace(&text, "a longer text"), storage);
    EXPECT_NE(DDS_String_replace(&text, "a text longer than that"), nullptr);
    EXPECT_STREQ(text, "a text longer than that");
    DDS_String_free(text);
}

TEST(String, ReplaceTakesAPartOfTheTextItself)
{
    char *text = DDS_String_dup("head and tail");
    EXPECT_NE(DDS_String_replace(&text, text + 9), nullptr);
    EXPECT_STREQ(text, "tail");
    DDS_String_free(text);
}

TEST(String, ReplaceByNullReleases)
{
    const zuv_test::HeapCheck heap;
    char *text = DDS_String_dup("text");
    EXPECT_EQ(DDS_String_replace(&text, nullptr), nullptr);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(DDS_String_replace(nullptr, "text"), nullptr);
    EXPECT_TRUE(heap.isBalanced());
}

TEST(String, ReplaceWithoutMemoryLeavesTheTextAlone)
{
    char *text = DDS_String_dup("old");
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 1);
    EXPECT_EQ(DDS_String_replace(&text, "something longer"), nullptr);
    EXPECT_EQ(DDS_String_dup("x"), nullptr);
    EXPECT_EQ(DDS_String_alloc(1), nullptr);
    ZUVOsapiFault_disarm();
    EXPECT_STREQ(text, "old");
    DDS_String_free(text);
}
