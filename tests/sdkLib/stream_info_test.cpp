#include "sdkLib/StreamInfo.h"

#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "log/Log.h"
#include "support/FaultSweep.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

// Owns its texts.
struct StringSeq : ZUV_BrelServiceStringSeq {
    StringSeq(std::initializer_list<const char *> texts = {}) : ZUV_BrelServiceStringSeq()
    {
        element_count = element_count_max = static_cast<int>(texts.size());
        element_array = static_cast<char **>(std::calloc(texts.size() + 1, sizeof(char *)));
        int index = 0;
        for (const char *const text : texts) {
            element_array[index++] = strdup(text);
        }
    }
    StringSeq(const StringSeq &) = delete;
    StringSeq &operator=(const StringSeq &) = delete;
    ~StringSeq()
    {
        for (int index = 0; index < element_count_max; ++index) {
            std::free(element_array[index]);
        }
        std::free(element_array);
    }
};

std::vector<std::string> textsOf(const ZUV_BrelServiceStringSeq &seq)
{
    return {seq.element_array, seq.element_array + seq.element_count};
}

class StreamInfo : public testing::Test
{
protected:
    StreamInfo() { BRELLog_setUp(); }
    ~StreamInfo() override { EXPECT_TRUE(heap_.isBalanced()); }

    const zuv_test::HeapCheck heap_;
    int representation_ = 0;
};

TEST_F(StreamInfo, discoveredHasWhatItWasGiven)
{
    std::string name = "Square";
    std::string type = "ShapeType";
    ZUV_BrelServiceStreamInfo *const info =
        ZUV_BrelServiceStreamInfo_new_discovered(name.c_str(), type.c_str(), 3, &representation_);
    name = type = "gone";
    ASSERT_NE(info, nullptr);
    EXPECT_STREQ(info->stream_name, "Square");
    EXPECT_STREQ(info->type_info.type_name, "ShapeType");
    EXPECT_EQ(info->type_info.can_be_optimized, DDS_BOOLEAN_TRUE);
    EXPECT_EQ(info->type_info.type_representation_kind, 3);
    EXPECT_EQ(info->type_info.type_representation, &representation_);
    EXPECT_EQ(info->partition.element_array, nullptr);
    EXPECT_EQ(info->partition.element_count, 0);
    EXPECT_EQ(info->partition.element_count_max, 0);
    EXPECT_EQ(info->disposed, DDS_BOOLEAN_FALSE);
    ZUV_BrelServiceStreamInfo_delete(info);
}

TEST_F(StreamInfo, discoveredNeedsNoTypeName)
{
    const zuv_test::LogCapture log;
    ZUV_BrelServiceStreamInfo *const info =
        ZUV_BrelServiceStreamInfo_new_discovered("Square", nullptr, 0, nullptr);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->type_info.type_name, nullptr);
    EXPECT_TRUE(log.isEmpty());
    ZUV_BrelServiceStreamInfo_delete(info);
}

TEST_F(StreamInfo, disposedHasANameAlone)
{
    ZUV_BrelServiceStreamInfo *const info = ZUV_BrelServiceStreamInfo_new_disposed("Square");
    ASSERT_NE(info, nullptr);
    EXPECT_STREQ(info->stream_name, "Square");
    EXPECT_EQ(info->disposed, DDS_BOOLEAN_TRUE);
    EXPECT_EQ(info->type_info.type_name, nullptr);
    EXPECT_EQ(info->type_info.can_be_optimized, DDS_BOOLEAN_TRUE);
    EXPECT_EQ(info->type_info.type_representation_kind, 0);
    EXPECT_EQ(info->type_info.type_representation, nullptr);
    ZUV_BrelServiceStreamInfo_delete(info);
}

TEST_F(StreamInfo, itsTextsAreThoseOfTheCLibrary)
{
    ZUV_BrelServiceStreamInfo *const info =
        ZUV_BrelServiceStreamInfo_new_discovered("Square", "ShapeType", 0, nullptr);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(heap_.liveBlocks(), 1) << "only the record is on the system's heap";
    std::free(info->stream_name);
    info->stream_name = strdup("Circle");
    ZUV_BrelServiceStreamInfo_delete(info);
}

TEST_F(StreamInfo, finalizedIsEmpty)
{
    ZUV_BrelServiceStreamInfo info;
    std::memset(&info, 0x5a, sizeof(info));
    ASSERT_TRUE(ZUV_BrelServiceStreamInfo_initialize(&info, DDS_BOOLEAN_TRUE, "Square", "ShapeType",
                                                     0, nullptr));
    EXPECT_EQ(info.disposed, DDS_BOOLEAN_TRUE);
    const StringSeq partitions{"A", "B"};
    ASSERT_NE(ZUV_BrelServiceStringSeq_copy(&info.partition, &partitions), nullptr);
    info.partition.element_count = 1; // the slot behind is released as well
    for (int count = 0; count < 2; ++count) {
        ZUV_BrelServiceStreamInfo_finalize(&info);
        EXPECT_EQ(info.stream_name, nullptr);
        EXPECT_EQ(info.type_info.type_name, nullptr);
        EXPECT_EQ(info.partition.element_array, nullptr);
        EXPECT_EQ(info.partition.element_count_max, 0);
    }
}

TEST_F(StreamInfo, releaseOfNothingDoesNothing)
{
    const zuv_test::LogCapture log;
    ZUV_BrelServiceStreamInfo_finalize(nullptr);
    ZUV_BrelServiceStreamInfo_delete(nullptr);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(StreamInfo, needsARecordAndAName)
{
    const zuv_test::LogCapture log;
    ZUV_BrelServiceStreamInfo info;
    EXPECT_FALSE(ZUV_BrelServiceStreamInfo_initialize(nullptr, DDS_BOOLEAN_FALSE, "Square", nullptr,
                                                      0, nullptr));
    EXPECT_FALSE(ZUV_BrelServiceStreamInfo_initialize(&info, DDS_BOOLEAN_FALSE, nullptr,
                                                      "ShapeType", 0, nullptr));
    EXPECT_EQ(ZUV_BrelServiceStreamInfo_new_discovered(nullptr, "ShapeType", 0, nullptr), nullptr);
    EXPECT_EQ(ZUV_BrelServiceStreamInfo_new_disposed(nullptr), nullptr);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: self == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: stream_name == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: stream_name == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: stream_name == ((void *)0)"}}));
    ZUV_BrelServiceStreamInfo_finalize(&info);
}

TEST_F(StreamInfo, thatCannotBeMadeIsReported)
{
    zuv_test::sweepFaults([] {
        ZUV_BrelServiceStreamInfo *const info =
            ZUV_BrelServiceStreamInfo_new_discovered("Square", "ShapeType", 0, nullptr);
        ZUV_BrelServiceStreamInfo_delete(info);
        return info != nullptr;
    });
    zuv_test::sweepFaults([] {
        ZUV_BrelServiceStreamInfo *const info = ZUV_BrelServiceStreamInfo_new_disposed("Square");
        ZUV_BrelServiceStreamInfo_delete(info);
        return info != nullptr;
    });
}

TEST_F(StreamInfo, withoutMemoryTellsHowMuchWasMissing)
{
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(ZUV_BrelServiceStreamInfo_new_disposed("Square"), nullptr);
    ZUVOsapiFault_arm("sdk.allocate", 1, 0);
    EXPECT_EQ(ZUV_BrelServiceStreamInfo_new_disposed("Square"), nullptr);
    EXPECT_TRUE(
        log.isExactly({{&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                        "!allocate object of " + std::to_string(sizeof(ZUV_BrelServiceStreamInfo)) +
                            " bytes: out of memory"},
                       {&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d,
                        "!allocate string of 6 characters: out of memory"}}));
}

// -- Sequences of texts -------------------------------------------------------------------------------

class StringSeqCopy : public StreamInfo
{
};

TEST_F(StringSeqCopy, growsToTheSource)
{
    StringSeq seq{"old"};
    {
        const StringSeq source{"one", "two", "three"};
        EXPECT_EQ(ZUV_BrelServiceStringSeq_copy(&seq, &source), &seq);
    }
    EXPECT_THAT(textsOf(seq), ElementsAre("one", "two", "three"));
    EXPECT_EQ(seq.element_count_max, 3);
}

TEST_F(StringSeqCopy, ofAShorterSequenceKeepsTheSlotsAndTheirTexts)
{
    StringSeq seq{"one", "two", "three"};
    const StringSeq source{"other"};
    EXPECT_EQ(ZUV_BrelServiceStringSeq_copy(&seq, &source), &seq);
    EXPECT_THAT(textsOf(seq), ElementsAre("other"));
    EXPECT_EQ(seq.element_count_max, 3);
    EXPECT_STREQ(seq.element_array[1], "two");
    EXPECT_STREQ(seq.element_array[2], "three");
}

TEST_F(StringSeqCopy, ofAnEmptySequenceIsEmpty)
{
    StringSeq seq{"one"};
    const ZUV_BrelServiceStringSeq source = {};
    EXPECT_EQ(ZUV_BrelServiceStringSeq_copy(&seq, &source), &seq);
    EXPECT_THAT(textsOf(seq), IsEmpty());
    EXPECT_EQ(seq.element_count_max, 1);
    ZUV_BrelServiceStringSeq empty = {};
    EXPECT_EQ(ZUV_BrelServiceStringSeq_copy(&empty, &source), &empty);
}

TEST_F(StringSeqCopy, ontoItselfChangesNothing)
{
    StringSeq seq{"one", "two"};
    EXPECT_EQ(ZUV_BrelServiceStringSeq_copy(&seq, &seq), &seq);
    EXPECT_THAT(textsOf(seq), ElementsAre("one", "two"));
}

TEST_F(StringSeqCopy, needsBothSequencesAndTheirTexts)
{
    StringSeq seq;
    StringSeq hole{"one", "two"};
    std::free(hole.element_array[1]);
    hole.element_array[1] = nullptr;
    const zuv_test::LogCapture log;
    EXPECT_EQ(ZUV_BrelServiceStringSeq_copy(nullptr, &seq), nullptr);
    EXPECT_EQ(ZUV_BrelServiceStringSeq_copy(&seq, nullptr), nullptr);
    EXPECT_EQ(ZUV_BrelServiceStringSeq_copy(&seq, &hole), nullptr);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: self == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: other == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: text == ((void *)0)"}}));
}

TEST_F(StringSeqCopy, thatRunsOutOfMemoryHasTheElementsBefore)
{
    StringSeq seq;
    const StringSeq source{"one", "two", "three"};
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm("sdk.allocate", 3, 0); // the array, the first text, and here the second one
    EXPECT_EQ(ZUV_BrelServiceStringSeq_copy(&seq, &source), nullptr);
    EXPECT_TRUE(log.isExactly({{&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d,
                                "!allocate string of 3 characters: out of memory"}}));
    EXPECT_EQ(log.lines()[0].function, "ZUV_BrelServiceStringSeq_copy");
    EXPECT_EQ(seq.element_count, 3);
    EXPECT_EQ(seq.element_count_max, 3);
    EXPECT_STREQ(seq.element_array[0], "one");
    EXPECT_EQ(seq.element_array[1], nullptr);
}

TEST_F(StringSeqCopy, thatCannotGrowLeavesTheSequenceAsItWas)
{
    StringSeq seq{"old"};
    const StringSeq source{"one", "two"};
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm("sdk.allocate", 1, 0);
    EXPECT_EQ(ZUV_BrelServiceStringSeq_copy(&seq, &source), nullptr);
    EXPECT_TRUE(log.isExactly({{&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_ARRAY_dd,
                                "!allocate array of 2 elements of 8 bytes: out of memory"}}));
    EXPECT_THAT(textsOf(seq), ElementsAre("old"));
    EXPECT_EQ(seq.element_count_max, 1);
}

TEST_F(StringSeqCopy, thatFailsLeaksNothing)
{
    const StringSeq source{"one", "a longer text", "three"};
    zuv_test::sweepFaults([&source] {
        StringSeq seq{"old"};
        return ZUV_BrelServiceStringSeq_copy(&seq, &source) != nullptr;
    });
}

} // namespace
