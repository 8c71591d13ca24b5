/* The type support, writer and reader of the monitoring types that can be the type of a topic. */
#ifndef ZUV_COMMON_SERVICE_MONITORING_SUPPORT_H
#define ZUV_COMMON_SERVICE_MONITORING_SUPPORT_H

#include "common/ServiceMonitoring.h"
#include "platform/dds/TypedEndpoints.h"

#ifdef __cplusplus
extern "C" {
#endif

DDS_TYPED_ENDPOINTS_DECLARE(ZUV_Service_Monitoring_ResourceGuid,
                            ZUV_Service_Monitoring_ResourceGuidSeq)
DDS_TYPED_ENDPOINTS_DECLARE(ZUV_Service_Monitoring_KeyedResource,
                            ZUV_Service_Monitoring_KeyedResourceSeq)

#ifdef __cplusplus
}
#endif

#endif
