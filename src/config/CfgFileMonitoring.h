/* The settings "monitoring" of a service: what it publishes about itself. They start nothing.
 *
 * A record is zeros or was initialized. Operations return 1 or the record, and 0 or NULL after a report. No argument
 * may be NULL unless it says so. */
#ifndef ZUV_CONFIG_CFG_FILE_MONITORING_H
#define ZUV_CONFIG_CFG_FILE_MONITORING_H

#include "config/EntityMonitoring.h"
#include "platform/dds/Qos.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct BRELCfgFileMonitoring {
    DDS_Boolean enabled;
    DDS_Boolean _enabledPresent; /* the section says whether it is enabled */
    DDS_Long domainId;
    DDS_Duration_t publishStatusPeriod;
    DDS_Duration_t statsSamplingPeriod;
    DDS_Boolean ignoreInitializationFailure;
    BRELCfgFileMonitoringStatistics statistics;
    char *sharedParticipantRef; /* owned; no document gives it */
    DDS_DomainParticipantQos participantQos;
    DDS_PublisherQos publisherQos;
    ZUVXMLUTILSObject *xmlMonitoring; /* the section, borrowed; NULL without one */
} BRELCfgFileMonitoring;

/* Make raw memory a record with the default values. On failure it is finalized. */
int BRELCfgFileMonitoring_initialize(BRELCfgFileMonitoring *self);

/* Take over what the section says; what it does not mention stays. */
int BRELCfgFileMonitoring_parse(BRELCfgFileMonitoring *self, ZUVXMLUTILSObject *xmlMonitoring);

/* Deep copy of the settings, but not of `_enabledPresent`, `sharedParticipantRef` and `xmlMonitoring`. */
BRELCfgFileMonitoring *BRELCfgFileMonitoring_copy(BRELCfgFileMonitoring *self,
                                                  const BRELCfgFileMonitoring *src);

/* Release what the record owns. Twice does no harm. */
void BRELCfgFileMonitoring_finalize(BRELCfgFileMonitoring *self);

/* Let an entity have the service's settings where its element does not state its own. One that states both its period of
 * publication and its statistics keeps its own period of sampling, stated or not. */
void BRELCfgFileMonitoring_configureEntityMonitoring(const BRELCfgFileMonitoring *self,
                                                     BRELCfgFileEntityMonitoring *entityMonitoring);

/* Store what the section says of the writer of the topic `topicFilter`, which may be NULL. Without a section, or when it
 * says nothing, `qos`, a valid record, stays as it is. */
int BRELCfgFileMonitoring_getDataWriterQos(const BRELCfgFileMonitoring *self,
                                           DDS_DataWriterQos *qos, const char *topicFilter);

#ifdef __cplusplus
}
#endif

#endif
