/* QoS of the entities: one record for each kind of entity, and its operations.
 *
 * A record of zeros is valid and empty; the defaults are another matter, and come with ..._initialize or
 * ..._get_defaultI. Defaults are those of OMG DDS 1.4, with these in place of the "unspecified" ones: a
 * writer is reliable and volatile, a reader best effort; a history keeps the last sample; a write waits at
 * most 100 ms for room; nothing is limited.
 *
 * The records own their texts and sequences. No operation locks; a record is used by one thread at a time. */
#ifndef ZUV_PLATFORM_DDS_QOS_H
#define ZUV_PLATFORM_DDS_QOS_H

#include "platform/dds/QosPolicies.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The operations of a record Q:
 *
 * Q_initialize     make raw memory a record with the default values.
 * Q_get_defaultI   give a valid record the default values.
 * Q_copy           make `self` a deep copy of `source`; `self` must be a valid record.
 * Q_finalize       release what a valid record owns and leave it empty. Twice does no harm.
 * Q_equals         1 if all fields are equal, texts and sequences by content.
 *
 * DDS_RETCODE_BAD_PARAMETER, after a log line, for a NULL argument; DDS_RETCODE_OUT_OF_RESOURCES when there
 * is no memory: after a failed copy or get_defaultI the record is as before, after a failed initialize it is
 * empty. Q_equals is 0 when just one argument is NULL. */
#define DDS_QOS_DECLARE(Q)                                                                         \
    DDS_ReturnCode_t Q##_initialize(Q *self);                                                      \
    DDS_ReturnCode_t Q##_get_defaultI(Q *self);                                                    \
    DDS_ReturnCode_t Q##_copy(Q *self, const Q *source);                                           \
    DDS_ReturnCode_t Q##_finalize(Q *self);                                                        \
    DDS_Boolean Q##_equals(const Q *left, const Q *right);

typedef struct DDS_DomainParticipantQos {
    DDS_UserDataQosPolicy user_data;
    DDS_EntityFactoryQosPolicy entity_factory;
    DDS_PropertyQosPolicy property;
    DDS_EntityNameQosPolicy participant_name;
    DDS_ServiceQosPolicy service;
    DDS_DomainParticipantResourceLimitsQosPolicy resource_limits;
    DDS_DiscoveryQosPolicy discovery;
    DDS_TransportBuiltinQosPolicy transport_builtin;
} DDS_DomainParticipantQos;

DDS_QOS_DECLARE(DDS_DomainParticipantQos)

typedef struct DDS_TopicQos {
    DDS_TopicDataQosPolicy topic_data;
    DDS_DurabilityQosPolicy durability;
    DDS_DurabilityServiceQosPolicy durability_service;
    DDS_DeadlineQosPolicy deadline;
    DDS_LatencyBudgetQosPolicy latency_budget;
    DDS_LivelinessQosPolicy liveliness;
    DDS_ReliabilityQosPolicy reliability;
    DDS_DestinationOrderQosPolicy destination_order;
    DDS_HistoryQosPolicy history;
    DDS_ResourceLimitsQosPolicy resource_limits;
    DDS_TransportPriorityQosPolicy transport_priority;
    DDS_LifespanQosPolicy lifespan;
    DDS_OwnershipQosPolicy ownership;
    DDS_DataRepresentationQosPolicy representation;
} DDS_TopicQos;

DDS_QOS_DECLARE(DDS_TopicQos)

typedef struct DDS_PublisherQos {
    DDS_PresentationQosPolicy presentation;
    DDS_PartitionQosPolicy partition;
    DDS_GroupDataQosPolicy group_data;
    DDS_EntityFactoryQosPolicy entity_factory;
} DDS_PublisherQos;

DDS_QOS_DECLARE(DDS_PublisherQos)

typedef struct DDS_SubscriberQos {
    DDS_PresentationQosPolicy presentation;
    DDS_PartitionQosPolicy partition;
    DDS_GroupDataQosPolicy group_data;
    DDS_EntityFactoryQosPolicy entity_factory;
} DDS_SubscriberQos;

DDS_QOS_DECLARE(DDS_SubscriberQos)

typedef struct DDS_DataWriterQos {
    DDS_DurabilityQosPolicy durability;
    DDS_DurabilityServiceQosPolicy durability_service;
    DDS_DeadlineQosPolicy deadline;
    DDS_LatencyBudgetQosPolicy latency_budget;
    DDS_LivelinessQosPolicy liveliness;
    DDS_ReliabilityQosPolicy reliability;
    DDS_DestinationOrderQosPolicy destination_order;
    DDS_HistoryQosPolicy history;
    DDS_ResourceLimitsQosPolicy resource_limits;
    DDS_TransportPriorityQosPolicy transport_priority;
    DDS_LifespanQosPolicy lifespan;
    DDS_UserDataQosPolicy user_data;
    DDS_OwnershipQosPolicy ownership;
    DDS_OwnershipStrengthQosPolicy ownership_strength;
    DDS_WriterDataLifecycleQosPolicy writer_data_lifecycle;
    DDS_DataRepresentationQosPolicy representation;
    DDS_DataWriterResourceLimitsQosPolicy writer_resource_limits;
    DDS_DataWriterProtocolQosPolicy protocol;
    DDS_PropertyQosPolicy property;
    DDS_ServiceQosPolicy service;
    DDS_BatchQosPolicy batch;
    DDS_TopicQueryDispatchQosPolicy topic_query_dispatch;
} DDS_DataWriterQos;

DDS_QOS_DECLARE(DDS_DataWriterQos)

typedef struct DDS_DataReaderQos {
    DDS_DurabilityQosPolicy durability;
    DDS_DeadlineQosPolicy deadline;
    DDS_LatencyBudgetQosPolicy latency_budget;
    DDS_LivelinessQosPolicy liveliness;
    DDS_ReliabilityQosPolicy reliability;
    DDS_DestinationOrderQosPolicy destination_order;
    DDS_HistoryQosPolicy history;
    DDS_ResourceLimitsQosPolicy resource_limits;
    DDS_UserDataQosPolicy user_data;
    DDS_OwnershipQosPolicy ownership;
    DDS_TimeBasedFilterQosPolicy time_based_filter;
    DDS_ReaderDataLifecycleQosPolicy reader_data_lifecycle;
    DDS_DataRepresentationQosPolicy representation;
    DDS_DataReaderResourceLimitsQosPolicy reader_resource_limits;
    DDS_DataReaderProtocolQosPolicy protocol;
    DDS_PropertyQosPolicy property;
    DDS_ServiceQosPolicy service;
} DDS_DataReaderQos;

DDS_QOS_DECLARE(DDS_DataReaderQos)

/* Stands for "the default QoS of whoever makes the entity" where a QoS is asked for; known by its address,
 * its content is empty. */
extern const DDS_TopicQos DDS_TOPIC_QOS_DEFAULT;
extern const DDS_DomainParticipantQos DDS_PARTICIPANT_QOS_DEFAULT;
extern const DDS_PublisherQos DDS_PUBLISHER_QOS_DEFAULT;
extern const DDS_SubscriberQos DDS_SUBSCRIBER_QOS_DEFAULT;
extern const DDS_DataWriterQos DDS_DATAWRITER_QOS_DEFAULT;
extern const DDS_DataReaderQos DDS_DATAREADER_QOS_DEFAULT;

#ifdef __cplusplus
}
#endif

#endif
