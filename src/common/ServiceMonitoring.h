/* The vocabulary in which a service describes itself and its resources to observers: which resource a sample is
 * about, what the counters and statistics of a process, thread, host or network path are, and what event or
 * configuration a resource reports. Structures travel in XCDR2.
 *
 * An optional member is NULL when it is absent; its storage belongs to the sample. */
#ifndef ZUV_COMMON_SERVICE_MONITORING_H
#define ZUV_COMMON_SERVICE_MONITORING_H

#include "common/ServiceCommon.h"

#ifdef __cplusplus
extern "C" {
#endif

/* -- Which resource ---------------------------------------------------------------------------------- */

#define ZUV_SERVICE_MONITORING_RESOURCE_GUID_LENGTH 16

/* The identity of a resource. */
typedef struct ZUV_Service_Monitoring_ResourceGuid {
    DDS_Octet value[ZUV_SERVICE_MONITORING_RESOURCE_GUID_LENGTH];
} ZUV_Service_Monitoring_ResourceGuid;

ZUV_TYPE_DECLARE_TOPIC(ZUV_Service_Monitoring_ResourceGuid)

/* The head of every sample. */
typedef struct ZUV_Service_Monitoring_KeyedResource {
    ZUV_Service_Monitoring_ResourceGuid object_guid; /* the key */
    ZUV_Service_Monitoring_ResourceGuid owner_guid;  /* the resource that holds this one */
} ZUV_Service_Monitoring_KeyedResource;

ZUV_TYPE_DECLARE_TOPIC_KEYED(ZUV_Service_Monitoring_KeyedResource)

/* Each family of services has a block of 10000 kinds of resources; this service's is that of BREL. */
typedef enum ZUV_Service_Monitoring_ResourceKindIndex {
    ZUV_Service_Monitoring_ResourceKindIndex_DDS_INDEX = 1,
    ZUV_Service_Monitoring_ResourceKindIndex_BREL_INDEX = 10000,
    ZUV_Service_Monitoring_ResourceKindIndex_SOLVAR_INDEX = 20000,
    ZUV_Service_Monitoring_ResourceKindIndex_TEMBRI_INDEX = 30000
} ZUV_Service_Monitoring_ResourceKindIndex;

ZUV_TYPE_DECLARE_ENUM(ZUV_Service_Monitoring_ResourceKindIndex)

typedef enum ZUV_Service_Monitoring_ResourceKind {
    ZUV_Service_Monitoring_ResourceKind_UNKNOWN = 0,
    ZUV_Service_Monitoring_ResourceKind_BREL_SERVICE = 10000,
    ZUV_Service_Monitoring_ResourceKind_BREL_DOMAIN_ROUTE = 10001,
    ZUV_Service_Monitoring_ResourceKind_BREL_SESSION = 10002,
    ZUV_Service_Monitoring_ResourceKind_BREL_AUTO_ROUTE = 10003,
    ZUV_Service_Monitoring_ResourceKind_BREL_ROUTE = 10004,
    ZUV_Service_Monitoring_ResourceKind_BREL_INPUT = 10005,
    ZUV_Service_Monitoring_ResourceKind_BREL_OUTPUT = 10006,
    ZUV_Service_Monitoring_ResourceKind_SOLVAR_SERVICE = 20000,
    ZUV_Service_Monitoring_ResourceKind_SOLVAR_SESSION = 20001,
    ZUV_Service_Monitoring_ResourceKind_SOLVAR_TOPIC_GROUP = 20002,
    ZUV_Service_Monitoring_ResourceKind_SOLVAR_TOPIC = 20003,
    ZUV_Service_Monitoring_ResourceKind_TEMBRI_SERVICE = 30000,
    ZUV_Service_Monitoring_ResourceKind_TEMBRI_FORWARDER = 30001,
    ZUV_Service_Monitoring_ResourceKind_TEMBRI_DATABASE = 30002,
    ZUV_Service_Monitoring_ResourceKind_TEMBRI_RECEIVER = 30003,
    ZUV_Service_Monitoring_ResourceKind_TEMBRI_SENDER = 30004
} ZUV_Service_Monitoring_ResourceKind;

ZUV_TYPE_DECLARE_ENUM(ZUV_Service_Monitoring_ResourceKind)

/* The topics on which monitoring information is distributed. */
typedef enum ZUV_Service_Monitoring_DistributionTopicKind {
    ZUV_Service_Monitoring_DistributionTopicKind_CONFIG = 0,
    ZUV_Service_Monitoring_DistributionTopicKind_EVENT = 1,
    ZUV_Service_Monitoring_DistributionTopicKind_PERIODIC = 2
} ZUV_Service_Monitoring_DistributionTopicKind;

ZUV_TYPE_DECLARE_ENUM(ZUV_Service_Monitoring_DistributionTopicKind)

/* -- Measured variables and counters ----------------------------------------------------------------- */

/* The measures of one variable in a period. */
typedef struct ZUV_Service_Monitoring_StatisticMetrics {
    DDS_UnsignedLongLong period_ms;
    DDS_LongLong count;
    DDS_Float mean;
    DDS_Float minimum;
    DDS_Float maximum;
    DDS_Float std_dev;
} ZUV_Service_Monitoring_StatisticMetrics;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_Monitoring_StatisticMetrics)

typedef struct ZUV_Service_Monitoring_StatisticVariable {
    ZUV_Service_Monitoring_StatisticMetrics publication_period_metrics;
} ZUV_Service_Monitoring_StatisticVariable;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_Monitoring_StatisticVariable)

typedef struct ZUV_Service_Monitoring_CountStatus {
    DDS_LongLong total_count; /* accumulates */
    DDS_LongLong current_count;
    DDS_LongLong current_count_peak; /* the highest current_count ever seen */
} ZUV_Service_Monitoring_CountStatus;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_Monitoring_CountStatus)

/* -- Processes and threads --------------------------------------------------------------------------- */

/* What does not change in a process. */
typedef struct ZUV_Service_Monitoring_ProcessConfig {
    DDS_UnsignedLongLong id;
} ZUV_Service_Monitoring_ProcessConfig;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_Monitoring_ProcessConfig)

/* What is measured of it. */
typedef struct ZUV_Service_Monitoring_ProcessPeriodic {
    ZUV_Service_Monitoring_StatisticVariable *cpu_usage_percentage; /* optional */
    ZUV_Service_Monitoring_StatisticVariable *physical_memory_kb;   /* optional */
    ZUV_Service_Monitoring_StatisticVariable *total_memory_kb;      /* optional */
    DDS_Long uptime_sec;
} ZUV_Service_Monitoring_ProcessPeriodic;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_Monitoring_ProcessPeriodic)

typedef struct ZUV_Service_Monitoring_ThreadPeriodic {
    DDS_UnsignedLongLong id;
    ZUV_Service_Monitoring_StatisticVariable *cpu_usage_percentage; /* optional */
} ZUV_Service_Monitoring_ThreadPeriodic;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_Monitoring_ThreadPeriodic)

typedef struct ZUV_Service_Monitoring_ThreadPoolPeriodic {
    ZUV_Service_Monitoring_ThreadPeriodicSeq *threads; /* optional */
} ZUV_Service_Monitoring_ThreadPoolPeriodic;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_Monitoring_ThreadPoolPeriodic)

/* -- Hosts and the network --------------------------------------------------------------------------- */

/* What does not change in a host. */
typedef struct ZUV_Service_Monitoring_HostConfig {
    ZUV_Service_BoundedString name;
    DDS_UnsignedLong id; /* 32 bits, where processes and threads have 64 */
    DDS_LongLong total_memory_kb;
    DDS_LongLong total_swap_memory_kb;
    ZUV_Service_BoundedString target;
} ZUV_Service_Monitoring_HostConfig;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_Monitoring_HostConfig)

/* What is measured of it. */
typedef struct ZUV_Service_Monitoring_HostPeriodic {
    ZUV_Service_Monitoring_StatisticVariable *cpu_usage_percentage; /* optional */
    ZUV_Service_Monitoring_StatisticVariable *free_memory_kb;       /* optional */
    ZUV_Service_Monitoring_StatisticVariable *free_swap_memory_kb;  /* optional */
    DDS_Long uptime_sec;
} ZUV_Service_Monitoring_HostPeriodic;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_Monitoring_HostPeriodic)

/* What is measured of a path that data take. */
typedef struct ZUV_Service_Monitoring_NetworkPerformance {
    ZUV_Service_Monitoring_StatisticVariable *samples_per_sec;  /* optional */
    ZUV_Service_Monitoring_StatisticVariable *bytes_per_sec;    /* optional */
    ZUV_Service_Monitoring_StatisticVariable *latency_millisec; /* optional */
} ZUV_Service_Monitoring_NetworkPerformance;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_Monitoring_NetworkPerformance)

/* -- Entities of a service --------------------------------------------------------------------------- */

typedef struct ZUV_Service_Monitoring_EntityConfig {
    ZUV_Service_ResourceId resource_id;
    ZUV_Service_XmlString configuration; /* the entity's XML */
} ZUV_Service_Monitoring_EntityConfig;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_Monitoring_EntityConfig)

typedef struct ZUV_Service_Monitoring_EntityEvent {
    ZUV_Service_EntityStateKind state;
} ZUV_Service_Monitoring_EntityEvent;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_Monitoring_EntityEvent)

#ifdef __cplusplus
}
#endif

#endif
