#include "platform/ddsxml/XmlQos.h"

#include <cstring>

#include "platform/ddsxml/QosPrinter.hpp"
#include "platform/ddsxml/XmlLog.hpp"
#include "platform/ddsxml/XmlObject.hpp"
#include "platform/osapi/Heap.h"

namespace
{

void *recordOf(ZUVXMLObject *self, const zuv::dds::QosRecord &table)
{
    if (ZUV_DDSXML_IS_NULL(self) || self->qos == nullptr || &self->qos->table() != &table) {
        return nullptr;
    }
    return self->qos->record();
}

char *toString(const void *qos, const zuv::dds::QosRecord &table)
{
    if (ZUV_DDSXML_IS_NULL(qos)) {
        return nullptr;
    }
    return zuv::xmlutils::withMemory<char *>(
        nullptr, [&] { ZUV_DDSXML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "print QoS: out of memory"); },
        [&] {
            const zuv::xmlutils::HeapString text = zuv::ddsxml::printQos(table, qos);
            char *const copy = zuv::xmlutils::HeapAllocator<char>().allocate(text.size() + 1);
            std::memcpy(copy, text.c_str(), text.size() + 1);
            return copy;
        });
}

} // namespace

#define DEFINE(ELEMENT, NAME)                                                                      \
    DDS_##NAME *DDS_XML##ELEMENT##_get_dds_qos(ZUVXMLObject *self)                                 \
    {                                                                                              \
        return static_cast<DDS_##NAME *>(recordOf(self, zuv::dds::k##NAME##Record));               \
    }                                                                                              \
    char *DDS_XML##ELEMENT##_to_string(const DDS_##NAME *qos)                                      \
    {                                                                                              \
        return toString(qos, zuv::dds::k##NAME##Record);                                           \
    }

extern "C" {

DEFINE(ParticipantQos, DomainParticipantQos)
DEFINE(TopicQos, TopicQos)
DEFINE(PublisherQos, PublisherQos)
DEFINE(SubscriberQos, SubscriberQos)
DEFINE(DataWriterQos, DataWriterQos)
DEFINE(DataReaderQos, DataReaderQos)
}

#undef DEFINE
