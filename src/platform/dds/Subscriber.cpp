#include "platform/dds/Subscriber.h"

#include <fastdds/dds/subscriber/DataReader.hpp>
#include <fastdds/dds/subscriber/DataReaderListener.hpp>
#include <fastdds/dds/subscriber/Subscriber.hpp>
#include <fastdds/dds/subscriber/qos/DataReaderQos.hpp>
#include <fastdds/dds/topic/ContentFilteredTopic.hpp>
#include <fastdds/dds/topic/Topic.hpp>

#include "EndpointGroup.hpp"
#include "QosMapping.hpp"
#include "ReaderAdapter.hpp"
#include "SampleStore.hpp"

namespace fast = eprosima::fastdds::dds;
using zuv::dds::heapDelete;
using zuv::dds::toOurs;

namespace
{

fast::TopicDescription *fastDescription(DDS_TopicDescription &topic)
{
    if (DDS_ContentFilteredTopic *const filtered = topic.asFiltered()) {
        return filtered->fast;
    }
    return topic.asTopic()->fast;
}

struct Readers {
    using Group = DDS_Subscriber;
    using Endpoint = DDS_DataReader;
    using Topic = DDS_TopicDescription;
    using Qos = DDS_DataReaderQos;
    using Listener = DDS_DataReaderListener;
    using Adapter = zuv::dds::ReaderAdapter;
    static constexpr const char *kName = "reader";
    static constexpr const char *kStranger = "reader of another subscriber";
    static constexpr const char *kContained = "subscriber's contained entities";
    static constexpr const char *kTag = "DDS DataReader";
    static constexpr const char *kCreateFault = "dds.create_datareader";
    static constexpr auto kList = &DDS_Subscriber::readers;
    static constexpr auto kGroup = &DDS_DataReader::subscriber;
    static constexpr auto getDefault = DDS_DataReaderQos_get_defaultI;
    static constexpr auto destroy = zuv::dds::destroyReader;

    static bool isDefault(const Qos *qos) { return qos == &DDS_DATAREADER_QOS_DEFAULT; }
    static auto makeStore(DDS_DataReader &reader)
    {
        return zuv::dds::SampleStore::make(reader.topic->type, ZUV_TYPE_ENDPOINT_READER,
                                           zuv::dds::poolBufferMaxSize(reader.qos.value.property));
    }
    static fast::DataReader *create(DDS_DataReader &reader)
    {
        zuv::dds::prepareReader(reader);
        fast::DataReaderQos qos = fast::DATAREADER_QOS_DEFAULT;
        zuv::dds::mapQos(reader.qos.value, reader.topic->type->hasKey(), qos);
        return reader.subscriber->fast->create_datareader(fastDescription(*reader.topic), qos,
                                                          reader.adapter->fastListener());
    }
};

} // namespace

namespace zuv::dds
{

DDS_ReturnCode_t destroyReader(DDS_DataReader *reader)
{
    DDS_ReturnCode_t code = DDS_RETCODE_PRECONDITION_NOT_MET;
    if (ZUV_OSAPI_FAULT("dds.delete_datareader")) {
        code = DDS_RETCODE_ERROR;
    } else if (!reader->store->hasLoansOut()) {
        code = toOurs(reader->subscriber->fast->delete_datareader(reader->fast));
    }
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "reader");
        return code;
    }
    useTopic(*reader->topic, -1);
    heapDelete(reader);
    return DDS_RETCODE_OK;
}

} // namespace zuv::dds

DDS_Entity *DDS_Subscriber_as_entity(DDS_Subscriber *self)
{
    return self;
}

DDS_DomainParticipant *DDS_Subscriber_get_participant(DDS_Subscriber *self)
{
    return ZUV_DDS_IS_NULL(self) ? nullptr : self->participant;
}

DDS_ReturnCode_t DDS_Subscriber_get_qos(DDS_Subscriber *self, DDS_SubscriberQos *qos)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(qos)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return DDS_SubscriberQos_copy(qos, &self->qos.value);
}

DDS_DataReader *DDS_Subscriber_create_datareader(DDS_Subscriber *self, DDS_TopicDescription *topic,
                                                 const DDS_DataReaderQos *qos,
                                                 const DDS_DataReaderListener *listener,
                                                 DDS_StatusMask mask)
{
    return zuv::dds::createEndpoint<Readers>(__func__, self, topic, qos, listener, mask);
}

DDS_ReturnCode_t DDS_Subscriber_delete_datareader(DDS_Subscriber *self, DDS_DataReader *reader)
{
    return zuv::dds::deleteEndpoint<Readers>(__func__, self, reader);
}

DDS_ReturnCode_t DDS_Subscriber_delete_contained_entities(DDS_Subscriber *self)
{
    return zuv::dds::deleteEndpoints<Readers>(__func__, self);
}
