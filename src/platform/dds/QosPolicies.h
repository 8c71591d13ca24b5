/* The QoS policies as records (OMG DDS 1.4, 2.2.3; DDS-XTypes 1.3, 7.6.3).
 *
 * A record of zeros is a valid, empty value of each of them. Texts are DDS strings, NULL where nothing is
 * set. What the middleware makes of each field is told in Qos.h. */
#ifndef ZUV_PLATFORM_DDS_QOS_POLICIES_H
#define ZUV_PLATFORM_DDS_QOS_POLICIES_H

#include "platform/osapi/Time.h"
#include "platform/typesys/PrimitiveSequences.h"
#include "platform/typesys/TypeCode.h"
#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef enum DDS_DurabilityQosPolicyKind {
    DDS_VOLATILE_DURABILITY_QOS = 0,
    DDS_TRANSIENT_LOCAL_DURABILITY_QOS = 1,
    DDS_TRANSIENT_DURABILITY_QOS = 2,
    DDS_PERSISTENT_DURABILITY_QOS = 3
} DDS_DurabilityQosPolicyKind;

typedef struct DDS_DurabilityQosPolicy {
    DDS_DurabilityQosPolicyKind kind;
} DDS_DurabilityQosPolicy;

typedef enum DDS_HistoryQosPolicyKind {
    DDS_KEEP_LAST_HISTORY_QOS = 0,
    DDS_KEEP_ALL_HISTORY_QOS = 1
} DDS_HistoryQosPolicyKind;

typedef struct DDS_HistoryQosPolicy {
    DDS_HistoryQosPolicyKind kind;
    DDS_Long depth; /* samples kept of each instance, with KEEP_LAST */
} DDS_HistoryQosPolicy;

typedef struct DDS_ResourceLimitsQosPolicy {
    DDS_Long max_samples; /* DDS_LENGTH_UNLIMITED or above 0, like the others */
    DDS_Long max_instances;
    DDS_Long max_samples_per_instance;
} DDS_ResourceLimitsQosPolicy;

typedef enum DDS_ReliabilityQosPolicyKind {
    DDS_BEST_EFFORT_RELIABILITY_QOS = 0,
    DDS_RELIABLE_RELIABILITY_QOS = 1
} DDS_ReliabilityQosPolicyKind;

typedef struct DDS_ReliabilityQosPolicy {
    DDS_ReliabilityQosPolicyKind kind;
    DDS_Duration_t
        max_blocking_time; /* the longest that a write waits for room in a full history */
} DDS_ReliabilityQosPolicy;

typedef struct DDS_DurabilityServiceQosPolicy {
    DDS_Duration_t service_cleanup_delay;
    DDS_HistoryQosPolicyKind history_kind;
    DDS_Long history_depth;
    DDS_Long max_samples;
    DDS_Long max_instances;
    DDS_Long max_samples_per_instance;
} DDS_DurabilityServiceQosPolicy;

typedef struct DDS_DeadlineQosPolicy {
    DDS_Duration_t period;
} DDS_DeadlineQosPolicy;

typedef struct DDS_LatencyBudgetQosPolicy {
    DDS_Duration_t duration;
} DDS_LatencyBudgetQosPolicy;

typedef enum DDS_LivelinessQosPolicyKind {
    DDS_AUTOMATIC_LIVELINESS_QOS = 0,
    DDS_MANUAL_BY_PARTICIPANT_LIVELINESS_QOS = 1,
    DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS = 2
} DDS_LivelinessQosPolicyKind;

typedef struct DDS_LivelinessQosPolicy {
    DDS_LivelinessQosPolicyKind kind;
    DDS_Duration_t lease_duration;
} DDS_LivelinessQosPolicy;

typedef enum DDS_OwnershipQosPolicyKind {
    DDS_SHARED_OWNERSHIP_QOS = 0,
    DDS_EXCLUSIVE_OWNERSHIP_QOS = 1
} DDS_OwnershipQosPolicyKind;

typedef struct DDS_OwnershipQosPolicy {
    DDS_OwnershipQosPolicyKind kind;
} DDS_OwnershipQosPolicy;

typedef struct DDS_OwnershipStrengthQosPolicy {
    DDS_Long value; /* 0 or above */
} DDS_OwnershipStrengthQosPolicy;

typedef enum DDS_DestinationOrderQosPolicyKind {
    DDS_BY_RECEPTION_TIMESTAMP_DESTINATIONORDER_QOS = 0,
    DDS_BY_SOURCE_TIMESTAMP_DESTINATIONORDER_QOS = 1
} DDS_DestinationOrderQosPolicyKind;

typedef struct DDS_DestinationOrderQosPolicy {
    DDS_DestinationOrderQosPolicyKind kind;
} DDS_DestinationOrderQosPolicy;

typedef enum DDS_PresentationQosPolicyAccessScopeKind {
    DDS_INSTANCE_PRESENTATION_QOS = 0,
    DDS_TOPIC_PRESENTATION_QOS = 1,
    DDS_GROUP_PRESENTATION_QOS = 2
} DDS_PresentationQosPolicyAccessScopeKind;

typedef struct DDS_PresentationQosPolicy {
    DDS_PresentationQosPolicyAccessScopeKind access_scope;
    DDS_Boolean coherent_access;
    DDS_Boolean ordered_access;
} DDS_PresentationQosPolicy;

typedef struct DDS_PartitionQosPolicy {
    DDS_StringSeq name;
} DDS_PartitionQosPolicy;

typedef struct DDS_LifespanQosPolicy {
    DDS_Duration_t duration;
} DDS_LifespanQosPolicy;

typedef struct DDS_TimeBasedFilterQosPolicy {
    DDS_Duration_t minimum_separation;
} DDS_TimeBasedFilterQosPolicy;

typedef struct DDS_TransportPriorityQosPolicy {
    DDS_Long value;
} DDS_TransportPriorityQosPolicy;

typedef struct DDS_WriterDataLifecycleQosPolicy {
    DDS_Boolean autodispose_unregistered_instances;
} DDS_WriterDataLifecycleQosPolicy;

typedef struct DDS_ReaderDataLifecycleQosPolicy {
    DDS_Duration_t autopurge_nowriter_samples_delay;
    DDS_Duration_t autopurge_disposed_samples_delay;
} DDS_ReaderDataLifecycleQosPolicy;

typedef struct DDS_EntityFactoryQosPolicy {
    DDS_Boolean autoenable_created_entities;
} DDS_EntityFactoryQosPolicy;

typedef struct DDS_UserDataQosPolicy {
    DDS_OctetSeq value;
} DDS_UserDataQosPolicy;

typedef struct DDS_TopicDataQosPolicy {
    DDS_OctetSeq value;
} DDS_TopicDataQosPolicy;

typedef struct DDS_GroupDataQosPolicy {
    DDS_OctetSeq value;
} DDS_GroupDataQosPolicy;

/* What the samples of an endpoint travel as; empty: what the type allows. */
ZUV_SEQUENCE_DECLARE(DDS_DataRepresentationIdSeq, DDS_DataRepresentationId_t)

typedef struct DDS_DataRepresentationQosPolicy {
    DDS_DataRepresentationIdSeq value;
} DDS_DataRepresentationQosPolicy;

/* A name and a text that travel with the entity. `propagate`: other participants see it in discovery. */
typedef struct DDS_Property_t {
    char *name;
    char *value;
    DDS_Boolean propagate;
} DDS_Property_t;

ZUV_SEQUENCE_DECLARE(DDS_PropertySeq, DDS_Property_t)

typedef struct DDS_PropertyQosPolicy {
    DDS_PropertySeq value; /* no two of the same name */
} DDS_PropertyQosPolicy;

/* Give the property `name` the value and the flag, adding it if it is not there. The texts are copied.
 * DDS_RETCODE_BAD_PARAMETER for a NULL argument, DDS_RETCODE_OUT_OF_RESOURCES without memory; the policy is
 * then as before. */
DDS_ReturnCode_t DDS_PropertyQosPolicyHelper_assert_property(DDS_PropertyQosPolicy *policy,
                                                             const char *name, const char *value,
                                                             DDS_Boolean propagate);

/* The property `name`, or NULL when there is none or an argument is NULL. Owned by the policy, valid until
 * the policy changes. */
const DDS_Property_t *
DDS_PropertyQosPolicyHelper_lookup_property(const DDS_PropertyQosPolicy *policy, const char *name);

/* Remove the property `name`: DDS_RETCODE_PRECONDITION_NOT_MET when there is none. */
DDS_ReturnCode_t DDS_PropertyQosPolicyHelper_remove_property(DDS_PropertyQosPolicy *policy,
                                                             const char *name);

/* How other participants see this one: in tools and in discovery. */
typedef struct DDS_EntityNameQosPolicy {
    char *name; /* at most 255 characters */
} DDS_EntityNameQosPolicy;

/* The kind of infrastructure service that an entity belongs to. */
typedef enum DDS_ServiceQosPolicyKind {
    DDS_NO_SERVICE_QOS = 0,
    DDS_BREL_SERVICE_QOS = 3
} DDS_ServiceQosPolicyKind;

typedef struct DDS_ServiceQosPolicy {
    DDS_ServiceQosPolicyKind kind;
} DDS_ServiceQosPolicy;

/* Timing of the reliable protocol in a reader (DDSI-RTPS 2.5, 8.4.12). Of a pair of delays the larger one
 * bounds the smaller. */
typedef struct DDS_RtpsReliableReaderProtocol_t {
    DDS_Duration_t min_heartbeat_response_delay;
    DDS_Duration_t max_heartbeat_response_delay;
    DDS_Duration_t heartbeat_suppression_duration;
} DDS_RtpsReliableReaderProtocol_t;

typedef struct DDS_DataReaderProtocolQosPolicy {
    DDS_RtpsReliableReaderProtocol_t rtps_reliable_reader;
} DDS_DataReaderProtocolQosPolicy;

/* Timing and flow of the reliable protocol in a writer (DDSI-RTPS 2.5, 8.4.7). The send window is the
 * number of samples that may wait for acknowledgement. */
typedef struct DDS_RtpsReliableWriterProtocol_t {
    DDS_Duration_t heartbeat_period;
    DDS_Duration_t fast_heartbeat_period;        /* while the send window is nearly full */
    DDS_Duration_t late_joiner_heartbeat_period; /* for a reader that still catches up */
    DDS_Long max_heartbeat_retries;      /* without an answer; DDS_LENGTH_UNLIMITED or above 0 */
    DDS_Long heartbeats_per_max_samples; /* that ride on samples, in one send window */
    DDS_Duration_t min_nack_response_delay;
    DDS_Duration_t max_nack_response_delay;
    DDS_Duration_t nack_suppression_duration;
    DDS_Long min_send_window_size; /* DDS_LENGTH_UNLIMITED or above 0 */
    DDS_Long max_send_window_size;
} DDS_RtpsReliableWriterProtocol_t;

typedef struct DDS_DataWriterProtocolQosPolicy {
    DDS_Boolean disable_inline_keyhash;     /* leave the hash of the key out of the samples */
    DDS_Boolean serialize_key_with_dispose; /* a dispose carries the key, not only its hash */
    DDS_RtpsReliableWriterProtocol_t rtps_reliable_writer;
} DDS_DataWriterProtocolQosPolicy;

typedef struct DDS_DataReaderResourceLimitsQosPolicy {
    /* Memory for a sample that comes in fragments is taken when it comes, and given back after it. */
    DDS_Boolean dynamically_allocate_fragmented_samples;
    DDS_Long max_samples_per_read; /* the most that one read or take yields */
} DDS_DataReaderResourceLimitsQosPolicy;

typedef struct DDS_DataWriterResourceLimitsQosPolicy {
    DDS_Boolean autoregister_instances;
} DDS_DataWriterResourceLimitsQosPolicy;

/* What discovery says about a participant at the most; DDS_LENGTH_UNLIMITED or at least 0. */
typedef struct DDS_DomainParticipantResourceLimitsQosPolicy {
    DDS_Long type_code_max_serialized_length;        /* octets of one type */
    DDS_Long participant_property_string_max_length; /* octets of all propagated properties */
} DDS_DomainParticipantResourceLimitsQosPolicy;

/* Where other participants are looked for. Each peer is "[udpv4://]ADDRESS[:PORT]" with an IPv4 address in
 * numbers; without a port the first ports of the domain are tried. Empty: as the profile of the middleware
 * says, otherwise this machine. */
typedef struct DDS_DiscoveryQosPolicy {
    DDS_StringSeq initial_peers;
} DDS_DiscoveryQosPolicy;

/* The transports that a participant may use, of those that the profile of the middleware gives it. */
typedef DDS_UnsignedLong DDS_TransportBuiltinKindMask;
#define DDS_TRANSPORTBUILTIN_MASK_NONE 0u
#define DDS_TRANSPORTBUILTIN_UDPv4 1u
#define DDS_TRANSPORTBUILTIN_SHMEM 2u
#define DDS_TRANSPORTBUILTIN_UDPv6 8u
#define DDS_TRANSPORTBUILTIN_MASK_DEFAULT (DDS_TRANSPORTBUILTIN_UDPv4 | DDS_TRANSPORTBUILTIN_SHMEM)

typedef struct DDS_TransportBuiltinQosPolicy {
    DDS_TransportBuiltinKindMask mask;
} DDS_TransportBuiltinQosPolicy;

/* Samples that are collected and sent together. */
typedef struct DDS_BatchQosPolicy {
    DDS_Boolean enable;
} DDS_BatchQosPolicy;

/* Whether a writer answers readers that ask for samples of the past. */
typedef struct DDS_TopicQueryDispatchQosPolicy {
    DDS_Boolean enable;
} DDS_TopicQueryDispatchQosPolicy;

#ifdef __cplusplus
}
#endif

#endif
