#include "platform/typesys/Sample.h"

#include <algorithm>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "TestSamples.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using namespace zuv_test;

// Compiles every program of the tests' types, so that a test's own heap is watched alone.
class SampleTest : public testing::Test
{
protected:
    SampleTest() { ZUVSample_getSize(&TestEverything_g_typecode); }

    LogCapture log_;
};

DDS_TypeAllocationParams_t withOptionalMembers()
{
    DDS_TypeAllocationParams_t params = DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
    params.allocate_optional_members = DDS_BOOLEAN_TRUE;
    return params;
}

} // namespace

TEST(AllocationParams, HaveTheirDefaults)
{
    EXPECT_TRUE(DDS_TYPE_ALLOCATION_PARAMS_DEFAULT.allocate_pointers);
    EXPECT_FALSE(DDS_TYPE_ALLOCATION_PARAMS_DEFAULT.allocate_optional_members);
    EXPECT_TRUE(DDS_TYPE_ALLOCATION_PARAMS_DEFAULT.allocate_memory);
    EXPECT_TRUE(DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT.delete_pointers);
    EXPECT_TRUE(DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT.delete_optional_members);
}

TEST_F(SampleTest, InitializesEachMemberToItsDefault)
{
    TestEverything sample;
    std::memset(&sample, 0xa5, sizeof(sample));
    ASSERT_TRUE(TestEverything_initialize(&sample));
    EXPECT_EQ(sample.flag, 0);
    EXPECT_EQ(sample.large, 0);
    EXPECT_EQ(sample.precise, 0.0);
    EXPECT_EQ(sample.color, TestColor_GREEN);
    EXPECT_EQ(sample.pair[1], TestColor_GREEN);
    EXPECT_STREQ(sample.name, "");
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(sample.name), 9u); // room for the bound
    EXPECT_STREQ(sample.text, "");
    EXPECT_EQ(sample.inner.b, 0);
    EXPECT_EQ(sample.maybe_number, nullptr);
    EXPECT_EQ(sample.maybe_point, nullptr);
    EXPECT_EQ(sample.maybe_text, nullptr);
    EXPECT_EQ(sample.maybe_longs, nullptr);
    EXPECT_EQ(TestMutableSeq_get_length(&sample.mutables), 0);
    EXPECT_EQ(sample.longs._absolute_maximum, 4u);
    EXPECT_EQ(sample.octets._absolute_maximum, 0x7fffffffu);
    EXPECT_EQ(sample.three[2], 0);
    TestEverything_finalize(&sample);
}

TEST_F(SampleTest, LeavesTextsUnallocatedWithoutMemory)
{
    const HeapCheck heap;
    TestEverything sample;
    std::memset(&sample, 0xa5, sizeof(sample));
    ASSERT_TRUE(TestEverything_initialize_ex(&sample, DDS_BOOLEAN_TRUE, DDS_BOOLEAN_FALSE));
    EXPECT_EQ(sample.name, nullptr);
    EXPECT_EQ(sample.text, nullptr);
    EXPECT_EQ(heap.allocations(), 0u);
    TestEverything_finalize(&sample);
}

TEST_F(SampleTest, AllocatesOptionalMembersWhenAsked)
{
    const HeapCheck heap;
    TestEverything sample;
    const DDS_TypeAllocationParams_t params = withOptionalMembers();
    ASSERT_TRUE(TestEverything_initialize_w_params(&sample, &params));
    ASSERT_NE(sample.maybe_number, nullptr);
    EXPECT_EQ(*sample.maybe_number, 0);
    ASSERT_NE(sample.maybe_point, nullptr);
    EXPECT_EQ(sample.maybe_point->y, 0);
    EXPECT_STREQ(sample.maybe_text, "");
    ASSERT_NE(sample.maybe_longs, nullptr);
    EXPECT_EQ(DDS_LongSeq_get_length(sample.maybe_longs), 0);

    TestEverything_finalize_optional_members(&sample, DDS_BOOLEAN_TRUE);
    EXPECT_EQ(sample.maybe_number, nullptr);
    EXPECT_EQ(sample.maybe_text, nullptr);
    EXPECT_EQ(sample.maybe_longs, nullptr);
    EXPECT_STREQ(sample.name, ""); // the others stay
    TestEverything_finalize(&sample);
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(SampleTest, FinalizesTheOptionalMembersOfElements)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    fill(*sample, false);
    ASSERT_NE(TestMutableSeq_get_reference(&sample->mutables, 0)->note, nullptr);
    ASSERT_NE(TestMutableSeq_get_reference(&sample->mutables, 0)->maybe, nullptr);
    TestEverything_finalize_optional_members(&sample, DDS_BOOLEAN_FALSE);
    EXPECT_EQ(TestMutableSeq_get_reference(&sample->mutables, 0)->note, nullptr);
    EXPECT_EQ(TestMutableSeq_get_reference(&sample->mutables, 0)->maybe, nullptr);
    EXPECT_EQ(TestMutableSeq_get_length(&sample->mutables), 2);
}

TEST_F(SampleTest, FinalizingKeepsOptionalMembersWhenToldSo)
{
    TestMutable sample;
    const DDS_TypeAllocationParams_t params = withOptionalMembers();
    ASSERT_TRUE(TestMutable_initialize_w_params(&sample, &params));
    DDS_TypeDeallocationParams_t keep = DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT;
    keep.delete_optional_members = DDS_BOOLEAN_FALSE;
    TestMutable_finalize_w_params(&sample, &keep);
    EXPECT_EQ(sample.name, nullptr);
    EXPECT_NE(sample.note, nullptr);
    EXPECT_NE(sample.maybe, nullptr);
    TestMutable_finalize(&sample);
    EXPECT_EQ(sample.note, nullptr);
}

TEST_F(SampleTest, FinalizingTwiceOrNothingDoesNoHarm)
{
    TestEverything sample;
    ASSERT_TRUE(TestEverything_initialize(&sample));
    fill(sample, false);
    EXPECT_TRUE(TestEverything_finalize_w_return(&sample));
    TestEverything_finalize(&sample);
    TestEverything_finalize_ex(&sample, DDS_BOOLEAN_FALSE);
    TestEverything_finalize(nullptr);
    TestEverything_finalize_w_params(&sample, nullptr);
    TestEverything_finalize_optional_members(nullptr, DDS_BOOLEAN_TRUE);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(SampleTest, FinalizingForgetsALoan)
{
    DDS_Octet octets[] = {1, 2};
    TestMutable sample;
    ASSERT_TRUE(TestMutable_initialize(&sample));
    ASSERT_TRUE(DDS_OctetSeq_loan_contiguous(&sample.octets, octets, 2, 2));
    TestMutable_finalize(&sample);
    EXPECT_TRUE(DDS_OctetSeq_has_ownership(&sample.octets));
    EXPECT_EQ(DDS_OctetSeq_get_maximum(&sample.octets), 0);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(SampleTest, CopiesDeep)
{
    const HeapCheck heap;
    {
        ZUV_TEST_SAMPLE(TestEverything, sample);
        ZUV_TEST_SAMPLE(TestEverything, copy);
        fill(*sample, false);
        ASSERT_TRUE(TestEverything_copy(&copy, &sample));
        EXPECT_TRUE(ZUVSample_equals(sample.type(), &sample, &copy));
        EXPECT_NE(copy->text, sample->text);
        EXPECT_NE(copy->maybe_point, sample->maybe_point);
        EXPECT_NE(copy->octets._contiguous_buffer, sample->octets._contiguous_buffer);
        EXPECT_NE(copy->mutables._contiguous_buffer[0].note,
                  sample->mutables._contiguous_buffer[0].note);
    }
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(SampleTest, CopyingAgainAllocatesNothing)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    ZUV_TEST_SAMPLE(TestEverything, copy);
    fill(*sample, false);
    ASSERT_TRUE(TestEverything_copy(&copy, &sample));
    const HeapCheck heap;
    ASSERT_TRUE(TestEverything_copy(&copy, &sample));
    EXPECT_EQ(heap.allocations(), 0u);
    DDS_String_replace(&sample->text, "less");
    ASSERT_TRUE(TestEverything_copy(&copy, &sample));
    EXPECT_EQ(heap.allocations(), 0u);
    EXPECT_STREQ(copy->text, "less");
}

TEST_F(SampleTest, HandsALongTextOverInPlaceOfACopy)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    ZUV_TEST_SAMPLE(TestEverything, wanted);
    ZUV_TEST_SAMPLE(TestEverything, receiver);
    fill(*sample, false);
    DDS_String_replace(&sample->text, std::string(2000, 'n').c_str());
    DDS_String_replace(&receiver->text, std::string(2000, 'o').c_str());
    ASSERT_TRUE(TestEverything_copy(&wanted, &sample));
    const char *const sent = sample->text;
    const char *const had = receiver->text;
    ASSERT_TRUE(ZUVSample_handOver(sample.type(), &receiver, &sample));
    EXPECT_TRUE(ZUVSample_equals(sample.type(), &receiver, &wanted));
    EXPECT_EQ(receiver->text, sent);
    EXPECT_EQ(sample->text, had);
    EXPECT_TRUE(ZUVSample_handOver(sample.type(), &receiver, &receiver));
    EXPECT_TRUE(ZUVSample_equals(sample.type(), &receiver, &wanted));
    EXPECT_FALSE(ZUVSample_handOver(sample.type(), nullptr, &sample));
    EXPECT_FALSE(ZUVSample_handOver(sample.type(), &receiver, nullptr));
}

// Whoever has made room keeps it.
TEST_F(SampleTest, CopiesATextForWhichTheReceiverHasOtherRoom)
{
    for (const std::size_t length : {1500, 2500}) {
        ZUV_TEST_SAMPLE(TestEverything, sample);
        ZUV_TEST_SAMPLE(TestEverything, receiver);
        DDS_String_replace(&sample->text, std::string(2000, 'n').c_str());
        DDS_String_replace(&receiver->text, std::string(length, 'o').c_str());
        const char *const sent = sample->text;
        ASSERT_TRUE(ZUVSample_handOver(sample.type(), &receiver, &sample));
        EXPECT_EQ(sample->text == sent, length > 2000) << "of equal room are both afterwards";
        EXPECT_EQ(ZUVOsapiHeap_getBlockSize(sample->text), 2001U);
        EXPECT_EQ(ZUVOsapiHeap_getBlockSize(receiver->text),
                  std::max<std::size_t>(2000, length) + 1);
        EXPECT_EQ(receiver->text, std::string(2000, 'n'));
    }
}

TEST_F(SampleTest, HandingOverThatFailsLeavesTheSource)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    ZUV_TEST_SAMPLE(TestEverything, receiver);
    DDS_String_replace(&sample->text, std::string(2000, 'n').c_str());
    DDS_String_replace(&receiver->text, std::string(2000, 'o').c_str());
    DDS_String_replace(&sample->name, "9 letters");
    EXPECT_FALSE(ZUVSample_handOver(sample.type(), &receiver, &sample));
    EXPECT_TRUE(log_.holds({{&ZUV_LOG_ANY_FAILURE_s, "!copy text beyond its bound"}}));
    EXPECT_EQ(sample->text, std::string(2000, 'n'));
}

TEST_F(SampleTest, CopiesAbsenceAndNull)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    ZUV_TEST_SAMPLE(TestEverything, copy);
    fill(*copy, false);
    DDS_String_replace(&sample->text, nullptr);
    ASSERT_TRUE(TestEverything_copy(&copy, &sample));
    EXPECT_EQ(copy->text, nullptr);
    EXPECT_EQ(copy->maybe_number, nullptr);
    EXPECT_EQ(copy->maybe_text, nullptr);
    EXPECT_EQ(copy->maybe_longs, nullptr);
    EXPECT_TRUE(ZUVSample_equals(sample.type(), &sample, &copy));
}

TEST_F(SampleTest, CopyRefusesNullAndWhatIsBeyondABound)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    ZUV_TEST_SAMPLE(TestEverything, copy);
    EXPECT_FALSE(TestEverything_copy(nullptr, &sample));
    EXPECT_FALSE(TestEverything_copy(&copy, nullptr));
    EXPECT_TRUE(TestEverything_copy(&copy, &copy));
    log_.clear();
    DDS_String_replace(&sample->name, "9 letters");
    EXPECT_FALSE(TestEverything_copy(&copy, &sample));
    EXPECT_TRUE(log_.holds({{&ZUV_LOG_ANY_FAILURE_s, "!copy text beyond its bound"}}));
    DDS_String_replace(&sample->name, "");
    DDS_LongSeq_set_absolute_maximum(&sample->longs, 9);
    DDS_LongSeq_set_length(&sample->longs, 5);
    EXPECT_FALSE(TestEverything_copy(&copy, &sample));
    EXPECT_TRUE(log_.holds({{&ZUV_LOG_ANY_FAILURE_s, "!copy sequence beyond its bound"}}));
}

TEST_F(SampleTest, CopiesIntoASampleOfZeros)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    fill(*sample, false);
    TestEverything copy;
    std::memset(&copy, 0, sizeof(copy));
    ASSERT_TRUE(TestEverything_copy(&copy, &sample));
    EXPECT_TRUE(ZUVSample_equals(sample.type(), &sample, &copy));
    EXPECT_EQ(copy.longs._absolute_maximum, 4u);
    TestEverything_finalize(&copy);
}

TEST_F(SampleTest, CopiesTheKeyAlone)
{
    ZUV_TEST_SAMPLE(TestTextKey, sample);
    ZUV_TEST_SAMPLE(TestTextKey, copy);
    sample->first = 1;
    sample->value = 2;
    DDS_String_replace(&sample->second, "key");
    ASSERT_TRUE(TestTextKeyPlugin_instance_to_key(nullptr, &copy, &sample));
    EXPECT_EQ(copy->first, 1);
    EXPECT_EQ(copy->value, 0);
    EXPECT_STREQ(copy->second, "key");
    sample->first = 9;
    ASSERT_TRUE(TestTextKeyPlugin_key_to_instance(nullptr, &sample, &copy));
    EXPECT_EQ(sample->first, 1);
    EXPECT_EQ(sample->value, 2);
}

TEST_F(SampleTest, TellsEverySingleDifference)
{
    using Change = void (*)(TestEverything &);
    const Change changes[] = {
        [](TestEverything &s) { s.flag = 0; },
        [](TestEverything &s) { s.precise = 1; },
        [](TestEverything &s) { s.color = TestColor_BLUE; },
        [](TestEverything &s) { DDS_String_replace(&s.name, "other"); },
        [](TestEverything &s) { DDS_String_replace(&s.text, nullptr); },
        [](TestEverything &s) { s.point.y = 0; },
        [](TestEverything &s) { s.inner.a = 0; },
        [](TestEverything &s) { *s.maybe_number = 0; },
        [](TestEverything &s) { s.maybe_point->x = 0; },
        [](TestEverything &s) { DDS_String_replace(&s.maybe_text, nullptr); },
        [](TestEverything &s) { DDS_LongSeq_set_length(s.maybe_longs, 0); },
        [](TestEverything &s) { *DDS_OctetSeq_get_reference(&s.octets, 4) = 0; },
        [](TestEverything &s) { DDS_LongSeq_set_length(&s.longs, 3); },
        [](TestEverything &s) { *DDS_BooleanSeq_get_reference(&s.flags, 1) = 1; },
        [](TestEverything &s) { DDS_String_replace(TestNameSeq_get_reference(&s.names, 1), "x"); },
        [](TestEverything &s) { TestPointSeq_get_reference(&s.points, 1)->x = 0; },
        [](TestEverything &s) { *TestColorSeq_get_reference(&s.colors, 0) = TestColor_RED; },
        [](TestEverything &s) { TestMutableSeq_get_reference(&s.mutables, 1)->inner.b = 0; },
        [](TestEverything &s) { s.three[1] = 0; },
        [](TestEverything &s) { s.switches[0] = 1; },
        [](TestEverything &s) { s.pair[1] = TestColor_RED; },
        [](TestEverything &s) { s.corners[0].y = 1; },
    };
    ZUV_TEST_SAMPLE(TestEverything, first);
    fill(*first, false);
    for (const Change change : changes) {
        ZUV_TEST_SAMPLE(TestEverything, second);
        fill(*second, false);
        EXPECT_TRUE(ZUVSample_equals(first.type(), &first, &second));
        change(*second);
        EXPECT_FALSE(ZUVSample_equals(first.type(), &first, &second)) << &change - changes;
    }
    EXPECT_FALSE(ZUVSample_equals(first.type(), &first, nullptr));
    EXPECT_FALSE(ZUVSample_equals(first.type(), nullptr, &first));
}

TEST_F(SampleTest, RefusesNull)
{
    TestPoint point;
    EXPECT_FALSE(TestPoint_initialize(nullptr));
    EXPECT_FALSE(TestPoint_initialize_w_params(&point, nullptr));
    EXPECT_EQ(TestPointPluginSupport_create_data_w_params(nullptr), nullptr);
    EXPECT_EQ(log_.lines().size(), 3u);
    for (const LogLine &line : log_.lines()) {
        EXPECT_EQ(line.message, &ZUV_LOG_PRECONDITION_FAILURE_s);
    }
}

TEST_F(SampleTest, CreatesAndDestroysOnTheHeap)
{
    const HeapCheck heap;
    const DDS_TypeAllocationParams_t params = withOptionalMembers();
    TestMutable *samples[] = {
        TestMutablePluginSupport_create_data(),
        TestMutablePluginSupport_create_dataI(),
        TestMutablePluginSupport_create_data_ex(DDS_BOOLEAN_FALSE),
        TestMutablePluginSupport_create_data_w_params(&params),
        TestMutablePluginSupport_create_key(),
        TestMutablePluginSupport_create_keyI(),
        TestMutablePluginSupport_create_key_ex(DDS_BOOLEAN_TRUE),
    };
    for (TestMutable *sample : samples) {
        ASSERT_NE(sample, nullptr);
        EXPECT_STREQ(sample->name, "");
        EXPECT_EQ(sample->note != nullptr, sample == samples[3]);
    }
    EXPECT_TRUE(TestMutablePluginSupport_copy_data(samples[0], samples[3]));
    EXPECT_STREQ(samples[0]->note, "");
    TestMutablePluginSupport_destroy_data(samples[0]);
    TestMutablePluginSupport_destroy_dataI(samples[1]);
    TestMutablePluginSupport_destroy_data_ex(samples[2], DDS_BOOLEAN_TRUE);
    TestMutablePluginSupport_destroy_data_w_params(samples[3],
                                                   &DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT);
    TestMutablePluginSupport_destroy_key(samples[4]);
    TestMutablePluginSupport_destroy_keyI(samples[5]);
    TestMutablePluginSupport_destroy_key_ex(samples[6], DDS_BOOLEAN_TRUE);
    TestMutablePluginSupport_destroy_data(nullptr);
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(SampleTest, WorksOnAliasesAndEnumerations)
{
    TestName name = nullptr;
    TestName copy = nullptr;
    ASSERT_TRUE(TestName_initialize(&name));
    ASSERT_TRUE(TestName_initialize(&copy));
    DDS_String_replace(&name, "alias");
    ASSERT_TRUE(TestName_copy(&copy, &name));
    EXPECT_STREQ(copy, "alias");
    TestName_finalize(&name);
    TestName_finalize(&copy);
    EXPECT_EQ(copy, nullptr);

    TestColor color = TestColor_RED;
    ASSERT_TRUE(TestColor_initialize(&color));
    EXPECT_EQ(color, TestColor_GREEN);
    const TestColor blue = TestColor_BLUE;
    ASSERT_TRUE(TestColor_copy(&color, &blue));
    EXPECT_EQ(color, TestColor_BLUE);
    TestColor_finalize(&color);
}

TEST_F(SampleTest, SurvivesEveryFailedAllocation)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    fill(*sample, false);
    const DDS_TypeAllocationParams_t params = withOptionalMembers();
    const HeapCheck heap;
    for (const bool isOnward : {false, true}) {
        for (std::uint32_t count = 1;; ++count) {
            log_.clear();
            ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, isOnward);
            TestEverything *copy = TestEverythingPluginSupport_create_data_w_params(&params);
            const bool isCopied = copy != nullptr && TestEverything_copy(copy, &sample);
            ZUVOsapiFault_disarm();
            const bool isInjected = ZUVOsapiFault_getInjectedCount() > 0;
            EXPECT_EQ(isCopied, !isInjected);
            EXPECT_EQ(log_.lines().empty(), !isInjected);
            if (copy != nullptr) {
                EXPECT_TRUE(TestEverything_copy(copy, &sample));
                EXPECT_TRUE(ZUVSample_equals(sample.type(), &sample, copy));
            }
            TestEverythingPluginSupport_destroy_data(copy);
            EXPECT_TRUE(heap.isBalanced());
            if (!isInjected) {
                break;
            }
        }
    }
}

TEST_F(SampleTest, AFailedInitializationLeavesZeros)
{
    TestEverything sample;
    std::memset(&sample, 0xa5, sizeof(sample));
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 2, 0);
    EXPECT_FALSE(TestEverything_initialize(&sample));
    ZUVOsapiFault_disarm();
    TestEverything zeros;
    std::memset(&zeros, 0, sizeof(zeros));
    EXPECT_EQ(std::memcmp(&sample, &zeros, sizeof(sample)), 0);
}
