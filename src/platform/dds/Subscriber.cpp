#include "platform/dds/Subscriber.h"

#include <algorithm>

#include <fastdds/dds/subscriber/DataReader.hpp>
#include <fastdds/dds/subscriber/DataReaderListener.hpp>
#include <fastdds/dds/subscriber/Subscriber.hpp>
#include <fastdds/dds/subscriber/qos/DataReaderQos.hpp>
#include <fastdds/dds/topic/ContentFilteredTopic.hpp>
#include <fastdds/dds/topic/Topic.hpp>

#include "Conversions.hpp"
#include "EntityImpl.hpp"
#include "QosMapping.hpp"
#include "ReaderAdapter.hpp"
#include "Report.hpp"
#include "SampleStore.hpp"
#include "platform/osapi/Fault.h"

namespace fast = eprosima::fastdds::dds;
using zuv::dds::guarded;
using zuv::dds::heapDelete;
using zuv::dds::heapNew;
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

DDS_DataReader *makeReader(DDS_Subscriber &subscriber, DDS_TopicDescription &topic,
                           const DDS_DataReaderQos &qos, const DDS_DataReaderListener *listener,
                           DDS_StatusMask mask)
{
    auto *const made = heapNew<DDS_DataReader>("DDS DataReader");
    if (made == nullptr) {
        return nullptr;
    }
    made->subscriber = &subscriber;
    made->factory = &subscriber;
    made->topic = &topic;
    made->adapter = std::make_unique<zuv::dds::ReaderAdapter>(*made, listener, mask);
    const DDS_ReturnCode_t code = &qos == &DDS_DATAREADER_QOS_DEFAULT
                                      ? DDS_DataReaderQos_get_defaultI(&made->qos.value)
                                      : made->qos.assign(qos);
    if (code == DDS_RETCODE_OK) {
        made->store =
            zuv::dds::SampleStore::make(topic.type, ZUV_TYPE_ENDPOINT_READER,
                                        zuv::dds::poolBufferMaxSize(made->qos.value.property));
    }
    if (made->store != nullptr) {
        zuv::dds::prepareReader(*made);
    }
    if (made->store != nullptr && !ZUV_OSAPI_FAULT("dds.create_datareader")) {
        fast::DataReaderQos fastQos = fast::DATAREADER_QOS_DEFAULT;
        zuv::dds::mapQos(made->qos.value, topic.type->hasKey(), fastQos);
        made->fast = subscriber.fast->create_datareader(fastDescription(topic), fastQos,
                                                        made->adapter->fastListener());
    }
    if (made->fast == nullptr) {
        heapDelete(made);
        return nullptr;
    }
    made->fastEntity = made->fast;
    made->handle = toOurs(made->fast->get_instance_handle());
    zuv::dds::useTopic(topic, 1);
    const std::lock_guard lock(subscriber.mutex);
    subscriber.readers.push_back(made);
    return made;
}

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
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(topic) || ZUV_DDS_IS_NULL(qos)) {
        return nullptr;
    }
    DDS_DataReader *made = nullptr;
    if (topic->participant != self->participant) {
        ZUV_DDS_REPORT(&DDS_LOG_BAD_PARAMETER_s, "topic");
    } else {
        made = guarded<DDS_DataReader *>("create reader", nullptr, [&] {
            return makeReader(*self, *topic, *qos, listener, mask);
        });
    }
    if (made == nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "reader");
    }
    return made;
}

DDS_ReturnCode_t DDS_Subscriber_delete_datareader(DDS_Subscriber *self, DDS_DataReader *reader)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(reader)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const std::lock_guard lock(self->mutex);
    const auto known = std::find(self->readers.begin(), self->readers.end(), reader);
    if (known == self->readers.end()) {
        ZUV_DDS_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "reader of another subscriber");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    const DDS_ReturnCode_t code = zuv::dds::destroyReader(reader);
    if (code == DDS_RETCODE_OK) {
        self->readers.erase(known);
    }
    return code;
}

DDS_ReturnCode_t DDS_Subscriber_delete_contained_entities(DDS_Subscriber *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const std::lock_guard lock(self->mutex);
    while (!self->readers.empty()) {
        const DDS_ReturnCode_t code = zuv::dds::destroyReader(self->readers.back());
        if (code != DDS_RETCODE_OK) {
            ZUV_DDS_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "subscriber's contained entities");
            return code;
        }
        self->readers.pop_back();
    }
    return DDS_RETCODE_OK;
}
