// Every type of the system, by its kind.
#ifndef ZUV_TESTS_TYPES_ALL_TYPES_H
#define ZUV_TESTS_TYPES_ALL_TYPES_H

#include <vector>

#include "common/ServiceCommonSupport.h"
#include "common/ServiceMonitoringSupport.h"
#include "remoteConfig/ServiceAdminSupport.h"

#define ZUV_TEST_KEYED_TOPIC_TYPES(X)                                                              \
    X(ZUV_Service_Admin_CommandRequest)                                                            \
    X(ZUV_Service_Monitoring_KeyedResource)

#define ZUV_TEST_UNKEYED_TOPIC_TYPES(X)                                                            \
    X(ZUV_Service_Admin_CommandReply)                                                              \
    X(ZUV_Service_EntityState)                                                                     \
    X(ZUV_Service_Monitoring_ResourceGuid)

#define ZUV_TEST_NESTED_TYPES(X)                                                                   \
    X(ZUV_Service_BuiltinTopicKey)                                                                 \
    X(ZUV_Service_Monitoring_StatisticMetrics)                                                     \
    X(ZUV_Service_Monitoring_StatisticVariable)                                                    \
    X(ZUV_Service_Monitoring_CountStatus)                                                          \
    X(ZUV_Service_Monitoring_ProcessConfig)                                                        \
    X(ZUV_Service_Monitoring_ProcessPeriodic)                                                      \
    X(ZUV_Service_Monitoring_ThreadPeriodic)                                                       \
    X(ZUV_Service_Monitoring_ThreadPoolPeriodic)                                                   \
    X(ZUV_Service_Monitoring_HostPeriodic)                                                         \
    X(ZUV_Service_Monitoring_HostConfig)                                                           \
    X(ZUV_Service_Monitoring_NetworkPerformance)                                                   \
    X(ZUV_Service_Monitoring_EntityConfig)                                                         \
    X(ZUV_Service_Monitoring_EntityEvent)

#define ZUV_TEST_ALIASES(X)                                                                        \
    X(ZUV_Service_BoundedString)                                                                   \
    X(ZUV_Service_FilePath)                                                                        \
    X(ZUV_Service_ResourceId)                                                                      \
    X(ZUV_Service_XmlString)                                                                       \
    X(ZUV_Service_Admin_EntityName)                                                                \
    X(ZUV_Service_Admin_ResourceIdentifier)                                                        \
    X(ZUV_Service_Admin_StringBody)                                                                \
    X(ZUV_Service_Admin_OctetBody)

#define ZUV_TEST_ENUMERATIONS(X)                                                                   \
    X(ZUV_Service_EntityStateKind)                                                                 \
    X(ZUV_Service_Admin_CommandActionKind)                                                         \
    X(ZUV_Service_Admin_CommandReplyRetcode)                                                       \
    X(ZUV_Service_Monitoring_DistributionTopicKind)                                                \
    X(ZUV_Service_Monitoring_ResourceKindIndex)                                                    \
    X(ZUV_Service_Monitoring_ResourceKind)

#define ZUV_TEST_TOPIC_TYPES(X)                                                                    \
    ZUV_TEST_KEYED_TOPIC_TYPES(X)                                                                  \
    ZUV_TEST_UNKEYED_TOPIC_TYPES(X)

#define ZUV_TEST_STRUCTURES(X)                                                                     \
    ZUV_TEST_TOPIC_TYPES(X)                                                                        \
    ZUV_TEST_NESTED_TYPES(X)

#define ZUV_TEST_ALL_TYPES(X)                                                                      \
    ZUV_TEST_STRUCTURES(X)                                                                         \
    ZUV_TEST_ALIASES(X)                                                                            \
    ZUV_TEST_ENUMERATIONS(X)

namespace zuv_test
{

// The type codes of the types that LIST, one of the lists above, names.
#define ZUV_TEST_TYPE_CODE(T) T##_get_typecode(),
#define ZUV_TEST_TYPE_CODES(LIST)                                                                  \
    std::vector<const DDS_TypeCode *>                                                              \
    {                                                                                              \
        LIST(ZUV_TEST_TYPE_CODE)                                                                   \
    }

inline const char *nameOf(const DDS_TypeCode *type)
{
    return DDS_TypeCode_name(type, nullptr);
}

} // namespace zuv_test

#endif
