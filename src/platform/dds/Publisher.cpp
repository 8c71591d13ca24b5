#include "platform/dds/Publisher.h"

#include <fastdds/dds/publisher/DataWriter.hpp>
#include <fastdds/dds/publisher/DataWriterListener.hpp>
#include <fastdds/dds/publisher/Publisher.hpp>
#include <fastdds/dds/publisher/qos/DataWriterQos.hpp>

#include "EndpointGroup.hpp"
#include "QosMapping.hpp"
#include "SampleStore.hpp"
#include "WriterAdapter.hpp"

namespace fast = eprosima::fastdds::dds;
using zuv::dds::heapDelete;
using zuv::dds::toOurs;

namespace
{

struct Writers {
    using Group = DDS_Publisher;
    using Endpoint = DDS_DataWriter;
    using Topic = DDS_Topic;
    using Qos = DDS_DataWriterQos;
    using Listener = DDS_DataWriterListener;
    using Adapter = zuv::dds::WriterAdapter;
    static constexpr const char *kName = "writer";
    static constexpr const char *kStranger = "writer of another publisher";
    static constexpr const char *kContained = "publisher's contained entities";
    static constexpr const char *kTag = "DDS DataWriter";
    static constexpr const char *kCreateFault = "dds.create_datawriter";
    static constexpr auto kList = &DDS_Publisher::writers;
    static constexpr auto kGroup = &DDS_DataWriter::publisher;
    static constexpr auto getDefault = DDS_DataWriterQos_get_defaultI;
    static constexpr auto destroy = zuv::dds::destroyWriter;

    static bool isDefault(const Qos *qos) { return qos == &DDS_DATAWRITER_QOS_DEFAULT; }
    static auto makeStore(DDS_DataWriter &writer)
    {
        return zuv::dds::SampleStore::make(writer.topic->type, ZUV_TYPE_ENDPOINT_WRITER,
                                           DDS_LENGTH_UNLIMITED);
    }
    static fast::DataWriter *create(DDS_DataWriter &writer)
    {
        fast::DataWriterQos qos = fast::DATAWRITER_QOS_DEFAULT;
        zuv::dds::mapQos(writer.qos.value, writer.topic->type->hasKey(), qos);
        return writer.publisher->fast->create_datawriter(writer.topic->fast, qos,
                                                         writer.adapter->fastListener());
    }
};

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
    return zuv::dds::createEndpoint<Writers>(__func__, self, topic, qos, listener, mask);
}

DDS_ReturnCode_t DDS_Publisher_delete_datawriter(DDS_Publisher *self, DDS_DataWriter *writer)
{
    return zuv::dds::deleteEndpoint<Writers>(__func__, self, writer);
}

DDS_ReturnCode_t DDS_Publisher_delete_contained_entities(DDS_Publisher *self)
{
    return zuv::dds::deleteEndpoints<Writers>(__func__, self);
}
