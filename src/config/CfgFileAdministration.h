/* The settings "administration" of a service: how it can be administered from afar. They start nothing.
 *
 * A record is zeros or was initialized. Operations return 1 or the record, and 0 or NULL after a report. No argument
 * may be NULL. */
#ifndef ZUV_CONFIG_CFG_FILE_ADMINISTRATION_H
#define ZUV_CONFIG_CFG_FILE_ADMINISTRATION_H

#include "platform/dds/Qos.h"
#include "platform/ddsxml/DistLogger.h"
#include "platform/xmlutils/Object.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The name under which the service shares the participant of its monitoring. */
#define BREL_MONITORING_SHARED_PARTICIPANT_NAME "zuv.brelservice.monitoring.participant"

/* Owns its texts, QoS records and options. */
typedef struct BRELCfgFileAdministration {
    DDS_Boolean enabled;
    DDS_Long domainId;
    char *savePath; /* where the configuration is saved, or NULL */
    DDS_Boolean autosaveOnUpdate;
    DDS_Long
        sampleBufferMinSize; /* octets; samples above get memory of their own while they are there */
    DDS_Boolean sampleBufferTrimToSize;
    char *requestTopicName; /* these four: NULL for the protocol's own */
    char *replyTopicName;
    char *requestTypeName;
    char *replyTypeName;
    char *sharedParticipantRef; /* the participant to share, or NULL for one of its own */
    DDS_Boolean reuseMonitoringParticipant;
    DDS_DomainParticipantQos participantQos;
    DDS_SubscriberQos subscriberQos;
    DDS_PublisherQos publisherQos;
    DDS_DataReaderQos dataReaderQos;
    DDS_DataWriterQos dataWriterQos;
    ZUV_DL_Options *distLogOptions; /* NULL without a child "distributed_logger" */
} BRELCfgFileAdministration;

/* Make raw memory a record with the default values. On failure it is finalized. */
int BRELCfgFileAdministration_initialize(BRELCfgFileAdministration *self);

/* Take over what the section says; what it does not mention stays. The QoS of reader and writer inherit what they do
 * not mention from the record, unless they name a base. After a failure the record has what stands before it. */
int BRELCfgFileAdministration_parse(BRELCfgFileAdministration *self,
                                    ZUVXMLUTILSObject *xmlAdministration);

/* Deep copy of all settings but `reuseMonitoringParticipant` and `distLogOptions`. After a failure the record has some
 * of them. */
BRELCfgFileAdministration *BRELCfgFileAdministration_copy(BRELCfgFileAdministration *self,
                                                          const BRELCfgFileAdministration *src);

/* Release what the record owns. Twice does no harm. */
void BRELCfgFileAdministration_finalize(BRELCfgFileAdministration *self);

#ifdef __cplusplus
}
#endif

#endif
