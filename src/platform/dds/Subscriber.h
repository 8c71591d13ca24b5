/* Subscribers: the factories of readers (OMG DDS 1.4, 2.2.2.5.2). */
#ifndef ZUV_PLATFORM_DDS_SUBSCRIBER_H
#define ZUV_PLATFORM_DDS_SUBSCRIBER_H

#include "platform/dds/DataReader.h"
#include "platform/dds/Entity.h"
#include "platform/dds/Qos.h"

#ifdef __cplusplus
extern "C" {
#endif

DDS_Entity *DDS_Subscriber_as_entity(DDS_Subscriber *self);
DDS_DomainParticipant *DDS_Subscriber_get_participant(DDS_Subscriber *self);
DDS_ReturnCode_t DDS_Subscriber_get_qos(DDS_Subscriber *self, DDS_SubscriberQos *qos);

/* A reader of a topic or filtered topic. `qos` is copied; &DDS_DATAREADER_QOS_DEFAULT stands for the default.
 * `listener`, if not NULL, is copied and called for the statuses of `mask`. The reader comes enabled if the
 * subscriber is and its entity factory policy says so. NULL, after a log line, on failure. */
DDS_DataReader *DDS_Subscriber_create_datareader(DDS_Subscriber *self, DDS_TopicDescription *topic,
                                                 const DDS_DataReaderQos *qos,
                                                 const DDS_DataReaderListener *listener,
                                                 DDS_StatusMask mask);

/* DDS_RETCODE_PRECONDITION_NOT_MET when the reader is another subscriber's, or its samples are on loan. No
 * callback of its listener runs any more when the call returns. */
DDS_ReturnCode_t DDS_Subscriber_delete_datareader(DDS_Subscriber *self, DDS_DataReader *reader);

/* Delete all readers of the subscriber. DDS_RETCODE_PRECONDITION_NOT_MET when samples of one are on loan: that
 * one and those not yet reached stay. */
DDS_ReturnCode_t DDS_Subscriber_delete_contained_entities(DDS_Subscriber *self);

#ifdef __cplusplus
}
#endif

#endif
