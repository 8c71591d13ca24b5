/* Communication statuses and their masks (OMG DDS 1.4, 2.2.4.1). */
#ifndef ZUV_PLATFORM_DDS_STATUS_H
#define ZUV_PLATFORM_DDS_STATUS_H

#include "platform/dds/SampleInfo.h"
#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef DDS_UnsignedLong DDS_StatusMask;

#define DDS_INCONSISTENT_TOPIC_STATUS 1u
#define DDS_OFFERED_DEADLINE_MISSED_STATUS 2u
#define DDS_REQUESTED_DEADLINE_MISSED_STATUS 4u
#define DDS_OFFERED_INCOMPATIBLE_QOS_STATUS 32u
#define DDS_REQUESTED_INCOMPATIBLE_QOS_STATUS 64u
#define DDS_SAMPLE_LOST_STATUS 128u
#define DDS_SAMPLE_REJECTED_STATUS 256u
#define DDS_DATA_ON_READERS_STATUS 512u
#define DDS_DATA_AVAILABLE_STATUS 1024u
#define DDS_LIVELINESS_LOST_STATUS 2048u
#define DDS_LIVELINESS_CHANGED_STATUS 4096u
#define DDS_PUBLICATION_MATCHED_STATUS 8192u
#define DDS_SUBSCRIPTION_MATCHED_STATUS 16384u
#define DDS_STATUS_MASK_NONE 0u
#define DDS_STATUS_MASK_ALL 0xffffffffu

typedef enum DDS_QosPolicyId_t {
    DDS_INVALID_QOS_POLICY_ID = 0,
    DDS_USERDATA_QOS_POLICY_ID = 1,
    DDS_DURABILITY_QOS_POLICY_ID = 2,
    DDS_PRESENTATION_QOS_POLICY_ID = 3,
    DDS_DEADLINE_QOS_POLICY_ID = 4,
    DDS_LATENCYBUDGET_QOS_POLICY_ID = 5,
    DDS_OWNERSHIP_QOS_POLICY_ID = 6,
    DDS_OWNERSHIPSTRENGTH_QOS_POLICY_ID = 7,
    DDS_LIVELINESS_QOS_POLICY_ID = 8,
    DDS_TIMEBASEDFILTER_QOS_POLICY_ID = 9,
    DDS_PARTITION_QOS_POLICY_ID = 10,
    DDS_RELIABILITY_QOS_POLICY_ID = 11,
    DDS_DESTINATIONORDER_QOS_POLICY_ID = 12,
    DDS_HISTORY_QOS_POLICY_ID = 13,
    DDS_RESOURCELIMITS_QOS_POLICY_ID = 14,
    DDS_ENTITYFACTORY_QOS_POLICY_ID = 15,
    DDS_WRITERDATALIFECYCLE_QOS_POLICY_ID = 16,
    DDS_READERDATALIFECYCLE_QOS_POLICY_ID = 17,
    DDS_TOPICDATA_QOS_POLICY_ID = 18,
    DDS_GROUPDATA_QOS_POLICY_ID = 19,
    DDS_TRANSPORTPRIORITY_QOS_POLICY_ID = 20,
    DDS_LIFESPAN_QOS_POLICY_ID = 21,
    DDS_DURABILITYSERVICE_QOS_POLICY_ID = 22,
    DDS_DATAREPRESENTATION_QOS_POLICY_ID = 23,
    DDS_TYPE_CONSISTENCY_ENFORCEMENT_QOS_POLICY_ID = 24
} DDS_QosPolicyId_t;

/* The name of a policy, as in "DURABILITY_QOS_POLICY"; "UNKNOWN_QOS_POLICY" for any other value. Never
 * NULL; the text lives as long as the process. */
const char *DDS_QosPolicyId_to_string(DDS_QosPolicyId_t id);

/* In all statuses: a total counts since the entity was made, a change since the status was last read. */
typedef struct DDS_SubscriptionMatchedStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
    DDS_Long current_count; /* writers matched now */
    DDS_Long current_count_change;
    DDS_InstanceHandle_t last_publication_handle;
} DDS_SubscriptionMatchedStatus;

typedef struct DDS_PublicationMatchedStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
    DDS_Long current_count; /* readers matched now */
    DDS_Long current_count_change;
    DDS_InstanceHandle_t last_subscription_handle;
} DDS_PublicationMatchedStatus;

typedef struct DDS_OfferedIncompatibleQosStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
    DDS_QosPolicyId_t last_policy_id;
} DDS_OfferedIncompatibleQosStatus;

typedef struct DDS_RequestedIncompatibleQosStatus {
    DDS_Long total_count;
    DDS_Long total_count_change;
    DDS_QosPolicyId_t last_policy_id;
} DDS_RequestedIncompatibleQosStatus;

#ifdef __cplusplus
}
#endif

#endif
