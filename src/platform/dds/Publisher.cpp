#include "platform/dds/Publisher.h"

#include <algorithm>

#include <fastdds/dds/publisher/DataWriter.hpp>
#include <fastdds/dds/publisher/DataWriterListener.hpp>
#include <fastdds/dds/publisher/Publisher.hpp>
#include <fastdds/dds/publisher/qos/DataWriterQos.hpp>

#include "Conversions.hpp"
#include "EntityImpl.hpp"
#include "QosMapping.hpp"
#include "Report.hpp"
#include "SampleStore.hpp"
#include "WriterAdapter.hpp"
#include "platform/osapi/Fault.h"

namespace fast = eprosima::fastdds::dds;
using zuv::dds::guarded;
using zuv::dds::heapDelete;
using zuv::dds::heapNew;
using zuv::dds::toOurs;

namespace
{

DDS_DataWriter *makeWriter(DDS_Publisher &publisher, DDS_Topic &topic, const DDS_DataWriterQos &qos,
                           const DDS_DataWriterListener *listener, DDS_StatusMask mask)
{
    auto *const made = heapNew<DDS_DataWriter>("DDS DataWriter");
    if (made == nullptr) {
        return nullptr;
    }
    made->publisher = &publisher;
    made->factory = &publisher;
    made->topic = &topic;
    made->adapter = std::make_unique<zuv::dds::WriterAdapter>(*made, listener, mask);
    const DDS_ReturnCode_t code = &qos == &DDS_DATAWRITER_QOS_DEFAULT
                                      ? DDS_DataWriterQos_get_defaultI(&made->qos.value)
                                      : made->qos.assign(qos);
    if (code == DDS_RETCODE_OK) {
        made->store =
            zuv::dds::SampleStore::make(topic.type, ZUV_TYPE_ENDPOINT_WRITER, DDS_LENGTH_UNLIMITED);
    }
    if (made->store != nullptr && !ZUV_OSAPI_FAULT("dds.create_datawriter")) {
        fast::DataWriterQos fastQos = fast::DATAWRITER_QOS_DEFAULT;
        zuv::dds::mapQos(made->qos.value, topic.type->hasKey(), fastQos);
        made->fast =
            publisher.fast->create_datawriter(topic.fast, fastQos, made->adapter->fastListener());
    }
    if (made->fast == nullptr) {
        heapDelete(made);
        return nullptr;
    }
    made->fastEntity = made->fast;
    made->handle = toOurs(made->fast->get_instance_handle());
    zuv::dds::useTopic(topic, 1);
    const std::lock_guard lock(publisher.mutex);
    publisher.writers.push_back(made);
    return made;
}

} // namespace

DDS_DataWriter::DDS_DataWriter() = default;
DDS_DataWriter::~DDS_DataWriter() = default;

namespace zuv::dds
{

DDS_ReturnCode_t destroyWriter(DDS_DataWriter *writer)
{
    DDS_ReturnCode_t code = DDS_RETCODE_ERROR;
    if (!ZUV_OSAPI_FAULT("dds.delete_datawriter")) {
        code = toOurs(writer->publisher->fast->delete_datawriter(writer->fast));
    }
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "writer");
        return code;
    }
    useTopic(*writer->topic, -1);
    heapDelete(writer);
    return DDS_RETCODE_OK;
}

} // namespace zuv::dds

DDS_Entity *DDS_Publisher_as_entity(DDS_Publisher *self)
{
    return self;
}

DDS_DomainParticipant *DDS_Publisher_get_participant(DDS_Publisher *self)
{
    return ZUV_DDS_IS_NULL(self) ? nullptr : self->participant;
}

DDS_ReturnCode_t DDS_Publisher_get_qos(DDS_Publisher *self, DDS_PublisherQos *qos)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(qos)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return DDS_PublisherQos_copy(qos, &self->qos.value);
}

DDS_DataWriter *DDS_Publisher_create_datawriter(DDS_Publisher *self, DDS_Topic *topic,
                                                const DDS_DataWriterQos *qos,
                                                const DDS_DataWriterListener *listener,
                                                DDS_StatusMask mask)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(topic) || ZUV_DDS_IS_NULL(qos)) {
        return nullptr;
    }
    DDS_DataWriter *made = nullptr;
    if (topic->participant != self->participant) {
        ZUV_DDS_REPORT(&DDS_LOG_BAD_PARAMETER_s, "topic");
    } else {
        made = guarded<DDS_DataWriter *>("create writer", nullptr, [&] {
            return makeWriter(*self, *topic, *qos, listener, mask);
        });
    }
    if (made == nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "writer");
    }
    return made;
}

DDS_ReturnCode_t DDS_Publisher_delete_datawriter(DDS_Publisher *self, DDS_DataWriter *writer)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(writer)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const std::lock_guard lock(self->mutex);
    const auto known = std::find(self->writers.begin(), self->writers.end(), writer);
    if (known == self->writers.end()) {
        ZUV_DDS_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "writer of another publisher");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    const DDS_ReturnCode_t code = zuv::dds::destroyWriter(writer);
    if (code == DDS_RETCODE_OK) {
        self->writers.erase(known);
    }
    return code;
}

DDS_ReturnCode_t DDS_Publisher_delete_contained_entities(DDS_Publisher *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const std::lock_guard lock(self->mutex);
    while (!self->writers.empty()) {
        const DDS_ReturnCode_t code = zuv::dds::destroyWriter(self->writers.back());
        if (code != DDS_RETCODE_OK) {
            ZUV_DDS_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "publisher's contained entities");
            return code;
        }
        self->writers.pop_back();
    }
    return DDS_RETCODE_OK;
}
