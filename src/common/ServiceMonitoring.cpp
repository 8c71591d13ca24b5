#include "common/ServiceMonitoring.h"

#include <cstddef>

#include "platform/typesys/TypeTable.hpp"

// The ids come from the members' names; here they are once more as other programs know them.
template <std::size_t Count>
static constexpr bool hasIds(const DDS_TypeCodeMember (&members)[Count],
                             const std::uint32_t (&ids)[Count])
{
    for (std::size_t index = 0; index < Count; ++index) {
        if (members[index].id != ids[index]) {
            return false;
        }
    }
    return true;
}

/* -- Which resource -------------------------------------------------------------------------------- */

static constexpr DDS_TypeCodeMember kResourceGuidMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_ResourceGuid, value,
                    (zuv::kArray<DDS_g_tc_octet, ZUV_SERVICE_MONITORING_RESOURCE_GUID_LENGTH>),
                    zuv::kRequired),
};
static_assert(hasIds(kResourceGuidMembers, {0x00C16320}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_ResourceGuid, "ZUV::Service::Monitoring::ResourceGuid",
                DDS_FINAL_EXTENSIBILITY, zuv::kIsTopic, kResourceGuidMembers);
ZUV_TYPE_DEFINE_TOPIC(ZUV_Service_Monitoring_ResourceGuid)

static constexpr DDS_TypeCodeMember kKeyedResourceMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_KeyedResource, object_guid,
                    ZUV_Service_Monitoring_ResourceGuid_g_typecode, zuv::kKey),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_KeyedResource, owner_guid,
                    ZUV_Service_Monitoring_ResourceGuid_g_typecode, zuv::kRequired),
};
static_assert(hasIds(kKeyedResourceMembers, {0x0263467B, 0x09D8CBD2}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_KeyedResource, "ZUV::Service::Monitoring::KeyedResource",
                DDS_MUTABLE_EXTENSIBILITY, zuv::kIsTopic, kKeyedResourceMembers);
ZUV_TYPE_DEFINE_TOPIC_KEYED(ZUV_Service_Monitoring_KeyedResource)

static constexpr DDS_TypeCodeMember kResourceKindIndexes[] = {
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKindIndex, DDS_INDEX),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKindIndex, BREL_INDEX),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKindIndex, SOLVAR_INDEX),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKindIndex, TEMBRI_INDEX),
};

ZUV_TYPE_ENUM(ZUV_Service_Monitoring_ResourceKindIndex,
              "ZUV::Service::Monitoring::ResourceKindIndex", DDS_MUTABLE_EXTENSIBILITY,
              ZUV_Service_Monitoring_ResourceKindIndex_DDS_INDEX, kResourceKindIndexes);
ZUV_TYPE_DEFINE_ENUM(ZUV_Service_Monitoring_ResourceKindIndex)

static constexpr DDS_TypeCodeMember kResourceKinds[] = {
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, UNKNOWN),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, BREL_SERVICE),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, BREL_DOMAIN_ROUTE),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, BREL_SESSION),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, BREL_AUTO_ROUTE),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, BREL_ROUTE),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, BREL_INPUT),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, BREL_OUTPUT),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, SOLVAR_SERVICE),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, SOLVAR_SESSION),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, SOLVAR_TOPIC_GROUP),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, SOLVAR_TOPIC),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, TEMBRI_SERVICE),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, TEMBRI_FORWARDER),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, TEMBRI_DATABASE),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, TEMBRI_RECEIVER),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_ResourceKind, TEMBRI_SENDER),
};

ZUV_TYPE_ENUM(ZUV_Service_Monitoring_ResourceKind, "ZUV::Service::Monitoring::ResourceKind",
              DDS_MUTABLE_EXTENSIBILITY, ZUV_Service_Monitoring_ResourceKind_UNKNOWN,
              kResourceKinds);
ZUV_TYPE_DEFINE_ENUM(ZUV_Service_Monitoring_ResourceKind)

static constexpr DDS_TypeCodeMember kDistributionTopicKinds[] = {
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_DistributionTopicKind, CONFIG),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_DistributionTopicKind, EVENT),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Monitoring_DistributionTopicKind, PERIODIC),
};

ZUV_TYPE_ENUM(ZUV_Service_Monitoring_DistributionTopicKind,
              "ZUV::Service::Monitoring::DistributionTopicKind", DDS_EXTENSIBLE_EXTENSIBILITY,
              ZUV_Service_Monitoring_DistributionTopicKind_CONFIG, kDistributionTopicKinds);
ZUV_TYPE_DEFINE_ENUM(ZUV_Service_Monitoring_DistributionTopicKind)

/* -- Measured variables and counters --------------------------------------------------------------- */

static constexpr DDS_TypeCodeMember kStatisticMetricsMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_StatisticMetrics, period_ms, DDS_g_tc_ulonglong,
                    zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_StatisticMetrics, count, DDS_g_tc_longlong,
                    zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_StatisticMetrics, mean, DDS_g_tc_float, zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_StatisticMetrics, minimum, DDS_g_tc_float,
                    zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_StatisticMetrics, maximum, DDS_g_tc_float,
                    zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_StatisticMetrics, std_dev, DDS_g_tc_float,
                    zuv::kRequired),
};
static_assert(hasIds(kStatisticMetricsMembers,
                     {0x09DC5353, 0x042A94E2, 0x08B13DB9, 0x0C2383E3, 0x08E2B065, 0x0827BFFF}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_StatisticMetrics,
                "ZUV::Service::Monitoring::StatisticMetrics", DDS_EXTENSIBLE_EXTENSIBILITY,
                zuv::kIsNested, kStatisticMetricsMembers);
ZUV_TYPE_DEFINE_NESTED(ZUV_Service_Monitoring_StatisticMetrics)

static constexpr DDS_TypeCodeMember kStatisticVariableMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_StatisticVariable, publication_period_metrics,
                    ZUV_Service_Monitoring_StatisticMetrics_g_typecode, zuv::kRequired),
};
static_assert(hasIds(kStatisticVariableMembers, {0x0DD616BB}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_StatisticVariable,
                "ZUV::Service::Monitoring::StatisticVariable", DDS_EXTENSIBLE_EXTENSIBILITY,
                zuv::kIsNested, kStatisticVariableMembers);
ZUV_TYPE_DEFINE_NESTED(ZUV_Service_Monitoring_StatisticVariable)

static constexpr DDS_TypeCodeMember kCountStatusMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_CountStatus, total_count, DDS_g_tc_longlong,
                    zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_CountStatus, current_count, DDS_g_tc_longlong,
                    zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_CountStatus, current_count_peak, DDS_g_tc_longlong,
                    zuv::kRequired),
};
static_assert(hasIds(kCountStatusMembers, {0x031E4234, 0x0C914CD3, 0x07CD1434}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_CountStatus, "ZUV::Service::Monitoring::CountStatus",
                DDS_MUTABLE_EXTENSIBILITY, zuv::kIsNested, kCountStatusMembers);
ZUV_TYPE_DEFINE_NESTED(ZUV_Service_Monitoring_CountStatus)

/* -- Processes and threads ------------------------------------------------------------------------- */

static constexpr DDS_TypeCodeMember kProcessConfigMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_ProcessConfig, id, DDS_g_tc_ulonglong, zuv::kRequired),
};
static_assert(hasIds(kProcessConfigMembers, {0x04B70BB8}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_ProcessConfig, "ZUV::Service::Monitoring::ProcessConfig",
                DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsNested, kProcessConfigMembers);
ZUV_TYPE_DEFINE_NESTED(ZUV_Service_Monitoring_ProcessConfig)

static constexpr DDS_TypeCodeMember kProcessPeriodicMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_ProcessPeriodic, cpu_usage_percentage,
                    ZUV_Service_Monitoring_StatisticVariable_g_typecode, zuv::kOptional),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_ProcessPeriodic, physical_memory_kb,
                    ZUV_Service_Monitoring_StatisticVariable_g_typecode, zuv::kOptional),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_ProcessPeriodic, total_memory_kb,
                    ZUV_Service_Monitoring_StatisticVariable_g_typecode, zuv::kOptional),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_ProcessPeriodic, uptime_sec, DDS_g_tc_long,
                    zuv::kRequired),
};
static_assert(hasIds(kProcessPeriodicMembers, {0x0157ED72, 0x07A806F9, 0x055735C8, 0x0DF199C7}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_ProcessPeriodic, "ZUV::Service::Monitoring::ProcessPeriodic",
                DDS_MUTABLE_EXTENSIBILITY, zuv::kIsNested, kProcessPeriodicMembers);
ZUV_TYPE_DEFINE_NESTED(ZUV_Service_Monitoring_ProcessPeriodic)

static constexpr DDS_TypeCodeMember kThreadPeriodicMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_ThreadPeriodic, id, DDS_g_tc_ulonglong, zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_ThreadPeriodic, cpu_usage_percentage,
                    ZUV_Service_Monitoring_StatisticVariable_g_typecode, zuv::kOptional),
};
static_assert(hasIds(kThreadPeriodicMembers, {0x04B70BB8, 0x0157ED72}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_ThreadPeriodic, "ZUV::Service::Monitoring::ThreadPeriodic",
                DDS_MUTABLE_EXTENSIBILITY, zuv::kIsNested, kThreadPeriodicMembers);
ZUV_TYPE_DEFINE_NESTED(ZUV_Service_Monitoring_ThreadPeriodic)

static constexpr DDS_TypeCodeMember kThreadPoolPeriodicMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_ThreadPoolPeriodic, threads,
                    zuv::kSequence<ZUV_Service_Monitoring_ThreadPeriodic_g_typecode>,
                    zuv::kOptional),
};
static_assert(hasIds(kThreadPoolPeriodicMembers, {0x04FE1909}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_ThreadPoolPeriodic,
                "ZUV::Service::Monitoring::ThreadPoolPeriodic", DDS_MUTABLE_EXTENSIBILITY,
                zuv::kIsNested, kThreadPoolPeriodicMembers);
ZUV_TYPE_DEFINE_NESTED(ZUV_Service_Monitoring_ThreadPoolPeriodic)

/* -- Hosts and the network ------------------------------------------------------------------------- */

static constexpr DDS_TypeCodeMember kHostConfigMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_HostConfig, name, ZUV_Service_BoundedString_g_typecode,
                    zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_HostConfig, id, DDS_g_tc_ulong, zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_HostConfig, total_memory_kb, DDS_g_tc_longlong,
                    zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_HostConfig, total_swap_memory_kb, DDS_g_tc_longlong,
                    zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_HostConfig, target, ZUV_Service_BoundedString_g_typecode,
                    zuv::kRequired),
};
static_assert(hasIds(kHostConfigMembers,
                     {0x0C9368B0, 0x04B70BB8, 0x055735C8, 0x09292E94, 0x0EFBAE42}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_HostConfig, "ZUV::Service::Monitoring::HostConfig",
                DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsNested, kHostConfigMembers);
ZUV_TYPE_DEFINE_NESTED(ZUV_Service_Monitoring_HostConfig)

static constexpr DDS_TypeCodeMember kHostPeriodicMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_HostPeriodic, cpu_usage_percentage,
                    ZUV_Service_Monitoring_StatisticVariable_g_typecode, zuv::kOptional),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_HostPeriodic, free_memory_kb,
                    ZUV_Service_Monitoring_StatisticVariable_g_typecode, zuv::kOptional),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_HostPeriodic, free_swap_memory_kb,
                    ZUV_Service_Monitoring_StatisticVariable_g_typecode, zuv::kOptional),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_HostPeriodic, uptime_sec, DDS_g_tc_long, zuv::kRequired),
};
static_assert(hasIds(kHostPeriodicMembers, {0x0157ED72, 0x0D7D7530, 0x0D785034, 0x0DF199C7}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_HostPeriodic, "ZUV::Service::Monitoring::HostPeriodic",
                DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsNested, kHostPeriodicMembers);
ZUV_TYPE_DEFINE_NESTED(ZUV_Service_Monitoring_HostPeriodic)

static constexpr DDS_TypeCodeMember kNetworkPerformanceMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_NetworkPerformance, samples_per_sec,
                    ZUV_Service_Monitoring_StatisticVariable_g_typecode, zuv::kOptional),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_NetworkPerformance, bytes_per_sec,
                    ZUV_Service_Monitoring_StatisticVariable_g_typecode, zuv::kOptional),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_NetworkPerformance, latency_millisec,
                    ZUV_Service_Monitoring_StatisticVariable_g_typecode, zuv::kOptional),
};
static_assert(hasIds(kNetworkPerformanceMembers, {0x035FC280, 0x0A4A53E6, 0x0183424D}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_NetworkPerformance,
                "ZUV::Service::Monitoring::NetworkPerformance", DDS_EXTENSIBLE_EXTENSIBILITY,
                zuv::kIsNested, kNetworkPerformanceMembers);
ZUV_TYPE_DEFINE_NESTED(ZUV_Service_Monitoring_NetworkPerformance)

/* -- Entities of a service ------------------------------------------------------------------------- */

static constexpr DDS_TypeCodeMember kEntityConfigMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_EntityConfig, resource_id,
                    ZUV_Service_ResourceId_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_EntityConfig, configuration,
                    ZUV_Service_XmlString_g_typecode, zuv::kRequired),
};
static_assert(hasIds(kEntityConfigMembers, {0x0BEFF3E2, 0x0306D1CC}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_EntityConfig, "ZUV::Service::Monitoring::EntityConfig",
                DDS_MUTABLE_EXTENSIBILITY, zuv::kIsNested, kEntityConfigMembers);
ZUV_TYPE_DEFINE_NESTED(ZUV_Service_Monitoring_EntityConfig)

static constexpr DDS_TypeCodeMember kEntityEventMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Monitoring_EntityEvent, state,
                    ZUV_Service_EntityStateKind_g_typecode, zuv::kRequired),
};
static_assert(hasIds(kEntityEventMembers, {0x0E9ED39E}));

ZUV_TYPE_STRUCT(ZUV_Service_Monitoring_EntityEvent, "ZUV::Service::Monitoring::EntityEvent",
                DDS_MUTABLE_EXTENSIBILITY, zuv::kIsNested, kEntityEventMembers);
ZUV_TYPE_DEFINE_NESTED(ZUV_Service_Monitoring_EntityEvent)
