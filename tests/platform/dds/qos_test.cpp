#include <cstdint>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "QosValues.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/dds/Qos.h"
#include "platform/dds/QosTable.hpp"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/typesys/String.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

// All records, so that what holds for one is asked of each.
struct RecordOperations {
    const zuv::dds::QosRecord *table;
    DDS_ReturnCode_t (*initialize)(void *);
    DDS_ReturnCode_t (*getDefault)(void *);
    DDS_ReturnCode_t (*copy)(void *, const void *);
    DDS_ReturnCode_t (*finalize)(void *);
    DDS_Boolean (*equals)(const void *, const void *);
};

#define OPERATIONS(NAME)                                                                           \
    {                                                                                              \
        &zuv::dds::k##NAME##Record,                                                                \
            [](void *self) { return DDS_##NAME##_initialize(static_cast<DDS_##NAME *>(self)); },   \
            [](void *self) { return DDS_##NAME##_get_defaultI(static_cast<DDS_##NAME *>(self)); }, \
            [](void *self, const void *source) {                                                   \
                return DDS_##NAME##_copy(static_cast<DDS_##NAME *>(self),                          \
                                         static_cast<const DDS_##NAME *>(source));                 \
            },                                                                                     \
            [](void *self) { return DDS_##NAME##_finalize(static_cast<DDS_##NAME *>(self)); },     \
            [](const void *left, const void *right) {                                              \
                return DDS_##NAME##_equals(static_cast<const DDS_##NAME *>(left),                  \
                                           static_cast<const DDS_##NAME *>(right));                \
            }                                                                                      \
    }

const RecordOperations kRecords[] = {
    OPERATIONS(DomainParticipantQos), OPERATIONS(TopicQos),      OPERATIONS(PublisherQos),
    OPERATIONS(SubscriberQos),        OPERATIONS(DataWriterQos), OPERATIONS(DataReaderQos),
};

class EveryQos : public testing::TestWithParam<RecordOperations>
{
protected:
    // Memory of zeros for any record. (A std::max_align_t has padding, which nobody sets to zero.)
    using Record = std::vector<std::uint64_t>;

    Record make() const { return Record(zuv::dds::kMaxQosRecordSize / sizeof(std::uint64_t) + 1); }

    // Give one field a value that is not its default.
    static void change(void *record, const zuv::dds::QosMember &member,
                       const zuv::dds::QosField &field)
    {
        zuv_test::setField(record, member, field, zuv::dds::defaultNumberOf(member, field) ^ 1);
    }

    void changeAll(void *record) const
    {
        for (const zuv::dds::QosMember &member : GetParam().table->members) {
            for (const zuv::dds::QosField &field : member.policy->fields) {
                change(record, member, field);
            }
        }
    }

    const zuv_test::HeapCheck heap_;
};

INSTANTIATE_TEST_SUITE_P(Records, EveryQos, testing::ValuesIn(kRecords),
                         [](const auto &test) { return test.param.table->name; });

TEST_P(EveryQos, hasDefaultsThatAreEqualHoweverMade)
{
    Record one = make(), other = make();
    EXPECT_EQ(GetParam().initialize(one.data()), DDS_RETCODE_OK);
    EXPECT_EQ(GetParam().getDefault(other.data()), DDS_RETCODE_OK);
    EXPECT_TRUE(GetParam().equals(one.data(), other.data()));
}

TEST_P(EveryQos, differsInEachField)
{
    for (const zuv::dds::QosMember &member : GetParam().table->members) {
        for (const zuv::dds::QosField &field : member.policy->fields) {
            Record one = make(), other = make();
            GetParam().initialize(one.data());
            GetParam().initialize(other.data());
            change(other.data(), member, field);
            EXPECT_FALSE(GetParam().equals(one.data(), other.data()))
                << member.policy->tag << "." << field.tag;
            GetParam().finalize(other.data());
        }
    }
    EXPECT_TRUE(heap_.isBalanced());
}

TEST_P(EveryQos, copiesEachFieldDeeply)
{
    Record source = make(), copy = make();
    GetParam().initialize(source.data());
    changeAll(source.data());
    GetParam().initialize(copy.data());
    changeAll(copy.data()); // what it held is released
    EXPECT_EQ(GetParam().copy(copy.data(), source.data()), DDS_RETCODE_OK);
    EXPECT_TRUE(GetParam().equals(copy.data(), source.data()));
    EXPECT_EQ(GetParam().copy(copy.data(), copy.data()), DDS_RETCODE_OK);
    GetParam().finalize(source.data());
    EXPECT_FALSE(GetParam().equals(copy.data(), source.data()));
    GetParam().finalize(copy.data());
    EXPECT_EQ(GetParam().finalize(copy.data()), DDS_RETCODE_OK) << "twice does no harm";
    EXPECT_TRUE(heap_.isBalanced());
}

TEST_P(EveryQos, staysWholeWhenACopyRunsOutOfMemory)
{
    Record source = make(), before = make(), copy = make();
    GetParam().initialize(source.data());
    changeAll(source.data());
    GetParam().initialize(before.data());
    GetParam().initialize(copy.data());
    zuv_test::LogCapture log;
    bool isDone = false;
    for (unsigned count = 1; !isDone; ++count) {
        log.clear();
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
        const DDS_ReturnCode_t code = GetParam().copy(copy.data(), source.data());
        isDone = ZUVOsapiFault_getInjectedCount() == 0;
        ZUVOsapiFault_disarm();
        if (isDone) {
            EXPECT_EQ(code, DDS_RETCODE_OK);
        } else {
            EXPECT_EQ(code, DDS_RETCODE_OUT_OF_RESOURCES);
            EXPECT_TRUE(GetParam().equals(copy.data(), before.data()));
            EXPECT_FALSE(log.isEmpty());
        }
    }
    EXPECT_TRUE(GetParam().equals(copy.data(), source.data()));
    GetParam().finalize(source.data());
    GetParam().finalize(copy.data());
    EXPECT_TRUE(heap_.isBalanced());
}

TEST_P(EveryQos, reportsWhatIsMissing)
{
    zuv_test::LogCapture log;
    Record record = make();
    EXPECT_EQ(GetParam().initialize(nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(GetParam().getDefault(nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(GetParam().copy(record.data(), nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(GetParam().finalize(nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(log.lines().size(), 4U);
    EXPECT_EQ(log.lines().front().message, &DDS_LOG_BAD_PARAMETER_s);
    EXPECT_FALSE(GetParam().equals(record.data(), nullptr));
    EXPECT_TRUE(GetParam().equals(nullptr, nullptr));
}

TEST_P(EveryQos, failsOnceAskedTo)
{
    zuv_test::LogCapture log;
    Record record = make();
    ZUVOsapiFault_arm("dds.qos_default", 1, 0);
    EXPECT_EQ(GetParam().initialize(record.data()), DDS_RETCODE_OUT_OF_RESOURCES);
    ZUVOsapiFault_arm("dds.qos_default", 1, 0);
    EXPECT_EQ(GetParam().getDefault(record.data()), DDS_RETCODE_OUT_OF_RESOURCES);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(log.lines().size(), 2U);
    EXPECT_EQ(GetParam().finalize(record.data()), DDS_RETCODE_OK);
}

TEST(QosDefaults, areThoseOfTheStandard)
{
    DDS_DataWriterQos writer;
    DDS_DataReaderQos reader;
    ASSERT_EQ(DDS_DataWriterQos_initialize(&writer), DDS_RETCODE_OK);
    ASSERT_EQ(DDS_DataReaderQos_initialize(&reader), DDS_RETCODE_OK);
    EXPECT_EQ(writer.durability.kind, DDS_VOLATILE_DURABILITY_QOS);
    EXPECT_EQ(writer.reliability.kind, DDS_RELIABLE_RELIABILITY_QOS);
    EXPECT_EQ(writer.reliability.max_blocking_time.nanosec, 100000000U);
    EXPECT_EQ(reader.reliability.kind, DDS_BEST_EFFORT_RELIABILITY_QOS);
    EXPECT_EQ(reader.history.kind, DDS_KEEP_LAST_HISTORY_QOS);
    EXPECT_EQ(reader.history.depth, 1);
    EXPECT_EQ(reader.resource_limits.max_samples, DDS_LENGTH_UNLIMITED);
    EXPECT_TRUE(DDS_Duration_is_infinite(&reader.deadline.period));
    EXPECT_TRUE(DDS_Duration_is_infinite(&writer.lifespan.duration));
    EXPECT_TRUE(writer.writer_data_lifecycle.autodispose_unregistered_instances);
    EXPECT_EQ(writer.protocol.rtps_reliable_writer.max_send_window_size, DDS_LENGTH_UNLIMITED);
    DDS_PublisherQos publisher;
    ASSERT_EQ(DDS_PublisherQos_initialize(&publisher), DDS_RETCODE_OK);
    EXPECT_TRUE(publisher.entity_factory.autoenable_created_entities);
}

class Properties : public testing::Test
{
protected:
    ~Properties() override
    {
        DDS_DataReaderQos_finalize(&qos_);
        EXPECT_TRUE(heap_.isBalanced());
    }

    const DDS_Property_t *find(const char *name)
    {
        return DDS_PropertyQosPolicyHelper_lookup_property(&qos_.property, name);
    }

    const zuv_test::HeapCheck heap_;
    zuv_test::LogCapture log_;
    DDS_DataReaderQos qos_ = {};
};

TEST_F(Properties, areAddedOnceAndReplaced)
{
    EXPECT_EQ(DDS_PropertyQosPolicyHelper_assert_property(&qos_.property, "a", "1", 0),
              DDS_RETCODE_OK);
    EXPECT_EQ(DDS_PropertyQosPolicyHelper_assert_property(&qos_.property, "b", "2", 1),
              DDS_RETCODE_OK);
    EXPECT_EQ(DDS_PropertyQosPolicyHelper_assert_property(&qos_.property, "a", "3", 1),
              DDS_RETCODE_OK);
    EXPECT_EQ(DDS_PropertySeq_get_length(&qos_.property.value), 2);
    ASSERT_NE(find("a"), nullptr);
    EXPECT_STREQ(find("a")->value, "3");
    EXPECT_TRUE(find("a")->propagate);
    EXPECT_EQ(find("c"), nullptr);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(Properties, areRemovedFromAnyPlace)
{
    for (const char *name : {"a", "b", "c"}) {
        DDS_PropertyQosPolicyHelper_assert_property(&qos_.property, name, name, 0);
    }
    EXPECT_EQ(DDS_PropertyQosPolicyHelper_remove_property(&qos_.property, "a"), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_PropertyQosPolicyHelper_remove_property(&qos_.property, "a"),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    ASSERT_EQ(DDS_PropertySeq_get_length(&qos_.property.value), 2);
    EXPECT_STREQ(find("b")->value, "b");
    EXPECT_STREQ(find("c")->value, "c");
    EXPECT_EQ(DDS_PropertyQosPolicyHelper_remove_property(&qos_.property, "c"), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_PropertyQosPolicyHelper_assert_property(&qos_.property, "d", "d", 0),
              DDS_RETCODE_OK);
    EXPECT_STREQ(find("d")->value, "d");
}

TEST_F(Properties, reportWhatIsMissing)
{
    EXPECT_EQ(DDS_PropertyQosPolicyHelper_assert_property(nullptr, "a", "b", 0),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_PropertyQosPolicyHelper_assert_property(&qos_.property, nullptr, "b", 0),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_PropertyQosPolicyHelper_assert_property(&qos_.property, "a", nullptr, 0),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_PropertyQosPolicyHelper_remove_property(&qos_.property, nullptr),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(log_.lines().size(), 4U);
    EXPECT_EQ(find(nullptr), nullptr);
}

TEST_F(Properties, areAsBeforeWithoutMemory)
{
    DDS_PropertyQosPolicyHelper_assert_property(&qos_.property, "a", "1", 0);
    bool isDone = false;
    for (unsigned count = 1; !isDone; ++count) {
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
        const DDS_ReturnCode_t code =
            DDS_PropertyQosPolicyHelper_assert_property(&qos_.property, "b", "2", 0);
        isDone = ZUVOsapiFault_getInjectedCount() == 0;
        ZUVOsapiFault_disarm();
        EXPECT_EQ(code, isDone ? DDS_RETCODE_OK : DDS_RETCODE_OUT_OF_RESOURCES);
        EXPECT_EQ(DDS_PropertySeq_get_length(&qos_.property.value), isDone ? 2 : 1);
    }
}

} // namespace
