/* Publishers: the factories of writers (OMG DDS 1.4, 2.2.2.4.1). */
#ifndef ZUV_PLATFORM_DDS_PUBLISHER_H
#define ZUV_PLATFORM_DDS_PUBLISHER_H

#include "platform/dds/DataWriter.h"
#include "platform/dds/Entity.h"
#include "platform/dds/Qos.h"

#ifdef __cplusplus
extern "C" {
#endif

DDS_Entity *DDS_Publisher_as_entity(DDS_Publisher *self);
DDS_DomainParticipant *DDS_Publisher_get_participant(DDS_Publisher *self);
DDS_ReturnCode_t DDS_Publisher_get_qos(DDS_Publisher *self, DDS_PublisherQos *qos);

/* A writer of `topic`. `qos` is copied; &DDS_DATAWRITER_QOS_DEFAULT stands for the default. `listener`, if not
 * NULL, is copied and called for the statuses of `mask`. The writer comes enabled if the publisher is and its
 * entity factory policy says so. NULL, after a log line, on failure. */
DDS_DataWriter *DDS_Publisher_create_datawriter(DDS_Publisher *self, DDS_Topic *topic,
                                                const DDS_DataWriterQos *qos,
                                                const DDS_DataWriterListener *listener,
                                                DDS_StatusMask mask);

/* DDS_RETCODE_PRECONDITION_NOT_MET when the writer is another publisher's. No callback of its listener runs
 * any more when the call returns. */
DDS_ReturnCode_t DDS_Publisher_delete_datawriter(DDS_Publisher *self, DDS_DataWriter *writer);

/* Delete all writers of the publisher. */
DDS_ReturnCode_t DDS_Publisher_delete_contained_entities(DDS_Publisher *self);

#ifdef __cplusplus
}
#endif

#endif
