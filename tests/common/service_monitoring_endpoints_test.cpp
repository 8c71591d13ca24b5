// Resources on a topic: what one is an instance of.
#include <chrono>
#include <cstring>
#include <thread>

#include <gtest/gtest.h>

#include "common/ServiceMonitoringSupport.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/dds/Publisher.h"
#include "platform/dds/Subscriber.h"
#include "platform/dds/Topic.h"
#include "support/Loopback.h"

namespace
{

using KeyedResource = ZUV_Service_Monitoring_KeyedResource;

class ResourceTopic : public testing::Test
{
protected:
    void SetUp() override
    {
        factory_ = DDS_DomainParticipantFactory_get_instance();
        participant_ = DDS_DomainParticipantFactory_create_participant(
            factory_, zuv_test::loopbackDomainId(), &DDS_PARTICIPANT_QOS_DEFAULT, nullptr,
            DDS_STATUS_MASK_NONE);
        ASSERT_NE(participant_, nullptr);
        const char *const typeName =
            ZUV_Service_Monitoring_KeyedResourceTypeSupport_get_type_name();
        ASSERT_EQ(
            ZUV_Service_Monitoring_KeyedResourceTypeSupport_register_type(participant_, typeName),
            DDS_RETCODE_OK);
        DDS_Topic *const topic = DDS_DomainParticipant_create_topic(
            participant_, "zuv/service/monitoring/test", typeName, &DDS_TOPIC_QOS_DEFAULT, nullptr,
            DDS_STATUS_MASK_NONE);
        ASSERT_NE(topic, nullptr);
        makeEndpoints(topic);
        ASSERT_NE(writer_, nullptr);
        ASSERT_NE(reader_, nullptr);
    }

    void TearDown() override
    {
        EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant_), DDS_RETCODE_OK);
        EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory_, participant_),
                  DDS_RETCODE_OK);
    }

    void makeEndpoints(DDS_Topic *topic)
    {
        DDS_DataWriterQos writerQos = {};
        ASSERT_EQ(DDS_DomainParticipant_get_default_datawriter_qos(participant_, &writerQos),
                  DDS_RETCODE_OK);
        writerQos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
        writerQos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
        writer_ =
            ZUV_Service_Monitoring_KeyedResourceDataWriter_narrow(DDS_Publisher_create_datawriter(
                DDS_DomainParticipant_get_implicit_publisher(participant_), topic, &writerQos,
                nullptr, DDS_STATUS_MASK_NONE));
        DDS_DataWriterQos_finalize(&writerQos);

        DDS_DataReaderQos readerQos = {};
        ASSERT_EQ(DDS_DomainParticipant_get_default_datareader_qos(participant_, &readerQos),
                  DDS_RETCODE_OK);
        readerQos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
        readerQos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
        readerQos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
        reader_ =
            ZUV_Service_Monitoring_KeyedResourceDataReader_narrow(DDS_Subscriber_create_datareader(
                DDS_DomainParticipant_get_implicit_subscriber(participant_),
                DDS_Topic_as_topicdescription(topic), &readerQos, nullptr, DDS_STATUS_MASK_NONE));
        DDS_DataReaderQos_finalize(&readerQos);
    }

    void write(DDS_Octet object, DDS_Octet owner)
    {
        KeyedResource resource;
        ASSERT_TRUE(ZUV_Service_Monitoring_KeyedResource_initialize(&resource));
        std::memset(resource.object_guid.value, object, sizeof(resource.object_guid.value));
        std::memset(resource.owner_guid.value, owner, sizeof(resource.owner_guid.value));
        EXPECT_EQ(ZUV_Service_Monitoring_KeyedResourceDataWriter_write(writer_, &resource,
                                                                       &DDS_HANDLE_NIL),
                  DDS_RETCODE_OK);
        ZUV_Service_Monitoring_KeyedResource_finalize(&resource);
    }

    DDS_SampleInfo takeNext(KeyedResource &resource)
    {
        DDS_SampleInfo info = DDS_SAMPLEINFO_DEFAULT;
        for (int round = 0; round < 1000; ++round) {
            if (ZUV_Service_Monitoring_KeyedResourceDataReader_take_next_sample(
                    reader_, &resource, &info) == DDS_RETCODE_OK) {
                return info;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        ADD_FAILURE() << "no sample came";
        return info;
    }

    DDS_DomainParticipantFactory *factory_ = nullptr;
    DDS_DomainParticipant *participant_ = nullptr;
    ZUV_Service_Monitoring_KeyedResourceDataWriter *writer_ = nullptr;
    ZUV_Service_Monitoring_KeyedResourceDataReader *reader_ = nullptr;
};

TEST_F(ResourceTopic, hasOneInstanceForAnObjectWhoeverOwnsIt)
{
    write(1, 10);
    write(1, 20);
    write(2, 10);
    KeyedResource first;
    KeyedResource second;
    KeyedResource third;
    for (KeyedResource *const resource : {&first, &second, &third}) {
        ASSERT_TRUE(ZUV_Service_Monitoring_KeyedResource_initialize(resource));
    }
    const DDS_SampleInfo infos[] = {takeNext(first), takeNext(second), takeNext(third)};
    EXPECT_EQ(first.owner_guid.value[0], 10);
    EXPECT_EQ(second.owner_guid.value[0], 20);
    EXPECT_EQ(third.object_guid.value[15], 2);
    EXPECT_TRUE(DDS_InstanceHandle_equals(&infos[0].instance_handle, &infos[1].instance_handle));
    EXPECT_FALSE(DDS_InstanceHandle_equals(&infos[0].instance_handle, &infos[2].instance_handle));
}

} // namespace
