// The descriptions of the monitoring types, against what other programs know of them.
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/ServiceMonitoring.h"
#include "common/ServiceMonitoringSupport.h"

namespace
{

enum Mark { kRequired, kKey, kOptional };

struct Member {
    const char *name;
    DDS_TCKind kind; // behind aliases
    Mark mark;
    DDS_UnsignedLong id;
};

struct Structure {
    const DDS_TypeCode *type;
    const char *name;
    DDS_ExtensibilityKind extensibility;
    bool isNested;
    std::vector<Member> members;
};

#define TYPE(T) ZUV_Service_Monitoring_##T##_get_typecode(), "ZUV::Service::Monitoring::" #T

std::vector<Structure> structures()
{
    const auto optionalVariable = [](const char *name, DDS_UnsignedLong id) {
        return Member{name, DDS_TK_STRUCT, kOptional, id};
    };
    const Member cpuUsage = optionalVariable("cpu_usage_percentage", 0x0157ED72);
    const Member uptime = {"uptime_sec", DDS_TK_LONG, kRequired, 0x0DF199C7};
    const Member longId = {"id", DDS_TK_ULONGLONG, kRequired, 0x04B70BB8};
    return {
        {TYPE(ResourceGuid),
         DDS_FINAL_EXTENSIBILITY,
         false,
         {{"value", DDS_TK_ARRAY, kRequired, 0x00C16320}}},
        {TYPE(KeyedResource),
         DDS_MUTABLE_EXTENSIBILITY,
         false,
         {{"object_guid", DDS_TK_STRUCT, kKey, 0x0263467B},
          {"owner_guid", DDS_TK_STRUCT, kRequired, 0x09D8CBD2}}},
        {TYPE(StatisticMetrics),
         DDS_EXTENSIBLE_EXTENSIBILITY,
         true,
         {{"period_ms", DDS_TK_ULONGLONG, kRequired, 0x09DC5353},
          {"count", DDS_TK_LONGLONG, kRequired, 0x042A94E2},
          {"mean", DDS_TK_FLOAT, kRequired, 0x08B13DB9},
          {"minimum", DDS_TK_FLOAT, kRequired, 0x0C2383E3},
          {"maximum", DDS_TK_FLOAT, kRequired, 0x08E2B065},
          {"std_dev", DDS_TK_FLOAT, kRequired, 0x0827BFFF}}},
        {TYPE(StatisticVariable),
         DDS_EXTENSIBLE_EXTENSIBILITY,
         true,
         {{"publication_period_metrics", DDS_TK_STRUCT, kRequired, 0x0DD616BB}}},
        {TYPE(CountStatus),
         DDS_MUTABLE_EXTENSIBILITY,
         true,
         {{"total_count", DDS_TK_LONGLONG, kRequired, 0x031E4234},
          {"current_count", DDS_TK_LONGLONG, kRequired, 0x0C914CD3},
          {"current_count_peak", DDS_TK_LONGLONG, kRequired, 0x07CD1434}}},
        {TYPE(ProcessConfig), DDS_EXTENSIBLE_EXTENSIBILITY, true, {longId}},
        {TYPE(ProcessPeriodic),
         DDS_MUTABLE_EXTENSIBILITY,
         true,
         {cpuUsage, optionalVariable("physical_memory_kb", 0x07A806F9),
          optionalVariable("total_memory_kb", 0x055735C8), uptime}},
        {TYPE(ThreadPeriodic), DDS_MUTABLE_EXTENSIBILITY, true, {longId, cpuUsage}},
        {TYPE(ThreadPoolPeriodic),
         DDS_MUTABLE_EXTENSIBILITY,
         true,
         {{"threads", DDS_TK_SEQUENCE, kOptional, 0x04FE1909}}},
        {TYPE(HostPeriodic),
         DDS_EXTENSIBLE_EXTENSIBILITY,
         true,
         {cpuUsage, optionalVariable("free_memory_kb", 0x0D7D7530),
          optionalVariable("free_swap_memory_kb", 0x0D785034), uptime}},
        {TYPE(HostConfig),
         DDS_EXTENSIBLE_EXTENSIBILITY,
         true,
         {{"name", DDS_TK_STRING, kRequired, 0x0C9368B0},
          {"id", DDS_TK_ULONG, kRequired, 0x04B70BB8},
          {"total_memory_kb", DDS_TK_LONGLONG, kRequired, 0x055735C8},
          {"total_swap_memory_kb", DDS_TK_LONGLONG, kRequired, 0x09292E94},
          {"target", DDS_TK_STRING, kRequired, 0x0EFBAE42}}},
        {TYPE(NetworkPerformance),
         DDS_EXTENSIBLE_EXTENSIBILITY,
         true,
         {optionalVariable("samples_per_sec", 0x035FC280),
          optionalVariable("bytes_per_sec", 0x0A4A53E6),
          optionalVariable("latency_millisec", 0x0183424D)}},
        {TYPE(EntityConfig),
         DDS_MUTABLE_EXTENSIBILITY,
         true,
         {{"resource_id", DDS_TK_STRING, kRequired, 0x0BEFF3E2},
          {"configuration", DDS_TK_STRING, kRequired, 0x0306D1CC}}},
        {TYPE(EntityEvent),
         DDS_MUTABLE_EXTENSIBILITY,
         true,
         {{"state", DDS_TK_ENUM, kRequired, 0x0E9ED39E}}},
    };
}

DDS_TCKind kindOfMember(const DDS_TypeCode *type, DDS_UnsignedLong index)
{
    return DDS_TypeCode_kind(
        DDS_TypeCode_resolve_alias(DDS_TypeCode_member_type(type, index, nullptr)), nullptr);
}

Mark markOfMember(const DDS_TypeCode *type, DDS_UnsignedLong index)
{
    if (DDS_TypeCode_is_member_key(type, index, nullptr)) {
        return kKey;
    }
    return DDS_TypeCode_is_member_optional(type, index, nullptr) ? kOptional : kRequired;
}

TEST(MonitoringTypes, areDescribedAsOtherProgramsKnowThem)
{
    for (const Structure &expected : structures()) {
        SCOPED_TRACE(expected.name);
        EXPECT_EQ(DDS_TypeCode_kind(expected.type, nullptr), DDS_TK_STRUCT);
        EXPECT_STREQ(DDS_TypeCode_name(expected.type, nullptr), expected.name);
        EXPECT_EQ(DDS_TypeCode_extensibility_kind(expected.type, nullptr), expected.extensibility);
        EXPECT_EQ(DDS_TypeCode_is_nested(expected.type, nullptr) != 0, expected.isNested);
        EXPECT_TRUE(DDS_TypeCode_is_autoid_hash(expected.type, nullptr));
        EXPECT_EQ(DDS_TypeCode_allowed_representations(expected.type, nullptr),
                  DDS_XCDR2_DATA_REPRESENTATION_MASK);
        EXPECT_EQ(DDS_TypeCode_concrete_base_type(expected.type, nullptr), nullptr);
        ASSERT_EQ(DDS_TypeCode_member_count(expected.type, nullptr), expected.members.size());
        for (DDS_UnsignedLong index = 0; index < expected.members.size(); ++index) {
            const Member &member = expected.members[index];
            SCOPED_TRACE(member.name);
            EXPECT_STREQ(DDS_TypeCode_member_name(expected.type, index, nullptr), member.name);
            EXPECT_EQ(DDS_TypeCode_member_id(expected.type, index, nullptr), member.id);
            EXPECT_EQ(kindOfMember(expected.type, index), member.kind);
            EXPECT_EQ(markOfMember(expected.type, index), member.mark);
        }
    }
}

TEST(MonitoringTypes, haveTheFullRangeOfANumber)
{
    const DDS_TypeCode *const metrics = ZUV_Service_Monitoring_StatisticMetrics_get_typecode();
    EXPECT_EQ(DDS_TypeCode_member_max_value(metrics, 0, nullptr).value.unsignedValue, UINT64_MAX);
    EXPECT_EQ(DDS_TypeCode_member_min_value(metrics, 1, nullptr).value.signedValue, INT64_MIN);
    EXPECT_EQ(DDS_TypeCode_member_max_value(metrics, 1, nullptr).value.signedValue, INT64_MAX);
    for (const DDS_UnsignedLong index : {2, 3, 4, 5}) {
        EXPECT_EQ(DDS_TypeCode_member_min_value(metrics, index, nullptr).value.floatValue,
                  -3.4028234663852886e+38);
        EXPECT_EQ(DDS_TypeCode_member_max_value(metrics, index, nullptr).value.floatValue,
                  3.4028234663852886e+38);
    }
}

TEST(MonitoringTypes, boundTheirTextsAndArrays)
{
    const auto lengthOf = [](const DDS_TypeCode *type, DDS_UnsignedLong member) {
        return DDS_TypeCode_length(
            DDS_TypeCode_resolve_alias(DDS_TypeCode_member_type(type, member, nullptr)), nullptr);
    };
    EXPECT_EQ(lengthOf(ZUV_Service_Monitoring_ResourceGuid_get_typecode(), 0), 16U);
    EXPECT_EQ(lengthOf(ZUV_Service_Monitoring_HostConfig_get_typecode(), 0), 255U);
    EXPECT_EQ(lengthOf(ZUV_Service_Monitoring_HostConfig_get_typecode(), 4), 255U);
    EXPECT_EQ(lengthOf(ZUV_Service_Monitoring_EntityConfig_get_typecode(), 0), 2048U);
    EXPECT_EQ(lengthOf(ZUV_Service_Monitoring_EntityConfig_get_typecode(), 1), 2147483647U);
    EXPECT_EQ(lengthOf(ZUV_Service_Monitoring_ThreadPoolPeriodic_get_typecode(), 0), 2147483647U);
}

struct Enumerator {
    const char *name;
    DDS_Long value;
};

void expectEnumeration(const DDS_TypeCode *type, const char *name,
                       DDS_ExtensibilityKind extensibility, DDS_Long defaultValue,
                       const std::vector<Enumerator> &enumerators)
{
    SCOPED_TRACE(name);
    EXPECT_EQ(DDS_TypeCode_kind(type, nullptr), DDS_TK_ENUM);
    EXPECT_STREQ(DDS_TypeCode_name(type, nullptr), name);
    EXPECT_EQ(DDS_TypeCode_extensibility_kind(type, nullptr), extensibility);
    EXPECT_EQ(DDS_TypeCode_default_value(type, nullptr).value.signedValue, defaultValue);
    EXPECT_EQ(DDS_TypeCode_allowed_representations(type, nullptr),
              DDS_XCDR_DATA_REPRESENTATION_MASK | DDS_XCDR2_DATA_REPRESENTATION_MASK);
    ASSERT_EQ(DDS_TypeCode_member_count(type, nullptr), enumerators.size());
    for (DDS_UnsignedLong index = 0; index < enumerators.size(); ++index) {
        EXPECT_STREQ(DDS_TypeCode_member_name(type, index, nullptr), enumerators[index].name);
        EXPECT_EQ(DDS_TypeCode_member_ordinal(type, index, nullptr), enumerators[index].value);
    }
}

TEST(MonitoringTypes, enumerateTheKindsOfResources)
{
    expectEnumeration(TYPE(ResourceKindIndex), DDS_MUTABLE_EXTENSIBILITY, 1,
                      {{"DDS_INDEX", 1},
                       {"BREL_INDEX", 10000},
                       {"SOLVAR_INDEX", 20000},
                       {"TEMBRI_INDEX", 30000}});
    expectEnumeration(TYPE(ResourceKind), DDS_MUTABLE_EXTENSIBILITY, 0,
                      {{"UNKNOWN", 0},
                       {"BREL_SERVICE", 10000},
                       {"BREL_DOMAIN_ROUTE", 10001},
                       {"BREL_SESSION", 10002},
                       {"BREL_AUTO_ROUTE", 10003},
                       {"BREL_ROUTE", 10004},
                       {"BREL_INPUT", 10005},
                       {"BREL_OUTPUT", 10006},
                       {"SOLVAR_SERVICE", 20000},
                       {"SOLVAR_SESSION", 20001},
                       {"SOLVAR_TOPIC_GROUP", 20002},
                       {"SOLVAR_TOPIC", 20003},
                       {"TEMBRI_SERVICE", 30000},
                       {"TEMBRI_FORWARDER", 30001},
                       {"TEMBRI_DATABASE", 30002},
                       {"TEMBRI_RECEIVER", 30003},
                       {"TEMBRI_SENDER", 30004}});
    EXPECT_EQ(ZUV_Service_Monitoring_ResourceKind_BREL_ROUTE, 10004);
}

TEST(MonitoringTypes, enumerateTheTopicsOfDistribution)
{
    expectEnumeration(TYPE(DistributionTopicKind), DDS_EXTENSIBLE_EXTENSIBILITY, 0,
                      {{"CONFIG", 0}, {"EVENT", 1}, {"PERIODIC", 2}});
}

TEST(MonitoringTypes, registerUnderTheirScopedNames)
{
    EXPECT_STREQ(ZUV_Service_Monitoring_KeyedResourceTypeSupport_get_type_name(),
                 "ZUV::Service::Monitoring::KeyedResource");
    EXPECT_STREQ(ZUV_Service_Monitoring_ResourceGuidTypeSupport_get_type_name(),
                 "ZUV::Service::Monitoring::ResourceGuid");
}

TEST(MonitoringTypes, haveAKeyInOneOfThemAlone)
{
    EXPECT_EQ(ZUV_Service_Monitoring_KeyedResourcePlugin_get_key_kind(), ZUV_TYPE_KEY_KIND_USER);
    EXPECT_EQ(ZUV_Service_Monitoring_ResourceGuidPlugin_get_key_kind(), ZUV_TYPE_KEY_KIND_NONE);
    EXPECT_EQ(ZUV_Service_Monitoring_EntityEventPlugin_get_key_kind(), ZUV_TYPE_KEY_KIND_NONE);
}

TEST(MonitoringTypes, areUnboundedWithATextOrASequenceThatIs)
{
    EXPECT_EQ(ZUV_Service_Monitoring_EntityConfigPlugin_get_serialized_sample_max_size(
                  nullptr, DDS_BOOLEAN_TRUE),
              0x7ffffbffU);
    EXPECT_EQ(ZUV_Service_Monitoring_ThreadPoolPeriodicPlugin_get_serialized_sample_max_size(
                  nullptr, DDS_BOOLEAN_TRUE),
              0x7ffffbffU);
    EXPECT_EQ(ZUV_Service_Monitoring_ResourceGuidPlugin_get_serialized_sample_max_size(
                  nullptr, DDS_BOOLEAN_TRUE),
              20U);
}

} // namespace
